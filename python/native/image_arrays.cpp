#include <cstring>

#include "arguments.h"

namespace binding {

namespace {

/// Bytes of a pixel; 0 for less than one.
int pixelBytes(const Image& image) { return image.depth() / 8; }

/// A writable view on bytes of an image, which it keeps alive.
py::array viewOf(py::handle owner, const py::dtype& type, std::vector<py::ssize_t> shape,
                 std::vector<py::ssize_t> strides, const void* first) {
  return py::array(type, std::move(shape), std::move(strides), first, owner);
}

py::dtype byteType() { return py::dtype::of<std::uint8_t>(); }

/// The first byte of the top line; any address for an image without pixels.
BYTE* topOf(const Image& image) { return image.height() > 0 ? image.row(0) : GetDIBBits(image.dib()); }

py::array indexesOf(const Image& image) {
  py::array_t<std::uint8_t> array({py::ssize_t{image.height()}, py::ssize_t{image.width()}});
  std::uint8_t* index = array.mutable_data();
  for (int y = 0; y < image.height(); ++y) {
    const BYTE* row = image.row(y);
    for (int x = 0; x < image.width(); ++x)
      *index++ = image.depth() == 1 ? Get1BitPixel(row, x) : Get4BitPixel(row, x);
  }
  array.attr("setflags")(py::arg("write") = false);
  return array;
}

/// Some channels of 24 or 32 bits.
py::array channelsOf(py::handle owner, int first, int count, int step) {
  const Image& image = requireImage(owner, 0);
  require(image.depth() >= 24, "only images of 24 and 32 bits have channels; see Image.numpy and to_24_bits");
  std::vector<py::ssize_t> shape{image.height(), image.width()};
  std::vector<py::ssize_t> strides{-image.stride(), pixelBytes(image)};
  if (count > 1) {
    shape.push_back(count);
    strides.push_back(step);
  }
  return viewOf(owner, byteType(), std::move(shape), std::move(strides), topOf(image) + first);
}

py::array paletteOf(py::handle owner) {
  const Image& image = requireImage(owner, 0);
  require(image.depth() <= 8, "only images of 1, 4 and 8 bits have a palette");
  const auto* entries = reinterpret_cast<const BYTE*>(dibkit::paletteOf(image.dib()));
  return viewOf(owner, byteType(), {image.colours(), 3}, {4, -1}, entries + 2);
}

void setPalette(Image& image, const Palette& palette) {
  if (palette.count() != image.colours())
    refuse("the palette has " + text(image.colours()) + " colours, not " + text(palette.count()));
  std::memcpy(dibkit::paletteOf(image.dib()), palette.entries.data(), palette.entries.size() * 4);
}

/// What the buffer protocol gives away: an array that has been made for it.
int getBuffer(PyObject* self, Py_buffer* view, int flags) {
  try {
    const Image& image = requireImage(self, 0);
    if (pixelBytes(image) == 0) {
      PyErr_SetString(PyExc_BufferError, "pixels of 1 and 4 bits are no buffer; use Image.numpy");
      return -1;
    }
    return PyObject_GetBuffer(pixelsOf(image, self).ptr(), view, flags);
  } catch (py::error_already_set& error) {
    error.restore();
  } catch (const std::exception& error) {
    PyErr_SetString(PyExc_BufferError, error.what());
  }
  return -1;
}

}  // namespace

void setUpBuffer(PyHeapTypeObject* type) {
  type->as_buffer.bf_getbuffer = getBuffer;
  type->ht_type.tp_as_buffer = &type->as_buffer;
}

py::array pixelsOf(const Image& image, py::handle owner) {
  if (pixelBytes(image) == 0) return indexesOf(image);
  const py::dtype type = image.depth() == 16 ? py::dtype::of<std::uint16_t>() : byteType();
  std::vector<py::ssize_t> shape{image.height(), image.width()};
  std::vector<py::ssize_t> strides{-image.stride(), pixelBytes(image)};
  if (image.depth() >= 24) {
    shape.push_back(pixelBytes(image));
    strides.push_back(1);
  }
  return viewOf(owner, type, std::move(shape), std::move(strides), topOf(image));
}

void defineImageArrays(py::class_<Image>& image) {
  image
      .def(
          "numpy", [](py::object self) { return pixelsOf(requireImage(self, 0), self); },
          R"(The pixels as an array, in the order of memory.

        Returns
        -------
        ndarray
            For 8 bits, indexes: height x width, uint8. For 16 bits: height x width, uint16, 5 bits for each of red,
            green and blue, red the highest. For 24 and 32 bits: height x width x 3 or 4, uint8, **blue, green,
            red(, alpha)**; `rgb` and `alpha` show the same bytes in the other order. All of these are views: they
            share the image's memory, and keep it alive. For 1 and 4 bits, a read-only copy of the indexes: height x
            width, uint8.)")
      .def(
          "__array__",
          [](py::object self, const py::object& dtype) {
            const py::array pixels = pixelsOf(requireImage(self, 0), self);
            return dtype.is_none() ? py::object(pixels) : pixels.attr("astype")(dtype);
          },
          py::arg("dtype") = py::none())
      .def_property_readonly("__array_interface__",
                             [](py::object self) {
                               const Image& pixels = requireImage(self, 0);
                               if (pixelBytes(pixels) == 0)
                                 throw py::attribute_error("pixels of 1 and 4 bits have no array's layout");
                               return pixelsOf(pixels, self).attr("__array_interface__");
                             })
      .def_property_readonly(
          "rgb", [](py::object self) { return channelsOf(self, 2, 3, -1); },
          "Red, green and blue of 24 or 32 bits: height x width x 3, uint8, a view.")
      .def_property_readonly(
          "alpha",
          [](py::object self) {
            require(requireImage(self, 0).depth() == 32, "only images of 32 bits have alpha");
            return channelsOf(self, 3, 1, 0);
          },
          "The alpha of 32 bits: height x width, uint8, a view.")
      .def_property("palette", &paletteOf, &setPalette,
                    "The palette of 1, 4 or 8 bits: N x 3, uint8, red, green, blue; a view.")
      .def_static("from_array", &imageFrom, py::arg("array"), py::arg("order") = py::none(),
                  py::arg("depth") = py::none(), py::arg("palette") = py::none(),
                  py::arg("fields") = py::none(),
                  R"(A new image with the pixels of an array, which may have any strides.

        Parameters
        ----------
        array : ndarray
            Height x width of bool (1 bit), uint8 (8 bits) or uint16 (16 bits); height x width x 3 or 4 of uint8 (24 or
            32 bits).
        order : {"rgb", "bgr"}
            Of the channels; alpha is the last in both. Needed for an array with channels: `Image.numpy` gives "bgr",
            most others give "rgb".
        depth : int, optional
            1 or 4 for an array of uint8 that holds smaller indexes.
        palette : list of colours or ndarray, optional
            N x 3; else an even ramp of grays.
        fields : (int, int, int), optional
            The bits of red, green and blue in 16-bit pixels; else 0x7C00, 0x3E0, 0x1F.

        Raises
        ------
        TypeError
            For an array of another type.
        ValueError
            For another shape, or an index that the depth does not have.)");
}

}  // namespace binding
