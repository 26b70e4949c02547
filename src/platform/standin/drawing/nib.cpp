#include "platform/standin/drawing/nib.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <utility>

#include "platform/standin/geometry.h"
#include "platform/standin/regions/polygon_scan.h"

namespace dibkit::standin {

namespace {

/// start + i rise / run for one i after the other, to the nearest whole number, a half to the smaller one.
/// The rise is at most the run.
class Interpolation {
 public:
  Interpolation(int start, std::int64_t i, std::int64_t rise, std::int64_t run)
      : start_(start),
        falls_(rise < 0),
        step_(static_cast<std::uint64_t>(std::abs(rise))),
        run_(static_cast<std::uint64_t>(run)) {
    const std::uint64_t product = static_cast<std::uint64_t>(i) * step_;
    whole_ = static_cast<std::int64_t>(product / run_);
    rest_ = product % run_;
  }

  int value() const {
    if (falls_) return static_cast<int>(start_ - whole_ - (2 * rest_ >= run_ ? 1 : 0));
    return static_cast<int>(start_ + whole_ + (2 * rest_ > run_ ? 1 : 0));
  }
  void next() {
    rest_ += step_;
    if (rest_ < run_) return;
    rest_ -= run_;
    ++whole_;
  }

 private:
  std::int64_t start_;
  bool falls_;
  std::uint64_t step_;
  std::uint64_t run_;
  std::int64_t whole_;
  std::uint64_t rest_;
};

/// A slanted line of single pixels, both ends included.
void drawSlantedHairline(Painter& painter, POINT from, POINT to) {
  if (from.y > to.y) std::swap(from, to);
  const RECT& bounds = painter.bounds();
  const std::int64_t dx = std::int64_t{to.x} - from.x;
  const std::int64_t dy = std::int64_t{to.y} - from.y;
  const std::int64_t across = std::abs(dx);
  if (dy >= across) {
    const std::int64_t first = std::max<std::int64_t>(from.y, bounds.top);
    const std::int64_t last = std::min<std::int64_t>(to.y, std::int64_t{bounds.bottom} - 1);
    if (first > last) return;
    Interpolation x(from.x, first - from.y, dx, dy);
    for (std::int64_t y = first; y <= last; ++y, x.next())
      painter.paintRow(y, x.value(), std::int64_t{x.value()} + 1);
    return;
  }
  // From column to column; the pixels of a row are painted together.
  const std::int64_t nearest =
      dx > 0 ? std::int64_t{bounds.left} - from.x : std::int64_t{from.x} - bounds.right + 1;
  const std::int64_t farthest =
      dx > 0 ? std::int64_t{bounds.right} - 1 - from.x : std::int64_t{from.x} - bounds.left;
  const std::int64_t last = std::min(across, farthest);
  std::int64_t i = std::max<std::int64_t>(0, nearest);
  if (i > last) return;
  for (Interpolation y(from.y, i, dy, across); i <= last;) {
    const int row = y.value();
    const std::int64_t begin = i;
    do {
      ++i;
      y.next();
    } while (i <= last && y.value() == row);
    const std::int64_t left = dx > 0 ? from.x + begin : from.x - i + 1;
    painter.paintRow(row, left, left + (i - begin));
  }
}

/// A line of single pixels. A horizontal or vertical one leaves out the pixel of its end, others do not.
void drawHairline(Painter& painter, const POINT& from, const POINT& to) {
  // What [from, to) is in ascending order.
  const auto ordered = [](std::int64_t a, std::int64_t b) {
    return a <= b ? std::pair{a, b} : std::pair{b + 1, a + 1};
  };
  if (from.y == to.y) {
    const auto [left, right] = ordered(from.x, to.x);
    painter.paintRow(from.y, left, right);
  } else if (from.x == to.x) {
    const auto [top, bottom] = ordered(from.y, to.y);
    painter.paintRectangle(from.x, top, std::int64_t{from.x} + 1, bottom);
  } else {
    drawSlantedHairline(painter, from, to);
  }
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

/// Whether a segment may have pixels in the bounds. Of a long outline most segments have none.
bool reaches(const POINT& from, const POINT& to, int width, const RECT& bounds) {
  const std::int64_t around = std::int64_t{std::max(width, 1)} + 2;
  const auto overlaps = [around](std::int64_t a, std::int64_t b, std::int64_t low, std::int64_t high) {
    return std::min(a, b) - around < high && std::max(a, b) + around >= low;
  };
  return overlaps(from.x, to.x, bounds.left, bounds.right) &&
         overlaps(from.y, to.y, bounds.top, bounds.bottom);
}

/// The pixels from either side to a circle in its own box, of the row `row` of it.
std::int64_t circleInset(int width, int row) {
  const double radius = width / 2.0;
  const double up = row + 0.5 - radius;
  return static_cast<std::int64_t>(radius - std::sqrt(radius * radius - up * up));
}

bool areEqual(const POINT& a, const POINT& b) { return a.x == b.x && a.y == b.y; }

}  // namespace

Nib::Nib(int width, bool squareCaps) : width_(width), squareCaps_(squareCaps) {
  // The dot of a wider pen is a circle, since the shape of an ellipse this large cannot be computed.
  if (round() && width <= EllipseCorner::longestSide) dot_ = RowInsets(width, width, width);
}

void Nib::drawSegment(Painter& painter, const POINT& from, const POINT& to) const {
  if (!reaches(from, to, width_, painter.bounds())) return;
  drawWithoutDots(painter, from, to);
  if (!round()) return;
  drawDot(painter, from);
  if (!areEqual(from, to)) drawDot(painter, to);
}

void Nib::drawOutline(Painter& painter, std::span<const POINT> corners) const {
  // On narrow surfaces it costs less to paint again.
  constexpr int narrow = 128;
  const RECT& bounds = painter.bounds();
  if (round() && std::int64_t{bounds.right} - bounds.left > narrow) painter.rememberRows();
  const POINT* from = &corners.back();
  for (const POINT& to : corners) {
    if (reaches(*from, to, width_, bounds)) {
      drawWithoutDots(painter, *from, to);
      if (round()) drawDot(painter, to);
    }
    from = &to;
  }
}

void Nib::drawWithoutDots(Painter& painter, const POINT& from, const POINT& to) const {
  if (areEqual(from, to)) return;
  if (single()) {
    drawHairline(painter, from, to);
  } else {
    drawBody(painter, from, to);
  }
}

void Nib::drawBody(Painter& painter, const POINT& from, const POINT& to) const {
  const std::int64_t before = width_ / 2;
  const std::int64_t after = (std::int64_t{width_} + 1) / 2;
  const std::int64_t cap = squareCaps_ ? before : 0;
  if (from.y == to.y) {
    painter.paintRectangle(std::min(from.x, to.x) - cap, from.y - before, std::max(from.x, to.x) + cap,
                           from.y + after);
  } else if (from.x == to.x) {
    painter.paintRectangle(from.x - before, std::min(from.y, to.y) - cap, from.x + after,
                           std::max(from.y, to.y) + cap);
  } else {
    drawSlantedBody(painter, from, to);
  }
}

/// Half the pen is on either side, rounded so that the right and lower side get the larger half; square caps
/// extend the ends by the same halves.
void Nib::drawSlantedBody(Painter& painter, POINT from, POINT to) const {
  if (from.y > to.y) std::swap(from, to);
  const std::int64_t dx = std::int64_t{to.x} - from.x;
  const std::int64_t dy = std::int64_t{to.y} - from.y;
  const std::int64_t across = std::abs(dx);
  const std::int64_t sign = dx < 0 ? -1 : 1;
  const std::int64_t a = projected(width_, dy, across) + 1;
  const std::int64_t b = projected(width_, across, dy) + 1;

  struct Vector {
    std::int64_t x, y;
  };
  const Vector right{(a + 1) / 2, -sign * ((b + 1) / 2)};
  const Vector left{-(a / 2), sign * (b / 2)};
  const Vector up = squareCaps_ ? Vector{-sign * (b / 2), -(a / 2)} : Vector{0, 0};
  const Vector down = squareCaps_ ? Vector{sign * ((b + 1) / 2), (a + 1) / 2} : Vector{0, 0};
  const auto corner = [](const POINT& point, const Vector& side, const Vector& cap) {
    return POINT{clampedToInt(point.x + side.x + cap.x), clampedToInt(point.y + side.y + cap.y)};
  };
  const std::array<POINT, 4> corners{corner(from, right, up), corner(to, right, down), corner(to, left, down),
                                     corner(from, left, up)};
  paintPolygon(painter, corners);
}

void Nib::drawDot(Painter& painter, const POINT& centre) const {
  const std::int64_t left = std::int64_t{centre.x} - width_ / 2;
  const std::int64_t top = std::int64_t{centre.y} - width_ / 2;
  const std::int64_t end = std::min<std::int64_t>(painter.bounds().bottom, top + width_);
  for (std::int64_t y = std::max<std::int64_t>(painter.bounds().top, top); y < end; ++y) {
    const int row = static_cast<int>(y - top);
    const std::int64_t inset = dot_.empty() ? circleInset(width_, row) : dot_[row];
    painter.paintRow(y, left + inset, left + width_ - inset);
  }
}

void paintPolygon(Painter& painter, std::span<const POINT> corners) {
  for (PolygonScan scan(corners, painter.bounds()); !scan.done(); scan.nextRow()) {
    const std::span<const int> ends = scan.ends();
    for (std::size_t i = 0; i < ends.size(); i += 2) painter.paintRow(scan.row(), ends[i], ends[i + 1]);
  }
}

}  // namespace dibkit::standin
