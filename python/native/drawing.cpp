#include "module.h"
#include "operation.h"

namespace binding {

namespace {

using Drawn = std::optional<std::tuple<Image, POINT>>;

Drawn drawn(BITMAPINFOHEADER* dib, POINT at) {
  if (dib == nullptr) return std::nullopt;
  return std::tuple(made(dib), at);
}

const char* const drawnResult =
    "A new image and the (x, y) of its top-left pixel; None if nothing is drawn or memory runs out.";

/// Widths beyond this have no use, and would make pictures of gigabytes.
using PenWidth = Number<0, 32767>;

}  // namespace

void defineDrawing(py::module_& module) {
  define(
      module,
      {"draw_line", "PaintLineOnPic",
       "Draw a thick line with bits 1 into a 1-bit picture of a box: a new one, or one that is given.",
       "A new image of 1 bit and of the box's size.",
       "The box may not be empty, and a picture has its size."},
      [](RECT rect, POINT start, POINT end, PenWidth width, bool rounded, std::optional<ImageOf<1>> picture) {
        const std::int64_t across = std::int64_t{rect.right} - rect.left;
        const std::int64_t down = std::int64_t{rect.bottom} - rect.top;
        require(across > 0 && down > 0, "the box is empty");
        require(across <= 65535 && down <= 65535, "the box is too large");
        require(!picture || ((*picture)->width() == across && (*picture)->height() == down),
                "the picture has another size than the box");
        BITMAPINFOHEADER* from = picture ? static_cast<BITMAPINFOHEADER*>(*picture) : nullptr;
        return made(PaintLineOnPic(from, rect, start, end, width, rounded ? 1 : 0));
      },
      arg("rect"), arg("start"), arg("end"), arg("width") = 1, arg("rounded") = true, none("picture"));
  define(
      module,
      {"draw_polyline", "PaintLineOnPic2",
       "Draw a polyline with bits 0 on 1, so that as a mask the stroke is opaque, with 10 pixels around it.",
       drawnResult},
      [](RECT bounds, Points& points, PenWidth width, bool rounded) {
        POINT at{};
        return drawn(PaintLineOnPic2(bounds, points.data(), points.count(), width, rounded ? 1 : 0, &at), at);
      },
      arg("bounds"), arg("points"), arg("width") = 1, arg("rounded") = true);
  define(
      module,
      {"draw_shape", "PaintShapeOnPic",
       "Draw an ellipse or a rounded rectangle on 4 bits: index 0 is the outline, 1 the interior, 2 the "
       "background. "
       "`corner` is the size of the ellipse that rounds the corners.",
       drawnResult},
      [](RECT rect, PenWidth width, bool ellipse, bool filled, POINT corner) {
        POINT at{};
        return drawn(PaintShapeOnPic(rect, width, ellipse ? 1 : 0, filled ? 1 : 0, corner, &at), at);
      },
      arg("rect"), arg("width") = 1, arg("ellipse") = true, arg("filled") = true, origin("corner"));
  define(
      module,
      {"draw_polygon", "PaintPolygonOnPic",
       "Draw a closed polygon in the same way, filled by the even-odd rule.", drawnResult},
      [](Points& points, PenWidth width, bool filled) {
        POINT at{};
        return drawn(PaintPolygonOnPic(points.data(), points.count(), width, filled ? 1 : 0, &at), at);
      },
      arg("points"), arg("width") = 1, arg("filled") = true);
}

}  // namespace binding
