#include <algorithm>
#include <array>

#include "dib/view.h"
#include "dib32/dib32.h"
#include "drawing/drawing_surface.h"
#include "palette/palette.h"

namespace dibkit {
namespace {

constexpr COLORREF black = RGB(0, 0, 0);
constexpr COLORREF white = RGB(255, 255, 255);

/// A position relative to an area's corner, clamped to the range of coordinates.
int relative(LONG position, LONG corner) {
  constexpr std::int64_t farthest = INT32_MAX;
  return static_cast<int>(std::clamp(std::int64_t{position} - corner, -farthest, farthest));
}

/// A moved copy of a region; null when it exceeds the range of coordinates. The caller's own region is never
/// changed.
OwnedRegion movedCopy(HRGN region, int dx, int dy) {
  OwnedRegion copy(CreateRectRgn(0, 0, 1, 1));
  if (CombineRgn(copy.get(), region, nullptr, RGN_COPY) == ERROR) return nullptr;
  return OffsetRgn(copy.get(), dx, dy) != ERROR ? std::move(copy) : nullptr;
}

/// The part of an area, relative to its corner, that a line with its margin can reach.
RECT boxOfLine(const RECT& area, const std::array<POINT, 2>& ends, int penWidth, int margin, HRGN clip) {
  // At least two pixels more than half the pen's width, since caps may project beyond the ends.
  const std::int64_t around =
      (std::int64_t{penWidth} + 1) / 2 + std::max<std::int64_t>((std::int64_t{margin} + 1) / 2, 2);
  RECT box = boxAround(ends.data(), 2, around);
  if (clip != nullptr) {
    RECT clipBox;
    GetRgnBox(clip, &clipBox);
    IntersectRect(&box, &box, &clipBox);
  }
  const RECT whole{0, 0, relative(area.right, area.left), relative(area.bottom, area.top)};
  RECT visible;
  IntersectRect(&visible, &box, &whole);
  return visible;
}

OwnedDib lineCoverage(const RECT& area, const POINT& from, const POINT& to, int penWidth, int margin,
                      bool roundCaps, HRGN clip, POINT& origin) {
  const std::array<POINT, 2> ends{POINT{relative(from.x, area.left), relative(from.y, area.top)},
                                  POINT{relative(to.x, area.left), relative(to.y, area.top)}};
  OwnedRegion areaClip;
  if (clip != nullptr) {
    areaClip = movedCopy(clip, relative(0, area.left), relative(0, area.top));
    if (!areaClip) return nullptr;
  }
  const RECT box = boxOfLine(area, ends, penWidth, margin, areaClip.get());
  DrawingSurface surface(box, black);
  if (!surface) return nullptr;
  if (areaClip) {
    // Clip regions do not follow the viewport origin. Only the part in the box is moved: all of a region may
    // leave the range of coordinates.
    const OwnedRegion whole(CreateRectRgn(box.left, box.top, box.right, box.bottom));
    if (CombineRgn(areaClip.get(), areaClip.get(), whole.get(), RGN_AND) == ERROR ||
        OffsetRgn(areaClip.get(), relative(0, box.left), relative(0, box.top)) == ERROR ||
        SelectClipRgn(surface.context(), areaClip.get()) == ERROR) {
      return nullptr;
    }
  }
  if (!surface.drawLine(ends.data(), 2, penWidth, roundCaps, white)) return nullptr;
  OwnedDib coverage = surface.read(8);
  if (!coverage) return nullptr;
  // The image read has the platform's palette. Black and white have the indexes 0 and 255 there, as in the
  // gray palette that replaces it.
  CPaletteFuns::MakeGrayPalette(paletteOf(coverage.get()), 256);
  origin = {box.left, box.top};
  return coverage;
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

BITMAPINFOHEADER* CDIB32::GenerateLine(const RECT& area, const POINT& from, const POINT& to, int penWidth,
                                       int margin, int roundedCaps, HRGN clip, POINT* origin) {
  POINT corner{0, 0};
  OwnedDib line = lineCoverage(area, from, to, penWidth, margin, roundedCaps != 0, clip, corner);
  if (origin != nullptr) *origin = corner;
  return line.release();
}
