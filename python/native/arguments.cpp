#include "arguments.h"

#include <charconv>
#include <string_view>

namespace binding {

namespace {

std::string typeOf(py::handle value) { return Py_TYPE(value.ptr())->tp_name; }

[[noreturn]] void wrongType(const std::string& wanted, py::handle value) {
  throw py::type_error(wanted + " is needed, not " + typeOf(value));
}

/// A tuple or list of the object's items.
py::object itemsOf(py::handle value, const std::string& wanted) {
  if (PyUnicode_Check(value.ptr()) == 0) {
    if (PyObject* items = PySequence_Fast(value.ptr(), "")) return py::reinterpret_steal<py::object>(items);
    PyErr_Clear();
  }
  wrongType(wanted, value);
}

}  // namespace

void refuse(const std::string& sentence) { throw std::invalid_argument(sentence); }

void requireDone(int done) {
  if (done == 0) throw std::bad_alloc();
}

std::int64_t wholeNumber(py::handle value, std::int64_t least, std::int64_t most) {
  py::object number;
  if (PyLong_Check(value.ptr()) == 0) {
    number = py::reinterpret_steal<py::object>(PyNumber_Index(value.ptr()));
    if (!number) {
      PyErr_Clear();
      wrongType("a whole number", value);
    }
    value = number;
  }
  int overflow = 0;
  const long long result = PyLong_AsLongLongAndOverflow(value.ptr(), &overflow);
  if (overflow == 0 && result >= least && result <= most) return result;
  refuse("a number from " + text(least) + " to " + text(most) + " is needed, not " +
         std::string(py::str(value)));
}

void wholeNumbers(py::handle sequence, std::span<int> values, const char* what) {
  const py::object items = itemsOf(sequence, what);
  const auto count = static_cast<std::size_t>(PySequence_Fast_GET_SIZE(items.ptr()));
  if (count != values.size())
    refuse(std::string(what) + " is needed, not " + text(static_cast<std::int64_t>(count)) + " numbers");
  PyObject** item = PySequence_Fast_ITEMS(items.ptr());
  for (std::size_t i = 0; i < count; ++i) {
    values[i] = static_cast<int>(wholeNumber(item[i], std::numeric_limits<int>::min(), INT32_MAX));
  }
}

const Image& requireImage(py::handle value, int bits) {
  py::detail::make_caster<Image> caster;
  if (value.is_none() || !caster.load(value, false)) wrongType("an Image", value);
  const Image& image = py::detail::cast_op<Image&>(caster);
  if (bits == 0 || image.depth() == bits) return image;
  refuse("an image of " + text(bits) + " bits is needed, not of " + text(image.depth()));
}

Colour colourFrom(py::handle value) {
  if (PyUnicode_Check(value.ptr()) != 0) {
    const auto text = value.cast<std::string>();
    std::uint32_t rgb = 0;
    const auto [end, error] = std::from_chars(text.data() + 1, text.data() + text.size(), rgb, 16);
    if (text.size() != 7 || text[0] != '#' || error != std::errc() || end != text.data() + 7)
      refuse("'" + text + "' is no colour; write it like #1e90ff or (30, 144, 255)");
    return {static_cast<BYTE>(rgb >> 16), static_cast<BYTE>(rgb >> 8), static_cast<BYTE>(rgb)};
  }
  int channels[3];
  wholeNumbers(value, channels, "a colour (red, green, blue)");
  for (const int channel : channels) {
    if (channel < 0 || channel > 255) refuse("a colour has numbers from 0 to 255, not " + text(channel));
  }
  return {static_cast<BYTE>(channels[0]), static_cast<BYTE>(channels[1]), static_cast<BYTE>(channels[2])};
}

Palette paletteFrom(py::handle value) {
  Palette palette;
  const py::object colours = itemsOf(value, "a palette (a list of colours)");
  const Py_ssize_t count = PySequence_Fast_GET_SIZE(colours.ptr());
  if (count > 256) refuse("a palette has at most 256 colours, not " + text(count));
  for (Py_ssize_t i = 0; i < count; ++i) {
    const Colour colour = colourFrom(PySequence_Fast_GET_ITEM(colours.ptr(), i));
    palette.entries.push_back({colour.blue, colour.green, colour.red, 0});
  }
  return palette;
}

py::array paletteArray(const std::vector<RGBQUAD>& entries) {
  py::array_t<std::uint8_t> array({static_cast<py::ssize_t>(entries.size()), py::ssize_t{3}});
  std::uint8_t* channel = array.mutable_data();
  for (const RGBQUAD& entry : entries) {
    *channel++ = entry.rgbRed;
    *channel++ = entry.rgbGreen;
    *channel++ = entry.rgbBlue;
  }
  return array;
}

Points pointsFrom(py::handle value) {
  Points points;
  const py::object all = itemsOf(value, "a list of points (x, y)");
  const Py_ssize_t count = PySequence_Fast_GET_SIZE(all.ptr());
  require(count <= INT32_MAX, "these are more points than a line can have");
  for (Py_ssize_t i = 0; i < count; ++i) {
    int numbers[2];
    wholeNumbers(PySequence_Fast_GET_ITEM(all.ptr(), i), numbers, "a point (x, y)");
    points.all.push_back({numbers[0], numbers[1]});
  }
  return points;
}

Clip clipFrom(py::handle value) {
  if (value.is_none()) return {};
  py::detail::make_caster<Region> caster;
  if (!caster.load(value, false)) wrongType("a Region", value);
  return {py::detail::cast_op<Region&>(caster).get()};
}

}  // namespace binding
