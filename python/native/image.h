#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include <dibkit.h>
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

namespace binding {

namespace py = pybind11;

/// Makes an object that Python has allocated but not initialised, by `__new__` alone, one of zeros that can
/// be recognized.
struct Zeroed {
  static void* operator new(std::size_t size);
  static void operator delete(void* memory) { ::operator delete(memory); }
};

/// For a class whose objects only the module makes: `__new__` raises TypeError.
void refuseNew(PyHeapTypeObject* type);

/// An image that Python owns. Its header never changes and its block never moves, so that arrays may refer to
/// its pixels and its palette as long as the image lives; each of them keeps it alive.
class Image : public Zeroed {
 public:
  /// Takes over an image that the library made. Throws std::bad_alloc when it could not make one.
  explicit Image(dibkit::OwnedDib dib);
  /// An image of zeros. Throws std::invalid_argument for sides below 0, another depth than 1, 4, 8, 16, 24 or
  /// 32, more palette entries than it can index, and more than 2^31 - 1 bytes.
  /// \param colours palette entries; 0 for as many as the depth can index
  Image(std::int64_t width, std::int64_t height, int depth, int colours = 0);

  /// Throws py::type_error for an object that was never initialised.
  BITMAPINFOHEADER* dib() const {
    if (!dib_) throw py::type_error("this Image has not been initialised");
    return dib_.get();
  }
  int width() const { return dib()->biWidth; }
  int height() const { return dib()->biHeight; }
  int depth() const { return dib()->biBitCount; }
  int colours() const { return depth() <= 8 ? static_cast<int>(GetDIBPaletteSize(dib())) : 0; }
  std::ptrdiff_t stride() const { return dibkit::strideOf(width(), depth()); }
  BYTE* row(int y) const { return GetDIBBits(dib()) + (height() - 1 - y) * stride(); }

 private:
  dibkit::OwnedDib dib_;
};

/// The pixels as an array in the order of memory, without a copy where each has whole bytes: height x width
/// of 8-bit indexes or 16-bit pixels, height x width x 3 or 4 of bytes blue, green, red(, alpha). Of 1 and 4
/// bits a read-only copy, one byte for each pixel.
/// \param owner the Python object of the image, which the array keeps alive
py::array pixelsOf(const Image& image, py::handle owner);

/// An image with the pixels of an array, which may have any strides. Throws py::type_error for a type, and
/// std::invalid_argument for a shape, that no image has.
/// \param order "rgb" or "bgr", that of the channels; none for an array without channels
/// \param depth none for the one that suits the array's type
/// \param palette N x 3 colours, none for an even ramp of grays
/// \param fields bits of red, green and blue of 16-bit pixels; none for 5-5-5
Image imageFrom(const py::array& array, const py::object& order, const py::object& depth,
                const py::object& palette, const py::object& fields);

/// Gives the class the buffer protocol, for callers that take strides.
void setUpBuffer(PyHeapTypeObject* type);

/// The colour of a pixel; throws std::invalid_argument for a point outside the image.
struct Colour;
Colour colourAt(const Image& image, POINT point);

/// The parts of the class that are about arrays, about files, and the rest.
void defineImageArrays(py::class_<Image>& image);
void defineImageFiles(py::class_<Image>& image);
void defineImage(py::module_& module);

}  // namespace binding
