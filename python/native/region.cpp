#include "region.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>

#include "arguments.h"

namespace binding {

namespace {

using Span = std::tuple<int, int, int>;

Region combined(const Region& a, const Region& b, int mode) {
  Region result;
  if (CombineRgn(result.get(), a.get(), b.get(), mode) == ERROR) throw std::bad_alloc();
  return result;
}

/// Moves a region, which has to stay within 32-bit coordinates.
Region moved(Region region, POINT by) {
  if (OffsetRgn(region.get(), by.x, by.y) == ERROR) refuse("the region would leave the 32-bit coordinates");
  return region;
}

/// The pixels of an array that are not 0, moved by `origin`.
Region fromArray(const RequiredMask& mask, POINT origin) {
  std::vector<RECT> runs;
  const dibkit::ConstView view(mask.dib.get());
  for (int y = 0; y < view.lines(); ++y) {
    const BYTE* row = view.row(y);
    for (int x = 0; x < view.width(); ++x) {
      if (Get1BitPixel(row, x) == 0) continue;
      const int left = x;
      while (x < view.width() && Get1BitPixel(row, x) != 0) ++x;
      runs.push_back({left, y, x, y + 1});
    }
  }
  return moved(regionOf(runs), origin);
}

Region fromSpans(const std::vector<Span>& spans) {
  std::vector<RECT> runs;
  for (const auto& [y, left, right] : spans) {
    require(left <= right && y < INT32_MAX, "a span is (y, left, right) with left up to right");
    runs.push_back({left, y, right, y + 1});
  }
  return regionOf(runs);
}

std::vector<Span> spansOf(const Region& region) {
  const std::vector<RECT> rectangles = region.rectangles();
  std::vector<Span> spans;
  for (std::size_t begin = 0, end = 0; begin < rectangles.size(); begin = end) {
    while (end < rectangles.size() && rectangles[end].top == rectangles[begin].top) ++end;
    for (LONG y = rectangles[begin].top; y < rectangles[begin].bottom; ++y) {
      for (std::size_t i = begin; i < end; ++i)
        spans.emplace_back(y, rectangles[i].left, rectangles[i].right);
    }
  }
  return spans;
}

/// Which pixels of a rectangle are in the region.
py::array toArray(const Region& region, SIZE size, POINT origin) {
  require(size.cx >= 0 && size.cy >= 0, "a size has no side below 0");
  py::array_t<bool> array({py::ssize_t{size.cy}, py::ssize_t{size.cx}});
  bool* pixels = array.mutable_data();
  std::memset(pixels, 0, static_cast<std::size_t>(array.size()));
  const auto inside = [](std::int64_t coordinate, LONG limit) {
    return static_cast<py::ssize_t>(std::clamp<std::int64_t>(coordinate, 0, limit));
  };
  for (const RECT& rect : region.rectangles()) {
    const py::ssize_t left = inside(std::int64_t{rect.left} - origin.x, size.cx);
    const py::ssize_t right = inside(std::int64_t{rect.right} - origin.x, size.cx);
    const py::ssize_t bottom = inside(std::int64_t{rect.bottom} - origin.y, size.cy);
    for (py::ssize_t y = inside(std::int64_t{rect.top} - origin.y, size.cy); y < bottom; ++y)
      std::memset(pixels + y * size.cx + left, 1, static_cast<std::size_t>(right - left));
  }
  return array;
}

std::int64_t areaOf(const Region& region) {
  std::int64_t pixels = 0;
  for (const RECT& rect : region.rectangles())
    pixels += (std::int64_t{rect.right} - rect.left) * (std::int64_t{rect.bottom} - rect.top);
  return pixels;
}

Region polygon(const Points& points) {
  require(points.count() >= 2, "a polygon needs points");
  return Region(dibkit::OwnedRegion(CreatePolygonRgn(points.all.data(), points.count(), ALTERNATE)));
}

std::string describe(const Region& region) {
  const RECT box = region.box();
  return "<dibkit.Region of " + text(areaOf(region)) + " pixels in (" + text(box.left) + ", " +
         text(box.top) + ", " + text(box.right) + ", " + text(box.bottom) + ")>";
}

}  // namespace

Region::Region(dibkit::OwnedRegion region) : region_(std::move(region)) {
  if (!region_) throw std::bad_alloc();
}

RECT Region::box() const {
  RECT box{};
  GetRgnBox(get(), &box);
  return box;
}

std::vector<RECT> Region::rectangles() const {
  const DWORD bytes = GetRegionData(get(), 0, nullptr);
  if (bytes == 0) throw std::bad_alloc();
  std::vector<std::byte> block(bytes);
  auto* data = reinterpret_cast<RGNDATA*>(block.data());
  if (GetRegionData(get(), bytes, data) == 0) throw std::bad_alloc();
  std::vector<RECT> rectangles(data->rdh.nCount);
  if (!rectangles.empty()) std::memcpy(rectangles.data(), data->Buffer, rectangles.size() * sizeof(RECT));
  return rectangles;
}

Region regionOf(const std::vector<RECT>& rectangles) {
  const std::size_t bytes = rectangles.size() * sizeof(RECT);
  std::vector<std::byte> block(sizeof(RGNDATAHEADER) + bytes);
  auto* data = reinterpret_cast<RGNDATA*>(block.data());
  data->rdh = {sizeof(RGNDATAHEADER),
               RDH_RECTANGLES,
               static_cast<DWORD>(rectangles.size()),
               static_cast<DWORD>(bytes),
               {}};
  RECT& bound = data->rdh.rcBound;
  for (const RECT& rect : rectangles) UnionRect(&bound, &bound, &rect);
  if (bytes > 0) std::memcpy(data->Buffer, rectangles.data(), bytes);
  return Region(dibkit::OwnedRegion(ExtCreateRegion(nullptr, static_cast<DWORD>(block.size()), data)));
}

void defineRegion(py::module_& module) {
  py::class_<Region> region(module, "Region",
                            R"(A set of pixels, of any shape, in 32-bit coordinates. It never changes.

    `Region()` is empty. The operators are those of sets: ``a | b``, ``a & b``, ``a - b``, ``a ^ b``, ``(x, y) in a``,
    ``a == b``; an empty region is false.)");
  const auto combine = [&region](const char* name, int mode) {
    region.def(
        name, [mode](const Region& a, const Region& b) { return combined(a, b, mode); }, py::arg("other"),
        py::is_operator(), py::call_guard<py::gil_scoped_release>());
  };
  region.def(py::init<>());
  combine("__or__", RGN_OR);
  combine("__and__", RGN_AND);
  combine("__sub__", RGN_DIFF);
  combine("__xor__", RGN_XOR);
  region
      .def_static(
          "rectangle", [](RECT rect) { return regionOf({rect}); }, py::arg("rect"),
          "The pixels of a rectangle (left, top, right, bottom), right and bottom exclusive.")
      .def_static(
          "ellipse",
          [](RECT box) {
            return Region(dibkit::OwnedRegion(CreateEllipticRgn(box.left, box.top, box.right, box.bottom)));
          },
          py::arg("rect"), "The ellipse in a rectangle.")
      .def_static("polygon", &polygon, py::arg("points"), "A closed polygon, by the even-odd rule.")
      .def_static(
          "from_array", &fromArray, py::arg("array"), py::arg("origin") = py::make_tuple(0, 0),
          "The pixels that are True in a height x width array of bool, whose first one is at `origin`.")
      .def_static("from_spans", &fromSpans, py::arg("spans"),
                  "The pixels of spans (y, left, right), right exclusive, in any order.")
      .def("to_array", &toArray, py::arg("size"), py::arg("origin") = py::make_tuple(0, 0),
           "Which pixels of the rectangle at `origin` with the size (width, height) are in the region: "
           "height x width "
           "of bool.")
      .def("spans", &spansOf, "Its spans (y, left, right), by lines from the top and in each from the left.")
      .def("rectangles", &Region::rectangles,
           "Its rectangles, by lines from the top and in each from the left.")
      .def(
          "translate", [](const Region& self, POINT by) { return moved(combined(self, self, RGN_OR), by); },
          py::arg("by"), "The region moved by (x, y).")
      .def_property_readonly("box", &Region::box,
                             "The smallest rectangle that holds it; all 0 if it is empty.")
      .def_property_readonly("area", &areaOf, "How many pixels it has.")
      .def(
          "__contains__",
          [](const Region& self, POINT point) { return PtInRegion(self.get(), point.x, point.y) != 0; },
          py::arg("point"))
      .def("__bool__", [](const Region& self) { return !self.rectangles().empty(); })
      .def(
          "__eq__",
          [](const Region& self, py::handle other) -> py::object {
            if (!py::isinstance<Region>(other)) return py::reinterpret_borrow<py::object>(Py_NotImplemented);
            return py::bool_(EqualRgn(self.get(), clipFrom(other)) != 0);
          },
          py::arg("other"))
      .def("__hash__",
           [](const Region& self) {
             const RECT box = self.box();
             return py::hash(py::make_tuple(box.left, box.top, box.right, box.bottom, areaOf(self)));
           })
      .def("__repr__", &describe)
      .def(py::pickle([](const Region& self) { return self.rectangles(); },
                      [](const std::vector<RECT>& rectangles) { return regionOf(rectangles); }));
}

}  // namespace binding
