#include <array>
#include <climits>
#include <cmath>
#include <vector>

#include "effects/angles.h"
#include "effects/full_coverage.h"
#include "effects/numbered.h"
#include "effects/piece.h"
#include "raster/region_builder.h"

namespace dibkit {
namespace {

constexpr int fullTurn = 360;

double tangent(int degrees) { return std::tan(radians(degrees)); }

int diagonalAngle(const SIZE& box) {
  return static_cast<int>(std::atan(static_cast<double>(box.cx) / box.cy) / eightDigitPi * 180.0);
}

/// A coordinate of the hand's end, truncated. A hand almost parallel to the side that it ends on ends far
/// away; the coordinate is clamped where more would change no pixel of the box.
int endAt(double coordinate, const SIZE& box) {
  const double limit = (box.cx + 2.0) * (box.cy + 2.0);
  return static_cast<int>(std::clamp(coordinate, -limit, limit));
}

/// The part of a box that a hand has swept, starting at twelve o'clock: a polygon of the centre, the middle
/// of the top side, the corners passed, and the end of the hand. The side that the hand ends on follows from
/// the diagonal's angle in whole degrees. So just before the second and the fourth corner its end is a little
/// outside the box, on purpose. A hand before twelve o'clock or past a full turn ends on the top side.
std::vector<POINT> clockPolygon(const SIZE& box, int angle, bool clockwise, int diagonal) {
  const auto [w, h] = box;
  const double hw = w / 2.0;
  const double hh = h / 2.0;
  const LONG nearSide = clockwise ? w : 0;
  const LONG farSide = clockwise ? 0 : w;
  const int side = clockwise ? 1 : -1;
  const std::array<POINT, 4> corners = {{{nearSide, 0}, {nearSide, h}, {farSide, h}, {farSide, 0}}};
  if (angle == fullTurn) return {corners.begin(), corners.end()};

  std::vector<POINT> points = {{w / 2, h / 2}, {w / 2, 0}};
  const auto pass = [&](int cornersPassed, POINT end) {
    points.insert(points.end(), corners.begin(), corners.begin() + cornersPassed);
    points.push_back(end);
  };
  if (angle <= diagonal) {
    // Only here the half is a whole number and the distance is truncated by itself.
    pass(0, {w / 2 + side * endAt(tangent(angle) * hh, box), 0});
  } else if (angle <= 180 - diagonal) {
    pass(1, {nearSide, endAt(tangent(angle - 90) * hw + hh, box)});
  } else if (angle <= 180 + diagonal) {
    pass(2, {endAt(tangent(side * (180 - angle)) * hh + hw, box), h});
  } else if (angle <= 360 - diagonal) {
    pass(3, {farSide, endAt(tangent(270 - angle) * hw + hh, box)});
  } else {
    pass(4, {endAt(hw - side * (tangent(360 - angle) * hh), box), 0});
  }
  return points;
}

OwnedRegion clockRegion(const SIZE& box, int angle, bool clockwise) {
  const std::vector<POINT> points = clockPolygon(box, angle, clockwise, diagonalAngle(box));
  return OwnedRegion(CreatePolygonRgn(points.data(), static_cast<int>(points.size()), ALTERNATE));
}

OwnedRegion manyClocks(const SIZE& picture, int angle, bool clockwise) {
  // A picture too small for ten tiles has tiles of one pixel.
  const int tileWidth = std::max<int>(picture.cx / 10, 1);
  const int tileHeight = std::max<int>(picture.cy / 10, 1);
  // All tiles are equal, except those that the right and the bottom side cut off.
  std::array<OwnedRegion, 4> clocks;
  const auto clockOf = [&](const SIZE& tile) {
    OwnedRegion& clock = clocks[(tile.cx < tileWidth ? 1U : 0U) + (tile.cy < tileHeight ? 2U : 0U)];
    if (!clock) clock = clockRegion(tile, angle, clockwise);
    return clock.get();
  };
  RegionBuilder builder(picture.cx, picture.cy);
  for (int y = 0; y < picture.cy; y += tileHeight) {
    for (int x = 0; x < picture.cx; x += tileWidth) {
      builder.add(
          clockOf({std::min<int>(tileWidth, picture.cx - x), std::min<int>(tileHeight, picture.cy - y)}), x,
          y);
    }
  }
  return builder.region();
}

}  // namespace

long fullCoverageOfManyClocks(const SIZE& picture, long direction) {
  return minimumFullCoverage(picture, fullTurn, [&](long angle) {
    return manyClocks(picture, static_cast<int>(angle), direction != 0);
  });
}

BOOL renderClock(BITMAPINFOHEADER* source, long direction, long angle, EffectOutput& output) {
  const OwnedRegion region =
      clockRegion(sizeOf(source), clampAmount(angle, INT_MIN, INT_MAX), direction != 0);
  // Unlike those of all other effects, the rectangle is that of the polygon before it is clipped, on purpose:
  // where the hand's end is outside the picture, it is larger than the piece. Hosts clip it themselves.
  RECT box{};
  GetRgnBox(region.get(), &box);
  const BOOL made = cutPiece(source, region, output);
  output.rect = box;
  return made;
}

BOOL renderManyClocks(BITMAPINFOHEADER* source, long direction, long angle, EffectOutput& output) {
  const OwnedRegion region = manyClocks(sizeOf(source), clampAmount(angle, INT_MIN, INT_MAX), direction != 0);
  return cutPiece(source, region, output);
}

}  // namespace dibkit
