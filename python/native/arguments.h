#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <dibkit.h>
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "image.h"
#include "region.h"

/// \file
/// The kinds of arguments and results that operations have: checked and converted here once, so that an
/// operation is a line that calls the library. A wrong type throws TypeError, a wrong value ValueError, each
/// with one sentence.
namespace binding {

/// A whole number within limits. Throws for anything else; numbers of NumPy are fine.
std::int64_t wholeNumber(py::handle value, std::int64_t least, std::int64_t most);

/// As many whole numbers as `values` has room for, from a tuple, a list or another sequence.
/// \param what for the message, such as "a point (x, y)"
void wholeNumbers(py::handle sequence, std::span<int> values, const char* what);

/// An argument that is an image of the given depth; of any depth for 0.
template <int bits>
struct ImageOf {
  const Image* image = nullptr;

  operator BITMAPINFOHEADER*() const { return image->dib(); }  // NOLINT: an argument of the library
  const Image* operator->() const { return image; }
};
using AnyImage = ImageOf<0>;
using Image24 = ImageOf<24>;
using Image32 = ImageOf<32>;

/// Throws unless the object is an image of that depth, or of any depth for 0.
const Image& requireImage(py::handle value, int bits);

/// A whole number from `least` to `most`.
template <std::int64_t least, std::int64_t most>
struct Number {
  std::int64_t value = 0;

  template <class Integer>
  operator Integer() const {  // NOLINT: an argument of the library
    return static_cast<Integer>(value);
  }
};
using Byte = Number<0, 255>;
using Integer = Number<std::numeric_limits<int>::min(), std::numeric_limits<int>::max()>;
using Positive = Number<1, std::numeric_limits<int>::max()>;

/// A colour: three numbers of 0 to 255 for red, green and blue, or "#rrggbb".
struct Colour {
  BYTE red = 0, green = 0, blue = 0;

  operator COLORREF() const { return RGB(red, green, blue); }  // NOLINT: an argument of the library
};
Colour colourFrom(py::handle value);

/// A palette: colours in a list, or an N x 3 array of bytes, red first. At most 256.
struct Palette {
  std::vector<RGBQUAD> entries;

  RGBQUAD* data() { return entries.data(); }
  int count() const { return static_cast<int>(entries.size()); }
};
Palette paletteFrom(py::handle value);
py::array paletteArray(const std::vector<RGBQUAD>& entries);

/// A mask as an argument: a height x width array of bool, True for transparent, or None.
struct Mask {
  dibkit::OwnedDib dib;

  operator BITMAPINFOHEADER*() const { return dib.get(); }  // NOLINT: an argument of the library
};
/// A mask that is not None.
struct RequiredMask : Mask {};
Mask maskFrom(py::handle value);
RequiredMask requiredMaskFrom(py::handle value);
/// A mask as a result; None for none.
struct MaskResult {
  dibkit::OwnedDib dib;
};
py::object maskArray(const BITMAPINFOHEADER* mask);

/// Throws unless a mask, if there is one, has the size of its frame.
void requireMaskOf(const BITMAPINFOHEADER* frame, const BITMAPINFOHEADER* mask);

/// How much of each pixel is affected: a height x width array of bytes or of bool (255 for True), or an 8-bit
/// image. May be None where the operation says so.
struct Coverage {
  dibkit::OwnedDib made;
  BITMAPINFOHEADER* dib = nullptr;

  operator BITMAPINFOHEADER*() const { return dib; }  // NOLINT: an argument of the library
};
Coverage coverageFrom(py::handle value);

/// A region, or None for no limit.
struct Clip {
  HRGN region = nullptr;

  operator HRGN() const { return region; }  // NOLINT: an argument of the library
};
Clip clipFrom(py::handle value);

/// Points in a list or an N x 2 array.
struct Points {
  std::vector<POINT> all;

  POINT* data() { return all.data(); }
  int count() const { return static_cast<int>(all.size()); }
};
Points pointsFrom(py::handle value);

/// What the library made; throws std::bad_alloc when it made nothing, since the arguments have been checked.
inline Image made(BITMAPINFOHEADER* dib) { return Image(dibkit::OwnedDib(dib)); }
inline Image made(dibkit::OwnedDib dib) { return Image(std::move(dib)); }

/// Throws std::invalid_argument with a sentence.
[[noreturn]] void refuse(const std::string& sentence);
inline void require(bool fine, const char* sentence) {
  if (!fine) refuse(sentence);
}
/// Throws std::bad_alloc: for what fails only when memory runs out.
void requireDone(int done);

inline std::string text(std::int64_t number) { return std::to_string(number); }

}  // namespace binding

#include "casters.h"
