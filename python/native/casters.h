#pragma once

#include "arguments.h"

/// \file
/// How pybind11 converts the types of arguments.h. The names are those in the signatures, which the stubs are
/// made from.
namespace pybind11::detail {

/// An argument that `convert` makes of a Python object, or throws.
#define BINDING_ARGUMENT(Type, name, convert)     \
  template <>                                     \
  struct type_caster<Type> {                      \
    PYBIND11_TYPE_CASTER(Type, const_name(name)); \
    bool load(handle source, bool) {              \
      value = convert;                            \
      return true;                                \
    }                                             \
  }

template <int bits>
struct type_caster<binding::ImageOf<bits>> {
  PYBIND11_TYPE_CASTER(binding::ImageOf<bits>, const_name("Image"));
  bool load(handle source, bool) {
    value.image = &binding::requireImage(source, bits);
    return true;
  }
};

template <std::int64_t least, std::int64_t most>
struct type_caster<binding::Number<least, most>> {
  using Type = binding::Number<least, most>;
  PYBIND11_TYPE_CASTER(Type, const_name("int"));
  bool load(handle source, bool) {
    value.value = binding::wholeNumber(source, least, most);
    return true;
  }
};

template <>
struct type_caster<POINT> {
  PYBIND11_TYPE_CASTER(POINT, const_name("Point"));
  bool load(handle source, bool) {
    int numbers[2];
    binding::wholeNumbers(source, numbers, "a point (x, y)");
    value = {numbers[0], numbers[1]};
    return true;
  }
  static handle cast(const POINT& point, return_value_policy, handle) {
    return make_tuple(point.x, point.y).release();
  }
};

template <>
struct type_caster<SIZE> {
  PYBIND11_TYPE_CASTER(SIZE, const_name("Size"));
  bool load(handle source, bool) {
    int numbers[2];
    binding::wholeNumbers(source, numbers, "a size (width, height)");
    value = {numbers[0], numbers[1]};
    return true;
  }
};

template <>
struct type_caster<RECT> {
  PYBIND11_TYPE_CASTER(RECT, const_name("Rect"));
  bool load(handle source, bool) {
    int numbers[4];
    binding::wholeNumbers(source, numbers, "four numbers (left, top, right, bottom)");
    value = {numbers[0], numbers[1], numbers[2], numbers[3]};
    return true;
  }
  static handle cast(const RECT& rect, return_value_policy, handle) {
    return make_tuple(rect.left, rect.top, rect.right, rect.bottom).release();
  }
};

BINDING_ARGUMENT(binding::Colour, "Colour", binding::colourFrom(source));
BINDING_ARGUMENT(binding::Coverage, "Coverage", binding::coverageFrom(source));
BINDING_ARGUMENT(binding::Points, "Points", binding::pointsFrom(source));
BINDING_ARGUMENT(binding::Mask, "Optional[Mask]", binding::maskFrom(source));
BINDING_ARGUMENT(binding::RequiredMask, "Mask", binding::requiredMaskFrom(source));
BINDING_ARGUMENT(binding::Clip, "Optional[Region]", binding::clipFrom(source));

template <>
struct type_caster<binding::Palette> {
  PYBIND11_TYPE_CASTER(binding::Palette, const_name("Palette"));
  bool load(handle source, bool) {
    value = binding::paletteFrom(source);
    return true;
  }
  static handle cast(const binding::Palette& palette, return_value_policy, handle) {
    return binding::paletteArray(palette.entries).release();
  }
};

template <>
struct type_caster<binding::MaskResult> {
  PYBIND11_TYPE_CASTER(binding::MaskResult, const_name("Optional[BoolArray]"));
  bool load(handle, bool) { return false; }
  static handle cast(const binding::MaskResult& mask, return_value_policy, handle) {
    return binding::maskArray(mask.dib.get()).release();
  }
};

#undef BINDING_ARGUMENT

}  // namespace pybind11::detail
