#include <array>

#include "effects/numbered.h"
#include "effects/piece.h"

namespace dibkit {
namespace {

struct Slide {
  RECT cut;    ///< the visible part of the picture
  RECT place;  ///< its rectangle in the frame
};

/// The slide of a w x h picture of which dx columns and dy rows are visible.
Slide slideFrom(long direction, LONG w, LONG h, LONG dx, LONG dy) {
  const std::array<Slide, 8> slides = {{
      {{w - dx, 0, w, h}, {0, 0, dx, h}},        // left edge
      {{w - dx, h - dy, w, h}, {0, 0, dx, dy}},  // top left corner
      {{0, h - dy, w, h}, {0, 0, w, dy}},        // top edge
      {{0, h - dy, dx, h}, {w - dx, 0, w, dy}},  // top right corner
      {{0, 0, dx, h}, {w - dx, 0, w, h}},        // right edge
      {{0, 0, dx, dy}, {w - dx, h - dy, w, h}},  // bottom right corner
      {{0, 0, w, dy}, {0, h - dy, w, h}},        // bottom edge
      {{w - dx, 0, w, dy}, {0, h - dy, dx, h}},  // bottom left corner
  }};
  const Slide whole = {{0, 0, w, h}, {0, 0, w, h}};
  return direction >= 0 && direction < 8 ? slides[static_cast<std::size_t>(direction)] : whole;
}

}  // namespace

BOOL renderSlide(BITMAPINFOHEADER* source, long direction, long amount, EffectOutput& output) {
  const auto [w, h] = sizeOf(source);
  // Outside the range the cut would be outside the picture.
  const int percent = clampAmount(amount, 0, 100);
  const auto [cut, place] = slideFrom(direction, w, h, static_cast<LONG>(percentOf(w, percent)),
                                      static_cast<LONG>(percentOf(h, percent)));
  const OwnedRegion region(CreateRectRgn(cut.left, cut.top, cut.right, cut.bottom));
  const BOOL made = cutPiece(source, region, output);
  output.rect = place;
  return made;
}

}  // namespace dibkit
