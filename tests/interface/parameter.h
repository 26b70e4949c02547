#pragma once

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include <dibkit.h>

/// The parameters of the exported operations as kinds: classes that name the C++ type of a parameter and give
/// its values, the right one first, then wrong and extreme ones.
namespace interface_test {

/// What an operation makes of an argument, all others being right.
enum class Verdict {
  right,    ///< does what it is for
  taken,    ///< defined or harmless, whatever the result
  apart,    ///< taken, but nothing overlaps: images that are drawn on stay as they are
  alone,    ///< refused, unless another argument makes up for it
  refused,  ///< the failure result, nothing written
};
using V = Verdict;
constexpr bool fails(Verdict verdict) { return verdict >= Verdict::alone; }

class Parameter {
 public:
  Parameter() = default;
  Parameter(const Parameter&) = delete;
  Parameter& operator=(const Parameter&) = delete;
  virtual ~Parameter() = default;

  virtual std::size_t count() const = 0;
  virtual Verdict verdict(std::size_t value) const = 0;
  virtual std::string name(std::size_t value) const { return "value " + std::to_string(value); }
  /// What the next call gets.
  virtual void choose(std::size_t value) = 0;
  /// Looks at what a call with that verdict did to the chosen value, and makes the value as it was.
  /// \return what is wrong with it; empty for nothing
  virtual std::string settle(Verdict) { return ""; }
  /// Whether wrong values are worth a try together with those of other parameters.
  virtual bool isExtent() const { return false; }
  /// Whether an image that an operation returned is the argument.
  virtual bool owns(const void*) const { return false; }
};

/// Values of a type that is cheap to copy. T is the parameter's type: a value, a reference or a pointer.
template <class T>
class Values : public Parameter {
 public:
  using Type = T;
  using Value = std::remove_cvref_t<T>;
  struct Others {
    Verdict verdict;
    std::vector<Value> values;
  };

  Values(const Value& right, const std::vector<Others>& groups) : values_{right}, verdicts_{V::right} {
    for (const auto& [verdict, values] : groups) {
      values_.insert(values_.end(), values.begin(), values.end());
      verdicts_.resize(values_.size(), verdict);
    }
  }
  std::size_t count() const override { return values_.size(); }
  Verdict verdict(std::size_t value) const override { return verdicts_[value]; }
  void choose(std::size_t value) override { given_ = values_[value]; }
  T give() { return given_; }

 private:
  std::vector<Value> values_;
  std::vector<Verdict> verdicts_;
  Value given_{};
};

/// An out parameter. `nullIs` says what becomes of a null pointer.
template <class T, Verdict nullIs, bool writtenOnFailure = false>
class Out : public Parameter {
 public:
  using Type = T*;
  std::size_t count() const override { return 2; }
  Verdict verdict(std::size_t value) const override { return value == 0 ? V::right : nullIs; }
  void choose(std::size_t value) override {
    given_ = value == 0 ? &cell_ : nullptr;
    std::memset(static_cast<void*>(&cell_), 0x44, sizeof(T));
    untouched_ = cell_;
  }
  std::string settle(Verdict call) override {
    const bool written = std::memcmp(&cell_, &untouched_, sizeof(T)) != 0;
    if constexpr (std::is_same_v<T, BITMAPINFOHEADER*>) {
      if (written) delete[] reinterpret_cast<BYTE*>(cell_);
      if (fails(call) && written && cell_ != nullptr) return "is not null";
    }
    return fails(call) && !writtenOnFailure && written ? "was written" : "";
  }
  T* give() { return given_; }

 private:
  T cell_;
  T untouched_;
  T* given_ = nullptr;
};

}  // namespace interface_test
