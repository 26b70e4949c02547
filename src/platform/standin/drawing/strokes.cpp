#include "platform/standin/drawing/strokes.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <utility>

#include "platform/standin/geometry.h"
#include "platform/standin/regions/ellipse_corner.h"
#include "platform/standin/regions/scan_polygon.h"

namespace dibkit::standin {

namespace {

Region rectangle(std::int64_t left, std::int64_t top, std::int64_t right, std::int64_t bottom) {
  if (left >= right || top >= bottom) return {};
  const RECT rect = clampedRect(left, top, right, bottom);
  return Region::ofRectangle(rect.left, rect.top, rect.right, rect.bottom);
}

/// `start` moved by steps * rise / run, to the nearest whole number, a half to the smaller one.
int interpolated(int start, std::int64_t steps, std::int64_t rise, std::int64_t run) {
  const auto product = static_cast<std::uint64_t>(steps) * static_cast<std::uint64_t>(std::abs(rise));
  const auto whole = static_cast<std::int64_t>(product / static_cast<std::uint64_t>(run));
  const auto rest = static_cast<std::int64_t>(product % static_cast<std::uint64_t>(run));
  if (rise < 0) return static_cast<int>(start - whole - (2 * rest >= run ? 1 : 0));
  return static_cast<int>(start + whole + (2 * rest > run ? 1 : 0));
}

/// A line of single pixels. A horizontal or vertical one leaves out the pixel of its end, others do not.
Region hairline(POINT from, POINT to, const RECT& bounds) {
  if (from.y == to.y) {
    const std::int64_t beyond = from.x <= to.x ? 0 : 1;
    return rectangle(std::min(from.x, to.x) + beyond, from.y, std::max(from.x, to.x) + beyond,
                     std::int64_t{from.y} + 1);
  }
  if (from.x == to.x) {
    const std::int64_t beyond = from.y < to.y ? 0 : 1;
    return rectangle(from.x, std::min(from.y, to.y) + beyond, std::int64_t{from.x} + 1,
                     std::max(from.y, to.y) + beyond);
  }
  if (from.y > to.y) std::swap(from, to);
  const std::int64_t dx = std::int64_t{to.x} - from.x;
  const std::int64_t dy = std::int64_t{to.y} - from.y;
  const std::int64_t right = std::abs(dx);
  BandBuilder bands;
  if (dy >= right) {
    const std::int64_t first = std::max<std::int64_t>(0, std::int64_t{bounds.top} - from.y);
    const std::int64_t last = std::min<std::int64_t>(dy, std::int64_t{bounds.bottom} - 1 - from.y);
    for (std::int64_t i = first; i <= last; ++i) {
      const int y = static_cast<int>(from.y + i);
      const int x = interpolated(from.x, i, dx, dy);
      if (x >= bounds.left && x < bounds.right) bands.add(y, y + 1, x, x + 1);
    }
    return Region(bands.take());
  }
  // From column to column; the pixels of a row are added together.
  const std::int64_t nearest =
      dx > 0 ? std::int64_t{bounds.left} - from.x : std::int64_t{from.x} - bounds.right + 1;
  const std::int64_t farthest =
      dx > 0 ? std::int64_t{bounds.right} - 1 - from.x : std::int64_t{from.x} - bounds.left;
  const std::int64_t last = std::min(right, farthest);
  for (std::int64_t i = std::max<std::int64_t>(0, nearest); i <= last;) {
    const int y = interpolated(from.y, i, dy, right);
    std::int64_t end = i + 1;
    while (end <= last && interpolated(from.y, end, dy, right) == y) ++end;
    if (y >= bounds.top && y < bounds.bottom) {
      const auto left = static_cast<int>(dx > 0 ? from.x + i : from.x - end + 1);
      bands.add(y, y + 1, left, left + static_cast<int>(end - i));
    }
    i = end;
  }
  return Region(bands.take());
}

/// Whether a / b <= c / d, exactly and without products that overflow: compares the whole parts and, while
/// they are equal, the reciprocals of the fractions.
bool isAtMost(std::uint64_t a, std::uint64_t b, std::uint64_t c, std::uint64_t d) {
  while (a / b == c / d) {
    a %= b;
    c %= d;
    if (a == 0 || c == 0) return a == 0;
    std::swap(a, d);
    std::swap(b, c);
  }
  return a / b < c / d;
}

/// floor(width side / sqrt(side^2 + other^2)), exactly.
std::int64_t projected(std::int64_t width, std::int64_t side, std::int64_t other) {
  // Unsigned, since the squares need 64 bits.
  const auto square = [](std::int64_t value) {
    return static_cast<std::uint64_t>(value) * static_cast<std::uint64_t>(value);
  };
  // value <= width side / length, squared: value^2 / (width^2 - value^2) <= side^2 / other^2.
  const auto fits = [&](std::int64_t value) {
    return value < width &&
           isAtMost(square(value), square(width) - square(value), square(side), square(other));
  };
  auto result = static_cast<std::int64_t>(static_cast<double>(width) * static_cast<double>(side) /
                                          std::hypot(static_cast<double>(side), static_cast<double>(other)));
  while (!fits(result)) --result;
  while (fits(result + 1)) ++result;
  return result;
}

/// The polygon of a slanted segment. Half the pen is on either side, rounded so that the right and lower side
/// get the larger half; square caps extend the ends by the same halves.
Region slantedBody(POINT from, POINT to, const Nib& nib, const RECT& bounds) {
  if (from.y > to.y) std::swap(from, to);
  const std::int64_t dx = std::int64_t{to.x} - from.x;
  const std::int64_t dy = std::int64_t{to.y} - from.y;
  const std::int64_t across = std::abs(dx);
  const std::int64_t sign = dx < 0 ? -1 : 1;
  const std::int64_t a = projected(nib.width, dy, across) + 1;
  const std::int64_t b = projected(nib.width, across, dy) + 1;

  struct Vector {
    std::int64_t x, y;
  };
  const Vector right{(a + 1) / 2, -sign * ((b + 1) / 2)};
  const Vector left{-(a / 2), sign * (b / 2)};
  const Vector up = nib.squareCaps ? Vector{-sign * (b / 2), -(a / 2)} : Vector{0, 0};
  const Vector down = nib.squareCaps ? Vector{sign * ((b + 1) / 2), (a + 1) / 2} : Vector{0, 0};
  const auto corner = [](const POINT& point, const Vector& side, const Vector& cap) {
    return POINT{clampedToInt(point.x + side.x + cap.x), clampedToInt(point.y + side.y + cap.y)};
  };
  const std::array<POINT, 4> corners{corner(from, right, up), corner(to, right, down), corner(to, left, down),
                                     corner(from, left, up)};
  return polygonRegion(corners, {bounds.top, bounds.bottom});
}

Region body(const POINT& from, const POINT& to, const Nib& nib, const RECT& bounds) {
  const std::int64_t before = nib.width / 2;
  const std::int64_t after = (std::int64_t{nib.width} + 1) / 2;
  const std::int64_t cap = nib.squareCaps ? before : 0;
  if (from.y == to.y) {
    return rectangle(std::min(from.x, to.x) - cap, from.y - before, std::max(from.x, to.x) + cap,
                     from.y + after);
  }
  if (from.x == to.x) {
    return rectangle(from.x - before, std::min(from.y, to.y) - cap, from.x + after,
                     std::max(from.y, to.y) + cap);
  }
  return slantedBody(from, to, nib, bounds);
}

/// Whether a segment may have pixels in the bounds. Of a long outline most segments have none.
bool reaches(const POINT& from, const POINT& to, const Nib& nib, const RECT& bounds) {
  const std::int64_t around = std::int64_t{std::max(nib.width, 1)} + 2;
  const auto overlaps = [around](std::int64_t a, std::int64_t b, std::int64_t low, std::int64_t high) {
    return std::min(a, b) - around < high && std::max(a, b) + around >= low;
  };
  return overlaps(from.x, to.x, bounds.left, bounds.right) &&
         overlaps(from.y, to.y, bounds.top, bounds.bottom);
}

Region dot(const POINT& centre, int width) {
  const std::int64_t left = std::int64_t{centre.x} - width / 2;
  const std::int64_t top = std::int64_t{centre.y} - width / 2;
  const RECT box = clampedRect(left, top, left + width, top + width);
  // A dot that exceeds the range of coordinates cannot be visible.
  if (box.right - std::int64_t{box.left} != width || box.bottom - std::int64_t{box.top} != width) return {};
  return roundedRegion(box.left, box.top, box.right, box.bottom, width, width);
}

}  // namespace

Region segmentRegion(const POINT& from, const POINT& to, const Nib& nib, const RECT& bounds) {
  if (!reaches(from, to, nib, bounds)) return {};
  const bool single = from.x == to.x && from.y == to.y;
  if (nib.width <= 1) return single ? Region() : hairline(from, to, bounds);
  if (nib.squareCaps) return single ? Region() : body(from, to, nib, bounds);
  const Region ends = Region::combine(dot(from, nib.width), dot(to, nib.width), Combination::either);
  return single ? ends : Region::combine(body(from, to, nib, bounds), ends, Combination::either);
}

}  // namespace dibkit::standin
