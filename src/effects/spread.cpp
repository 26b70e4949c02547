#include <algorithm>
#include <cmath>

#include "effects/full_coverage.h"
#include "effects/numbered.h"
#include "effects/piece.h"

namespace dibkit {
namespace {

enum Shape : long { circle, rectangle, ellipse, roundedRectangle, diamond };

// A shape's size at 100 percent is the picture's divided by these. The ellipse's is a little more than the
// 0.7071 with which it would reach the corners, on purpose.
constexpr double ellipseDivisor = 0.717;
constexpr double roundedDivisor = 0.8;

/// A percentage at which a shape is sure to cover the picture.
long enoughPercent(const SIZE& picture, long shape) {
  // Each shape has to reach the corner pixels. A few pixels more allow for truncation, for the exclusive
  // right and bottom sides, and for the centre, which is half a pixel off in a picture of odd size.
  const double shortSide = std::min<int>(picture.cx, picture.cy);
  double factor = 1.0;
  switch (shape) {
    case circle: {
      const double radius = diagonalOf(picture) / 2.0;
      factor = (radius + 3.0) / radius;
      break;
    }
    case rectangle:
      // Half of an odd size is truncated on either side.
      if (picture.cx % 2 != 0) factor = std::max(factor, (picture.cx + 1.0) / picture.cx);
      if (picture.cy % 2 != 0) factor = std::max(factor, (picture.cy + 1.0) / picture.cy);
      break;
    case ellipse:
      factor = ellipseDivisor * std::sqrt(2.0) * (shortSide + 6.0) / shortSide;
      break;
    case roundedRectangle:
      // The rounding, an eighth of the size, cuts off less than a twelfth of it along the diagonal.
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
  // A shape of negative size equals that of positive size, so both limits cover the picture.
  const int enough = static_cast<int>(enoughPercent(picture, shape));
  const int p = clampAmount(amount, -enough, enough);
  const auto grown = [p](LONG extent, double divisor) {
    constexpr double limit = 1 << 30;  // beyond every picture, and sums do not overflow
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
      // Not halved as the others are: at 100 percent the edges pass through the picture's corners.
      const POINT points[] = {
          {cx, cy - plainHeight}, {cx - plainWidth, cy}, {cx, cy + plainHeight}, {cx + plainWidth, cy}};
      return OwnedRegion(CreatePolygonRgn(points, 4, ALTERNATE));
    }
    default:
      return nullptr;
  }
}

}  // namespace

long fullCoverageOfSpread(const SIZE& picture, long shape) {
  return minimumFullCoverage(picture, enoughPercent(picture, shape),
                             [&](long percent) { return spreadRegion(picture, shape, percent); });
}

BOOL renderSpread(BITMAPINFOHEADER* source, long shape, long amount, EffectOutput& output) {
  return cutPiece(source, spreadRegion(sizeOf(source), shape, amount), output);
}

}  // namespace dibkit
