#include <cstring>

#include "arguments.h"

namespace binding {

namespace {

/// An array by lines and columns, with any strides.
struct Plane {
  const BYTE* first;
  py::ssize_t down, across, deep;
  int width, height;

  explicit Plane(const py::array& array)
      : first(static_cast<const BYTE*>(array.data())),
        down(array.strides(0)),
        across(array.strides(1)),
        deep(array.ndim() > 2 ? array.strides(2) : 0),
        width(static_cast<int>(array.shape(1))),
        height(static_cast<int>(array.shape(0))) {}

  const BYTE* at(int x, int y) const { return first + y * down + x * across; }
};

/// Calls put(row, x, from) for each pixel.
template <class Put>
void fillFrom(const Plane& plane, const Image& image, Put&& put) {
  const py::gil_scoped_release unlocked;
  for (int y = 0; y < plane.height; ++y) {
    BYTE* row = image.row(y);
    for (int x = 0; x < plane.width; ++x) put(row, x, plane.at(x, y));
  }
}

void fillIndexes(const Plane& plane, const Image& image, bool bits) {
  BYTE most = 0;
  const auto indexOf = [&most, bits](const BYTE* from) {
    const BYTE index = bits ? static_cast<BYTE>(*from != 0) : *from;
    most = index > most ? index : most;
    return index;
  };
  fillFrom(plane, image, [&](BYTE* row, int x, const BYTE* from) {
    const BYTE index = indexOf(from);
    if (image.depth() == 8) {
      row[x] = index;
    } else if (image.depth() == 4) {
      Set4BitPixel(row, static_cast<BYTE>(index % 16), x);
    } else {
      Set1BitPixel(row, index, x);
    }
  });
  if (most >= 1 << image.depth())
    refuse("index " + text(most) + " needs more than " + text(image.depth()) + " bits");
}

void fillChannels(const Plane& plane, const Image& image, bool blueFirst) {
  const py::ssize_t blue = blueFirst ? 0 : 2 * plane.deep;
  const py::ssize_t red = blueFirst ? 2 * plane.deep : 0;
  const int bytes = image.depth() / 8;
  fillFrom(plane, image, [&](BYTE* row, int x, const BYTE* from) {
    BYTE* pixel = row + x * bytes;
    pixel[0] = from[blue];
    pixel[1] = from[plane.deep];
    pixel[2] = from[red];
    if (bytes == 4) pixel[3] = from[3 * plane.deep];
  });
}

/// A 16-bit image whose header tells the bits of its channels.
Image imageOfFields(int width, int height, const py::object& fields) {
  const Image plain(width, height, 16);
  const auto layout = *dibkit::layoutOf(plain.dib());
  constexpr std::size_t room = 3 * sizeof(DWORD);
  const auto bytes = static_cast<std::size_t>(layout.total) + room;
  auto* block = new BYTE[bytes]();
  Image image(dibkit::OwnedDib(reinterpret_cast<BITMAPINFOHEADER*>(block)));
  std::memcpy(block, plain.dib(), sizeof(BITMAPINFOHEADER));
  image.dib()->biCompression = BI_BITFIELDS;
  int masks[3];
  wholeNumbers(fields, masks, "three fields of bits (red, green, blue)");
  for (int i = 0; i < 3; ++i) {
    require(masks[i] >= 0 && masks[i] <= 0xFFFF, "a field has bits of the 16 of a pixel");
    const auto mask = static_cast<DWORD>(masks[i]);
    std::memcpy(block + sizeof(BITMAPINFOHEADER) + i * sizeof(DWORD), &mask, sizeof(mask));
  }
  return image;
}

/// The depth that the array's type and shape suit.
int depthFor(const py::array& array) {
  const char kind = array.dtype().kind();
  const py::ssize_t bytes = array.itemsize();
  const bool aligned = kind == 'b' || (kind == 'u' && bytes <= 2);
  if (!aligned || !py::cast<bool>(array.dtype().attr("isnative")))
    throw py::type_error("an array of bool, uint8 or uint16 is needed, not of " +
                         std::string(py::str(array.dtype())));
  if (array.ndim() == 2) return kind == 'b' ? 1 : static_cast<int>(8 * bytes);
  if (array.ndim() == 3 && (array.shape(2) == 3 || array.shape(2) == 4)) {
    if (kind != 'u' || bytes != 1) throw py::type_error("channels are needed as uint8");
    return static_cast<int>(8 * array.shape(2));
  }
  refuse("an array is needed of the shape (height, width), (height, width, 3) or (height, width, 4), not " +
         std::string(py::str(array.attr("shape"))));
}

bool isBlueFirst(const py::object& order) {
  const std::string name = order.is_none() ? "" : std::string(py::str(order));
  if (name == "bgr") return true;
  require(name == "rgb", "say the order of the channels: order=\"rgb\" or order=\"bgr\"");
  return false;
}

Palette grayRamp(int count) {
  Palette ramp{std::vector<RGBQUAD>(static_cast<std::size_t>(count))};
  CPaletteFuns::MakeGrayPalette(ramp.data(), count);
  return ramp;
}

int depthWanted(const py::object& depth, int suited, bool bytes) {
  if (depth.is_none()) return suited;
  const auto wanted = static_cast<int>(wholeNumber(depth, 1, 32));
  if (wanted == suited || (suited == 8 && bytes && (wanted == 1 || wanted == 4))) return wanted;
  refuse("an array of this type and shape has " + text(suited) + " bits a pixel, not " + text(wanted));
}

}  // namespace

Image imageFrom(const py::array& array, const py::object& order, const py::object& depth,
                const py::object& palette, const py::object& fields) {
  const int suited = depthFor(array);
  require(array.shape(0) <= INT32_MAX && array.shape(1) <= INT32_MAX, "the array is too large");
  const Plane plane(array);
  const int bits = depthWanted(depth, suited, array.dtype().kind() == 'u');
  require(palette.is_none() || bits <= 8, "only images of 1, 4 and 8 bits have a palette");
  require(fields.is_none() || bits == 16, "only images of 16 bits have fields");
  if (bits >= 24) {
    const bool blueFirst = isBlueFirst(order);
    Image image(plane.width, plane.height, bits);
    fillChannels(plane, image, blueFirst);
    return image;
  }
  require(order.is_none(), "an array without channels has no order of them");
  if (bits == 16) {
    Image image = fields.is_none() ? Image(plane.width, plane.height, 16)
                                   : imageOfFields(plane.width, plane.height, fields);
    fillFrom(plane, image, [](BYTE* row, int x, const BYTE* from) { std::memcpy(row + 2 * x, from, 2); });
    return image;
  }
  const Palette colours = palette.is_none() ? grayRamp(1 << bits) : paletteFrom(palette);
  require(colours.count() > 0, "a palette needs a colour");
  Image image(plane.width, plane.height, bits, colours.count() == 1 << bits ? 0 : colours.count());
  std::memcpy(dibkit::paletteOf(image.dib()), colours.entries.data(),
              colours.entries.size() * sizeof(RGBQUAD));
  fillIndexes(plane, image, suited == 1);
  return image;
}

}  // namespace binding
