#pragma once

#include <functional>
#include <memory>
#include <tuple>

#include "objects.h"

namespace interface_test {

/// \name Results
/// What an operation gives when it fails. One that is not `sure` may give the same for right arguments.
/// @{
template <class T, T failureValue, bool isSure = true>
struct ResultOf {
  using Type = T;
  static constexpr bool sure = isSure;
  static bool failed(T value) { return value == failureValue; }
};
using Made = ResultOf<BITMAPINFOHEADER*, nullptr>;
using Selected = ResultOf<HRGN, nullptr>;
using FoundEffect = ResultOf<const dibkit::Effect*, nullptr>;
using Done = ResultOf<int, 0>;
using StyleNumber = ResultOf<int, -1>;
using Answer = ResultOf<int, 0, false>;
using Opacity = ResultOf<BYTE, 0, false>;

struct MadeOwned {
  using Type = dibkit::OwnedDib;
  static constexpr bool sure = true;
  static bool failed(const Type& image) { return image == nullptr; }
};

/// A result that does not tell of failure.
template <class T>
struct Plain {
  using Type = T;
  static constexpr bool sure = false;
  static bool failed(const auto&) { return true; }
};
using Nothing = Plain<void>;
using Text = Plain<const char*>;
using Effects = Plain<std::span<const dibkit::Effect>>;
using EffectAmounts = Plain<dibkit::EffectParameters>;

inline void release(const auto&) {}
inline void release(HRGN region) { DeleteObject(region); }
inline void release(BITMAPINFOHEADER* image) {
  // Read to the end that its header tells: the block has to be as long.
  const dibkit::OwnedDib owned(image), copy(CBitmapCreator::Clone(image));
}
/// @}

/// An exported operation and its parameters.
class Operation {
 public:
  explicit Operation(const char* name) : name_(name) {}
  virtual ~Operation() = default;

  const std::string& name() const { return name_; }
  const std::vector<Parameter*>& parameters() const { return parameters_; }
  /// Calls it with what the parameters were told to give.
  /// \return whether it gave its failure result
  virtual bool fails() = 0;
  /// Whether that result means a failure and nothing else.
  virtual bool sure() const = 0;

 protected:
  std::vector<Parameter*> parameters_;

 private:
  std::string name_;
};

/// The type of a pointer to a function, or to a member of the first parameter's class.
template <class Result, class... Kinds>
struct PointerTo {
  using Type = Result (*)(typename Kinds::Type...);
};
template <class Result, class Object, class... Kinds>
requires requires { typename Object::template Member<Result, typename Kinds::Type...>; }
struct PointerTo<Result, Object, Kinds...> {
  using Type = typename Object::template Member<Result, typename Kinds::Type...>;
};

template <class Signature>
class TypedOperation;
template <class Result, class... Kinds>
class TypedOperation<Result(Kinds...)> : public Operation {
 public:
  /// Only a function of exactly this type, of which it picks the overload, and only an exported one links.
  using Pointer = typename PointerTo<typename Result::Type, Kinds...>::Type;

  TypedOperation(const char* name, Pointer function) : Operation(name), function_(function) {
    std::apply([this](auto&... kind) { parameters_ = {&kind...}; }, kinds_);
  }
  bool sure() const override { return Result::sure; }
  bool fails() override {
    return std::apply([this](auto&... kind) { return called(kind.give()...); }, kinds_);
  }

 private:
  bool called(typename Kinds::Type... arguments) {
    if constexpr (std::is_void_v<typename Result::Type>) {
      std::invoke(function_, arguments...);
      return true;
    } else {
      const auto result = std::invoke(function_, arguments...);
      const bool failed = Result::failed(result);
      if constexpr (std::is_pointer_v<typename Result::Type>) {
        for (const Parameter* parameter : parameters_) {
          if (parameter->owns(result)) return failed;
        }
      }
      release(result);
      return failed;
    }
  }

  Pointer function_;
  std::tuple<Kinds...> kinds_;
};

template <class Signature>
std::unique_ptr<Operation> operation(const char* name, typename TypedOperation<Signature>::Pointer function) {
  return std::make_unique<TypedOperation<Signature>>(name, function);
}

/// All of operations.txt: each makes its operation with all its images, so that only one need be there at a
/// time.
extern const std::vector<std::unique_ptr<Operation> (*)()> operations;

}  // namespace interface_test
