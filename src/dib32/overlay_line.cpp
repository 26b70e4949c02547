#include <algorithm>
#include <array>

#include "dib/drawing_surface.h"
#include "dib/view.h"
#include "dib32/dib32.h"
#include "palette/palette.h"

namespace dibkit {
namespace {

constexpr COLORREF black = RGB(0, 0, 0);
constexpr COLORREF white = RGB(255, 255, 255);

/// A position counted from an area's corner, as far as coordinates go.
int relative(LONG position, LONG corner) {
  constexpr std::int64_t farthest = INT32_MAX;
  return static_cast<int>(std::clamp(std::int64_t{position} - corner, -farthest, farthest));
}

/// The copy of a region, moved; null when it does not fit the range of coordinates. The caller's own region
/// is never touched.
OwnedRegion movedCopy(HRGN region, int dx, int dy) {
  OwnedRegion copy(CreateRectRgn(0, 0, 1, 1));
  if (CombineRgn(copy.get(), region, nullptr, RGN_COPY) == ERROR) return nullptr;
  return OffsetRgn(copy.get(), dx, dy) != ERROR ? std::move(copy) : nullptr;
}

/// The part of an area, counted from its corner, that a line with its margin can touch.
RECT boxOfLine(const RECT& area, const std::array<POINT, 2>& ends, int penWidth, int margin, HRGN clip) {
  // Two pixels more than half the pen are the least, since caps may stand out.
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
  DrawingSurface surface(box, DrawingSurface::Colours::blackAndWhite, black);
  if (!surface) return nullptr;
  if (areaClip) {
    // Clip regions do not follow the viewport origin.
    OffsetRgn(areaClip.get(), relative(0, box.left), relative(0, box.top));
    SelectClipRgn(surface.context(), areaClip.get());
  }
  surface.drawLine(ends.data(), 2, penWidth, roundCaps, white);
  OwnedDib coverage = surface.read(8);
  if (!coverage) return nullptr;
  // The read leaves the platform's palette behind. Black and white have the indexes 0 and 255 in it, as they
  // have in a gray one.
  CPaletteFuns::MakeGrayPalette(paletteOf(coverage.get()), 256);
  origin = {box.left, box.top};
  return coverage;
}

}  // namespace
}  // namespace dibkit

BITMAPINFOHEADER* CDIB32::GenerateLine(const RECT& area, const POINT& from, const POINT& to, int penWidth,
                                       int margin, int roundedCaps, HRGN clip, POINT* origin) {
  POINT corner{0, 0};
  dibkit::OwnedDib line =
      dibkit::lineCoverage(area, from, to, penWidth, margin, roundedCaps != 0, clip, corner);
  if (origin != nullptr) *origin = corner;
  return line.release();
}
