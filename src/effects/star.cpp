#include <array>
#include <cmath>

#include "effects/full_coverage.h"
#include "effects/numbered.h"
#include "effects/piece.h"

namespace dibkit {
namespace {

/// A half opening, in pixels, at which the iris is sure to cover the picture.
long enoughOpening(const SIZE& picture) {
  // The inner vertices have to reach the corners. Halves are rounded up, for the right and bottom sides of a
  // picture of odd size; the vertical opening is truncated.
  const std::int64_t halfWidth = (std::int64_t{picture.cx} + 1) / 2;
  const std::int64_t halfHeight = (std::int64_t{picture.cy} + 1) / 2;
  const double forHeight = std::ceil(static_cast<double>(halfHeight * picture.cx) / picture.cy);
  const auto opening = std::max<std::int64_t>(halfWidth, static_cast<std::int64_t>(forHeight));
  const bool reaches = static_cast<int>(static_cast<double>(opening) * picture.cy / picture.cx) >= halfHeight;
  return static_cast<long>(reaches ? opening : opening + 1);
}

OwnedRegion irisRegion(const SIZE& picture, long amount) {
  const auto [w, h] = picture;
  const int r = clampAmount(amount, 0, static_cast<int>(enoughOpening(picture)));
  const int ry = static_cast<int>(static_cast<double>(r) * h / w);
  const int cx = w / 2;
  const int cy = h / 2;
  const POINT points[] = {{cx - r, cy - ry}, {0, cy}, {cx - r, cy + ry}, {cx, h},
                          {cx + r, cy + ry}, {w, cy}, {cx + r, cy - ry}, {cx, 0}};
  return OwnedRegion(CreatePolygonRgn(points, 8, ALTERNATE));
}

struct UnitPoint {
  double x;
  double y;  ///< upward
};

/// y = m x + c
struct Chord {
  double m;
  double c;
};

Chord chord(UnitPoint from, UnitPoint to) {
  const double m = (to.y - from.y) / (to.x - from.x);
  return {m, from.y - m * from.x};
}

UnitPoint crossing(Chord a, Chord b) {
  const double x = (b.c - a.c) / (a.m - b.m);
  return {x, a.m * x + a.c};
}

/// A five-pointed star of radius 1 about the origin, pointing up: outer and inner vertices in turn, counter-
/// clockwise from the top.
struct UnitStar {
  std::array<UnitPoint, 10> vertices;
  double width;   ///< between the inner vertices at the left and right
  double height;  ///< from the upper points down to the lowest inner vertex
};

UnitStar unitStar() {
  // 72 and 54 degrees to eight decimals, on purpose: with more, some vertices would move to other pixels.
  constexpr double upperAngle = 1.25663704;
  constexpr double lowerAngle = 0.94247778;
  const UnitPoint top{0.0, 1.0};
  const UnitPoint left{-std::sin(upperAngle), std::cos(upperAngle)};
  const UnitPoint bottomLeft{-std::cos(lowerAngle), -std::sin(lowerAngle)};
  const UnitPoint bottomRight{std::cos(lowerAngle), -std::sin(lowerAngle)};
  const UnitPoint right{std::sin(upperAngle), std::cos(upperAngle)};

  const Chord topToLeft = chord(top, bottomLeft);
  const Chord leftToRight = chord(left, bottomRight);
  const Chord rightToLeft = chord(bottomLeft, right);
  const Chord across = chord(left, right);
  const Chord topToRight = chord(top, bottomRight);

  const UnitPoint inner1 = crossing(topToLeft, across);
  const UnitPoint inner2 = crossing(topToLeft, leftToRight);
  const UnitPoint inner3 = crossing(leftToRight, rightToLeft);
  const UnitPoint inner4 = crossing(rightToLeft, topToRight);
  const UnitPoint inner5 = crossing(across, topToRight);
  return {{top, inner1, left, inner2, bottomLeft, inner3, bottomRight, inner4, right, inner5},
          inner4.x - inner2.x,
          std::cos(upperAngle) - inner3.y};
}

/// The scale at which the unit star spans `percent` of the picture's width and height.
double starScale(const UnitStar& star, const SIZE& picture, long percent) {
  // In 64 bits, where no product of a size and a percentage overflows.
  const auto limited = std::clamp<std::int64_t>(percent, INT32_MIN, INT32_MAX);
  const auto scale = [limited](std::int64_t size, double unit) {
    return static_cast<double>(size * limited) / 100 / unit;
  };
  return std::max(scale(picture.cx, star.width), scale(picture.cy, star.height));
}

/// The scale at which the unit star covers the picture.
double fullCoverageScale(const UnitStar& star, const SIZE& picture) {
  // Half the picture, and two pixels more to allow for truncation.
  const double w = picture.cx / 2.0 + 2.0;
  const double h = picture.cy / 2.0 + 2.0;
  // Along a side of the picture, the scale at which the star reaches a point is linear between the directions
  // of two vertices. So its maximum is at a corner or in the direction of a vertex.
  double scale = 0;
  for (std::size_t i = 0; i < star.vertices.size(); ++i) {
    const UnitPoint& a = star.vertices[i];
    const UnitPoint& b = star.vertices[(i + 1) % star.vertices.size()];
    scale = std::max(scale, std::min(w / std::max(std::abs(a.x), 1e-9), h / std::max(std::abs(a.y), 1e-9)));
    for (const UnitPoint& corner : {UnitPoint{w, h}, {-w, h}, {w, -h}, {-w, -h}}) {
      // corner = s a + t b
      const double determinant = a.x * b.y - a.y * b.x;
      const double s = (corner.x * b.y - corner.y * b.x) / determinant;
      const double t = (a.x * corner.y - a.y * corner.x) / determinant;
      if (s >= 0 && t >= 0) scale = std::max(scale, s + t);
    }
  }
  return scale;
}

OwnedRegion starRegion(const SIZE& picture, long amount) {
  static const UnitStar star = unitStar();
  // A negative amount turns the star upside down; the scale at which it covers the picture is the same.
  const double fullCoverage = fullCoverageScale(star, picture);
  const double s = std::clamp(starScale(star, picture, amount), -fullCoverage, fullCoverage);
  std::array<POINT, 10> points;
  for (std::size_t i = 0; i < points.size(); ++i) {
    points[i].x = static_cast<int>(star.vertices[i].x * s + picture.cx / 2.0);
    points[i].y = static_cast<int>(picture.cy / 2.0 - star.vertices[i].y * s);
  }
  return OwnedRegion(CreatePolygonRgn(points.data(), 10, ALTERNATE));
}

}  // namespace

long fullCoverageOfIris(const SIZE& picture, long) {
  return minimumFullCoverage(picture, enoughOpening(picture),
                             [&](long opening) { return irisRegion(picture, opening); });
}

long fullCoverageOfStar(const SIZE& picture, long) {
  const UnitStar star = unitStar();
  const double enough = 100.0 * fullCoverageScale(star, picture) / starScale(star, picture, 100);
  return minimumFullCoverage(picture, static_cast<long>(std::ceil(enough)),
                             [&](long percent) { return starRegion(picture, percent); });
}

BOOL renderIris(BITMAPINFOHEADER* source, long, long halfOpening, EffectOutput& output) {
  return cutPiece(source, irisRegion(sizeOf(source), halfOpening), output);
}

BOOL renderStar(BITMAPINFOHEADER* source, long, long percent, EffectOutput& output) {
  return cutPiece(source, starRegion(sizeOf(source), percent), output);
}

}  // namespace dibkit
