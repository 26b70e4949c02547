#include <algorithm>
#include <cmath>

#include "effects/full_coverage.h"
#include "effects/numbered.h"
#include "effects/piece.h"

namespace dibkit {
namespace {

enum Shape : long { circle, rectangle, ellipse, roundedRectangle, diamond };

// What the picture's size is divided by to give a shape's size at 100 percent. The ellipse's is deliberately
// a little more than the 0.7071 with which it would reach the corners.
constexpr double ellipseDivisor = 0.717;
constexpr double roundedDivisor = 0.8;

/// A percentage at which a shape is sure to cover the picture.
long enoughPercent(const SIZE& picture, long shape) {
  // Each shape has to reach the corner pixels. A few pixels more make good for the centre, which lies half a
  // pixel off in an odd picture, and for what truncation and the right and bottom sides take away.
  const double shortSide = std::min<int>(picture.cx, picture.cy);
  double factor = 1.0;
  switch (shape) {
    case circle: {
      const double radius = diagonalOf(picture) / 2.0;
      factor = (radius + 3.0) / radius;
      break;
    }
    case rectangle:
      // Half of an odd extent loses its fraction on either side.
      if (picture.cx % 2 != 0) factor = std::max(factor, (picture.cx + 1.0) / picture.cx);
      if (picture.cy % 2 != 0) factor = std::max(factor, (picture.cy + 1.0) / picture.cy);
      break;
    case ellipse:
      factor = ellipseDivisor * std::sqrt(2.0) * (shortSide + 6.0) / shortSide;
      break;
    case roundedRectangle:
      // The rounding, an eighth of the extent, cuts off less than a twelfth of it at the diagonal.
      factor = std::max(factor, roundedDivisor * 13.0 / 12.0 * (shortSide + 6.0) / shortSide);
      break;
    default:
      break;
  }
  return static_cast<long>(std::ceil(factor * 100.0));
}

OwnedRegion spreadRegion(const SIZE& picture, long shape, long amount) {
  const auto [w, h] = picture;
  const int cx = w / 2;
  const int cy = h / 2;
  // A shape of negative size is its own mirror image, so both ends are those of the covering shape.
  const int enough = static_cast<int>(enoughPercent(picture, shape));
  const int p = clampAmount(amount, -enough, enough);
  const auto grown = [p](LONG extent, double divisor) {
    constexpr double limit = 1 << 30;  // beyond every picture, and sums of it still fit
    return static_cast<int>(std::clamp(extent / divisor * p / 100.0, -limit, limit));
  };
  const int plainWidth = static_cast<int>(percentOf(w, p));
  const int plainHeight = static_cast<int>(percentOf(h, p));
  switch (shape) {
    case circle: {
      const int r = static_cast<int>(diagonalOf(picture) / 2.0 * p / 100.0);
      return OwnedRegion(CreateEllipticRgn(cx - r, cy - r, cx + r, cy + r));
    }
    case rectangle: {
      const int x = plainWidth / 2;
      const int y = plainHeight / 2;
      return OwnedRegion(CreateRectRgn(cx - x, cy - y, cx + x, cy + y));
    }
    case ellipse: {
      const int x = grown(w, ellipseDivisor) / 2;
      const int y = grown(h, ellipseDivisor) / 2;
      return OwnedRegion(CreateEllipticRgn(cx - x, cy - y, cx + x, cy + y));
    }
    case roundedRectangle: {
      const int width = grown(w, roundedDivisor);
      const int height = grown(h, roundedDivisor);
      return OwnedRegion(CreateRoundRectRgn(cx - width / 2, cy - height / 2, cx + width / 2, cy + height / 2,
                                            width / 4, height / 4));
    }
    case diamond: {
      // Not halved, unlike the others: the edges pass through the picture's corners at 100 percent.
      const POINT points[] = {
          {cx, cy - plainHeight}, {cx - plainWidth, cy}, {cx, cy + plainHeight}, {cx + plainWidth, cy}};
      return OwnedRegion(CreatePolygonRgn(points, 4, ALTERNATE));
    }
    default:
      return nullptr;
  }
}

}  // namespace

long fullCoverageSpreadPercent(const SIZE& picture, long shape) {
  return leastFullCoverage(picture, enoughPercent(picture, shape),
                           [&](long percent) { return spreadRegion(picture, shape, percent); });
}

BOOL renderSpread(BITMAPINFOHEADER* source, long shape, long amount, EffectOutput& output) {
  return cutPiece(source, spreadRegion(sizeOf(source), shape, amount), output);
}

}  // namespace dibkit
