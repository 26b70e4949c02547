#include "image.h"

#include <array>
#include <cstring>
#include <new>

#include "arguments.h"

namespace binding {

namespace {

bool isDepth(int depth) {
  for (const int known : {1, 4, 8, 16, 24, 32}) {
    if (depth == known) return true;
  }
  return false;
}

std::size_t bytesOf(const Image& image) {
  return static_cast<std::size_t>(dibkit::layoutOf(image.dib())->total);
}

/// The whole block, for pickles.
py::bytes blockOf(const Image& image) { return {reinterpret_cast<const char*>(image.dib()), bytesOf(image)}; }

/// The image of a pickle, which may hold anything.
Image imageOfBlock(const py::bytes& bytes) {
  const std::string_view block = bytes;
  BITMAPINFOHEADER header{};
  if (block.size() >= sizeof(header)) std::memcpy(&header, block.data(), sizeof(header));
  const auto layout = dibkit::layoutOf(&header);
  const bool fields = header.biCompression == BI_BITFIELDS && header.biBitCount == 16;
  const bool usable = header.biSize == sizeof(header) && isDepth(header.biBitCount) && layout &&
                      (header.biCompression == BI_RGB || fields) && header.biClrUsed <= 256 &&
                      static_cast<std::size_t>(layout->total) == block.size();
  require(usable, "these bytes are no pickled image");
  auto* copy = new BYTE[block.size()];
  std::memcpy(copy, block.data(), block.size());
  return Image(dibkit::OwnedDib(reinterpret_cast<BITMAPINFOHEADER*>(copy)));
}

/// Whether both have one size, depth, palette and pixels; the padding of rows does not count.
bool equal(const Image& a, const Image& b) {
  const auto start = static_cast<std::size_t>(dibkit::layoutOf(a.dib())->bits);
  if (std::memcmp(a.dib(), b.dib(), sizeof(BITMAPINFOHEADER)) != 0) return false;
  if (std::memcmp(a.dib(), b.dib(), start) != 0) return false;
  const std::size_t bits = static_cast<std::size_t>(a.width()) * static_cast<std::size_t>(a.depth());
  for (int y = 0; y < a.height(); ++y) {
    const BYTE* left = a.row(y);
    const BYTE* right = b.row(y);
    if (std::memcmp(left, right, bits / 8) != 0) return false;
    const int shift = static_cast<int>(8 - bits % 8);
    if (bits % 8 != 0 && left[bits / 8] >> shift != right[bits / 8] >> shift) return false;
  }
  return true;
}

std::string describe(const Image& image) {
  return "<dibkit.Image " + text(image.width()) + "x" + text(image.height()) + ", " + text(image.depth()) +
         (image.depth() == 1 ? " bit>" : " bits>");
}

}  // namespace

void* Zeroed::operator new(std::size_t size) { return std::memset(::operator new(size), 0, size); }

void refuseNew(PyHeapTypeObject* type) {
  type->ht_type.tp_new = [](PyTypeObject* kind, PyObject*, PyObject*) -> PyObject* {
    PyErr_Format(PyExc_TypeError, "objects of %s cannot be created", kind->tp_name);
    return nullptr;
  };
}

Image::Image(dibkit::OwnedDib dib) : dib_(std::move(dib)) {
  if (!dib_) throw std::bad_alloc();
}

Image::Image(std::int64_t width, std::int64_t height, int depth, int colours) {
  require(width >= 0 && height >= 0, "an image cannot have a side below 0");
  require(isDepth(depth), "an image has 1, 4, 8, 16, 24 or 32 bits a pixel");
  const int indexable = depth <= 8 ? 1 << depth : 0;
  if (colours < 0 || colours > indexable)
    refuse("an image of " + text(depth) + " bits has at most " + text(indexable) + " colours in its palette");
  constexpr std::int64_t header = 40 + 256 * 4;
  const bool fits =
      width <= INT32_MAX && height <= INT32_MAX &&
      (height == 0 || dibkit::strideOf(width, depth) <= (dibkit::maximumDibBytes - header) / height);
  if (!fits) refuse(text(width) + " x " + text(height) + " pixels are more than an image can have");
  *this = Image(dibkit::OwnedDib(
      CBitmapCreator::CreateDibImage(static_cast<int>(width), static_cast<int>(height), depth, colours)));
}

Colour colourAt(const Image& image, POINT point) {
  require(point.x >= 0 && point.x < image.width() && point.y >= 0 && point.y < image.height(),
          "the point is outside the image");
  Colour colour;
  const dibkit::PaletteTable palette(image.dib());
  GetPixelRGB(image.row(point.y), point.x, image.depth(), const_cast<RGBQUAD*>(palette.data()), &colour.red,
              &colour.green, &colour.blue);
  return colour;
}

void defineImage(py::module_& module) {
  py::class_<Image> image(module, "Image", py::custom_type_setup(setUpBuffer), R"(A picture in memory.

    Parameters
    ----------
    width, height : int
        Sides in pixels, 0 or more.
    depth : int
        Bits of a pixel: 1, 4 or 8 (indexes into a palette), 16 (5 bits for each channel), 24, or 32 with alpha.
    colours : int
        Entries of the palette; 0 for as many as the depth can index.

    Raises
    ------
    ValueError
        For another depth, a side below 0, or more than 2^31 - 1 bytes.
    MemoryError
        When memory runs out.

    Notes
    -----
    All pixels are 0: index 0, black, or transparent. Lines count from the top. Colour is straight, not
    premultiplied; alpha 255 is opaque. In memory the channels are blue, green, red, alpha.)");
  image
      .def(
          py::init([](Number<INT64_MIN, INT64_MAX> width, Number<INT64_MIN, INT64_MAX> height, Byte depth,
                      Number<INT32_MIN, INT32_MAX> colours) { return Image(width, height, depth, colours); }),
          py::arg("width"), py::arg("height"), py::arg("depth") = 32, py::arg("colours") = 0)
      .def_static(
          "filled",
          [](Number<0, INT32_MAX> width, Number<0, INT32_MAX> height, Colour colour, Byte alpha) {
            Image made(width, height, 32);
            CDIB32::Make32BitsSimpleColorDIB(made.dib(), colour);
            CDIB32::MakeAllPixelsSameOpacity(made.dib(), alpha);
            return made;
          },
          py::arg("width"), py::arg("height"), py::arg("colour"), py::arg("alpha") = 255,
          "A new image of 32 bits in one colour.")
      .def_property_readonly("width", &Image::width, "Pixels in a line.")
      .def_property_readonly("height", &Image::height, "Lines.")
      .def_property_readonly("depth", &Image::depth, "Bits of a pixel.")
      .def_property_readonly(
          "size", [](const Image& self) { return std::pair(self.width(), self.height()); },
          "Width and height in pixels.")
      .def(
          "copy", [](const Image& self) { return made(CBitmapCreator::Clone(self.dib())); },
          py::call_guard<py::gil_scoped_release>(), "A new image with the same pixels and palette.")
      .def(
          "colour_at",
          [](const Image& self, POINT point) {
            const Colour colour = colourAt(self, point);
            return std::tuple<int, int, int>(colour.red, colour.green, colour.blue);
          },
          py::arg("point"),
          "Red, green and blue of the pixel at (x, y). Those of 16 bits have their low three bits 0.")
      .def("__copy__", [](const Image& self) { return made(CBitmapCreator::Clone(self.dib())); })
      .def(
          "__deepcopy__",
          [](const Image& self, py::handle) { return made(CBitmapCreator::Clone(self.dib())); },
          py::arg("memo"))
      .def(
          "__eq__",
          [](const Image& self, py::handle other) -> py::object {
            if (!py::isinstance<Image>(other)) return py::reinterpret_borrow<py::object>(Py_NotImplemented);
            return py::bool_(equal(self, requireImage(other, 0)));
          },
          py::arg("other"))
      .def("__repr__", &describe)
      .def(py::pickle(&blockOf, &imageOfBlock));
  image.attr("__hash__") = py::none();
  defineImageArrays(image);
  defineImageFiles(image);
}

}  // namespace binding
