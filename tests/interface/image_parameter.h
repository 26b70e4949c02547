#pragma once

#include <optional>

#include "parameter.h"

namespace interface_test {

/// Which images an operation takes.
struct ImageRule {
  std::vector<int> depths;                              ///< those that it is made for, the usual one first
  Verdict shallower = V::refused, deeper = V::refused;  ///< other depths, below and above the usual one
  Verdict noImage = V::refused;                         ///< a null pointer
  Verdict broken = V::refused;                          ///< a header that describes no possible block
  Verdict negative = V::refused;                        ///< negative sizes
  Verdict noPixels = V::taken;                          ///< width or height 0
  DWORD compression = BI_RGB;
  bool changed = false;      ///< the operation draws on it
  Verdict other = V::taken;  ///< other sizes, longer headers, any compression
};

/// A packed DIB in a block of exactly the size that its header describes. Where the sanitizer does not watch
/// what is around it, other bytes do.
class DibBlock {
 public:
  /// \param salt makes images of equal headers differ
  explicit DibBlock(const BITMAPINFOHEADER& header, int salt = 0);

  /// The top-left pixel of 32-bit images. A transparent one follows, then an opaque one of any colour.
  static constexpr DWORD topLeft = 0xFF336699;

  BITMAPINFOHEADER* dib() const {
    return reinterpret_cast<BITMAPINFOHEADER*>(const_cast<BYTE*>(bytes_.data()) + guard);
  }
  bool changed() const { return bytes_ != original_; }
  bool changedAround() const {
    return !std::equal(bytes_.begin(), bytes_.begin() + guard, original_.begin()) ||
           !std::equal(bytes_.end() - guard, bytes_.end(), original_.end() - guard);
  }
  void restore() { bytes_ = original_; }

 private:
#if defined(__SANITIZE_ADDRESS__)
  static constexpr int guard = 0;
#else
  static constexpr int guard = 64;
#endif

  std::vector<BYTE> bytes_;
  std::vector<BYTE> original_;
};

/// An image, or what passes for one.
class ImageParameter : public Parameter {
 public:
  using Type = BITMAPINFOHEADER*;
  explicit ImageParameter(const ImageRule& rule);

  std::size_t count() const override { return values_.size(); }
  Verdict verdict(std::size_t value) const override { return values_[value].verdict; }
  std::string name(std::size_t value) const override;
  void choose(std::size_t value) override { chosen_ = &values_[value]; }
  std::string settle(Verdict call) override;
  bool isExtent() const override { return true; }
  bool owns(const void* image) const override { return chosen_->block && image == chosen_->block->dib(); }
  BITMAPINFOHEADER* give() { return chosen_->block ? chosen_->block->dib() : nullptr; }

 private:
  struct Value {
    Verdict verdict;
    std::optional<DibBlock> block;
  };

  bool changes_;
  std::vector<Value> values_;
  Value* chosen_ = nullptr;
};

}  // namespace interface_test
