#include <new>

#include "arguments.h"

/// \file
/// Masks and coverage: arrays outside, images of 1 and 8 bits inside.
namespace binding {

namespace {

/// The array as one of `height` x `width`, or a refusal that names what it should be.
py::array planeFrom(py::handle value, const char* wanted) {
  if (!py::isinstance<py::array>(value))
    throw py::type_error(std::string(wanted) + " is needed, not " + Py_TYPE(value.ptr())->tp_name);
  auto plane = py::reinterpret_borrow<py::array>(value);
  if (plane.ndim() != 2)
    refuse(std::string(wanted) + " is needed, not one of " + text(plane.ndim()) + " dimensions");
  if (plane.shape(0) > INT32_MAX || plane.shape(1) > INT32_MAX) refuse("the array is too large");
  return plane;
}

bool isBool(const py::array& array) { return array.dtype().kind() == 'b'; }
bool isBytes(const py::array& array) { return array.dtype().kind() == 'u' && array.itemsize() == 1; }

/// The image whose pixel (x, y) is what `store(row, x, value)` makes of the array's.
template <class Store>
dibkit::OwnedDib imageOf(const py::array& plane, int depth, Store&& store) {
  const int width = static_cast<int>(plane.shape(1));
  const int height = static_cast<int>(plane.shape(0));
  const auto* first = static_cast<const BYTE*>(plane.data());
  const py::ssize_t down = plane.strides(0);
  const py::ssize_t across = plane.strides(1);
  const py::gil_scoped_release unlocked;
  dibkit::OwnedDib dib(CBitmapCreator::CreateDibImage(width, height, depth, 0));
  if (!dib) throw std::bad_alloc();
  const dibkit::View view(dib.get());
  for (int y = 0; y < view.lines(); ++y) {
    BYTE* row = view.row(y);
    const BYTE* from = first + y * down;
    for (int x = 0; x < width; ++x) store(row, x, from[x * across]);
  }
  return dib;
}

}  // namespace

Mask maskFrom(py::handle value) {
  if (value.is_none()) return {};
  return {requiredMaskFrom(value)};
}

RequiredMask requiredMaskFrom(py::handle value) {
  const char* const wanted = "a mask (height x width, bool)";
  const py::array plane = planeFrom(value, wanted);
  if (!isBool(plane)) throw py::type_error(std::string(wanted) + " is needed, not an array of other numbers");
  RequiredMask mask;
  mask.dib = imageOf(plane, 1, [](BYTE* row, int x, BYTE set) {
    if (set != 0) row[x / 8] = static_cast<BYTE>(row[x / 8] | 0x80 >> x % 8);
  });
  // Frame operations that draw into the margins of a mask look for its white entry.
  dibkit::paletteOf(mask.dib.get())[1] = {255, 255, 255, 0};
  return mask;
}

Coverage coverageFrom(py::handle value) {
  if (value.is_none()) return {};
  Coverage coverage;
  if (py::isinstance<Image>(value)) {
    coverage.dib = requireImage(value, 8).dib();
    return coverage;
  }
  const char* const wanted = "coverage (height x width, bytes or bool)";
  const py::array plane = planeFrom(value, wanted);
  if (!isBytes(plane) && !isBool(plane))
    throw py::type_error(std::string(wanted) + " is needed, not an array of other numbers");
  const BYTE full = isBool(plane) ? 255 : 1;
  coverage.made =
      imageOf(plane, 8, [full](BYTE* row, int x, BYTE amount) { row[x] = static_cast<BYTE>(full * amount); });
  coverage.dib = coverage.made.get();
  return coverage;
}

py::object maskArray(const BITMAPINFOHEADER* mask) {
  if (mask == nullptr) return py::none();
  const dibkit::ConstView view(mask);
  py::array_t<bool> array({py::ssize_t{view.height()}, py::ssize_t{view.width()}});
  bool* pixel = array.mutable_data();
  const py::gil_scoped_release unlocked;
  for (int y = 0; y < view.lines(); ++y) {
    const BYTE* row = view.row(y);
    for (int x = 0; x < view.width(); ++x) *pixel++ = Get1BitPixel(row, x) != 0;
  }
  return array;
}

void requireMaskOf(const BITMAPINFOHEADER* frame, const BITMAPINFOHEADER* mask) {
  if (mask == nullptr || (mask->biWidth == frame->biWidth && mask->biHeight == frame->biHeight)) return;
  refuse("the mask has " + text(mask->biHeight) + " x " + text(mask->biWidth) + " pixels, its image " +
         text(frame->biHeight) + " x " + text(frame->biWidth));
}

}  // namespace binding
