#include "module.h"
#include "operation.h"

namespace binding {

namespace {

using DrawSide = int(BITMAPINFOHEADER*, const POINT&, int, int, int, BYTE, BYTE, BYTE, BYTE, BYTE, BYTE, int);

DrawSide* sideNamed(const std::string& name) {
  if (name == "top") return CDIB32::DrawTopHatchedLine;
  if (name == "right") return CDIB32::DrawRightHatchedLine;
  if (name == "bottom") return CDIB32::DrawBottomHatchedLine;
  require(name == "left", "a side is \"top\", \"right\", \"bottom\" or \"left\"");
  return CDIB32::DrawLeftHatchedLine;
}

/// Widths beyond this have no use, and would make pictures of gigabytes.
using PenWidth = Number<0, 32767>;

}  // namespace

void defineOverlays(py::module_& module) {
  define(
      module,
      {"checkerboard", "CDIB32::Init32DIBBackground",
       "Draw squares of 8 x 8 pixels in two colours, in place; alpha is unchanged. `at` is the place of the "
       "image in the "
       "pattern, 0 or more."},
      [](Image32 image, Colour first, Colour second, Number<0, INT32_MAX> x, Number<0, INT32_MAX> y) {
        CDIB32::Init32DIBBackground(image, first.red, first.green, first.blue, second.red, second.green,
                                    second.blue, x, y);
      },
      arg("image"), arg("first") = py::make_tuple(255, 255, 255),
      arg("second") = py::make_tuple(204, 204, 204), arg("x") = 0, arg("y") = 0);
  define(
      module,
      {"hatch", "CDIB32::Init32DIBWithHatedLines",
       "Draw both diagonals, every 8 pixels, in place; alpha is unchanged. `at` is the place of the image in "
       "the pattern."},
      [](Image32 image, Colour colour, POINT at) {
        CDIB32::Init32DIBWithHatedLines(image, CPoint(at), colour);
      },
      arg("image"), arg("colour"), origin("at"));
  define(
      module,
      {"draw_dashes",
       "CDIB32::DrawTopHatchedLine, DrawRightHatchedLine, DrawBottomHatchedLine, DrawLeftHatchedLine",
       "Draw one side of a dashed outline, in place: three pixels of `second`, three of `first` and so on; "
       "alpha is "
       "unchanged. `side` is \"top\", \"right\", \"bottom\" or \"left\", `begin` and `last` are its ends, "
       "inclusive, and "
       "`fixed` is its row or column. Sides are drawn in that order, each with the phase that the one before "
       "gave.",
       "The phase for the next side."},
      [](Image32 image, const std::string& side, Integer begin, Integer last, Integer fixed, Colour first,
         Colour second, Integer phase, POINT at) {
        return sideNamed(side)(image, at, begin, last, fixed, first.red, first.green, first.blue, second.red,
                               second.green, second.blue, phase);
      },
      arg("image"), arg("side"), arg("begin"), arg("last"), arg("fixed"),
      arg("first") = py::make_tuple(0, 0, 0), arg("second") = py::make_tuple(255, 255, 255), arg("phase") = 0,
      origin("at"));
  define(
      module,
      {"draw_selection", "CDIB32::DrawSelectedFlag",
       "Outline a rectangle with black and white dashes, in place (marching ants, with phases 0 to 5 one "
       "after the "
       "other). `at` is the place of the image in the space of the rectangle."},
      [](Image32 image, RECT rect, Integer phase, POINT at) {
        CDIB32::DrawSelectedFlag(image, at, rect, phase);
      },
      arg("image"), arg("rect"), arg("phase") = 0, origin("at"));
  define(
      module,
      {"stroke", "CDIB32::GenerateLine",
       "Draw the stroke of a line tool as coverage, 0 or 255. `margin` is how many pixels surround it, at "
       "least 2.",
       "An image of 8 bits and the (x, y) of its top-left pixel from the corner of `bounds`; None if nothing "
       "of the "
       "stroke's box is inside."},
      [](RECT bounds, POINT start, POINT end, PenWidth width, PenWidth margin, bool rounded,
         Clip& clip) -> std::optional<std::tuple<Image, POINT>> {
        POINT at{};
        dibkit::OwnedDib dib(
            CDIB32::GenerateLine(bounds, start, end, width, margin, rounded ? 1 : 0, clip, &at));
        if (!dib) return std::nullopt;
        return std::tuple(made(std::move(dib)), at);
      },
      arg("bounds"), arg("start"), arg("end"), arg("width") = 1, arg("margin") = 2, arg("rounded") = true,
      none("clip"));
}

}  // namespace binding
