#include "platform/standin/regions/polygon_scan.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <stdexcept>
#include <utility>

#include "platform/bounds.h"

namespace dibkit::standin {

namespace {

constexpr std::uint64_t maximumCrossings = 1 << 28;
constexpr std::size_t maximumRectangles = 1 << 24;

}  // namespace

PolygonScan::Edge::Edge(const POINT& upper, const POINT& lower)
    : x_(upper.x), top_(upper.y), bottom_(lower.y) {
  const std::int64_t dx = std::int64_t{lower.x} - upper.x;
  const std::int64_t dy = std::int64_t{lower.y} - upper.y;
  step_ = dx / dy - (dx % dy < 0 ? 1 : 0);
  fractionStep_ = static_cast<std::uint32_t>(dx - step_ * dy);
  denominator_ = static_cast<std::uint32_t>(dy);
}

void PolygonScan::Edge::startAt(int y) {
  const std::int64_t rowsDown = std::int64_t{y} - top_;
  const std::uint64_t fraction = static_cast<std::uint64_t>(rowsDown) * fractionStep_;
  x_ += rowsDown * step_ + static_cast<std::int64_t>(fraction / denominator_);
  fraction_ = static_cast<std::uint32_t>(fraction % denominator_);
}

void PolygonScan::Edge::nextRow() {
  const std::uint64_t fraction = std::uint64_t{fraction_} + fractionStep_;
  const bool carry = fraction >= denominator_;
  fraction_ = static_cast<std::uint32_t>(carry ? fraction - denominator_ : fraction);
  x_ += step_ + (carry ? 1 : 0);
}

PolygonScan::PolygonScan(std::span<const POINT> corners, const RECT& area) {
  if (corners.size() < 3) return;
  RECT box{corners[0].x, corners[0].y, corners[0].x, corners[0].y};
  for (const POINT& corner : corners) extend(box, RECT{corner.x, corner.y, corner.x, corner.y});
  y_ = std::max(area.top, box.top);
  end_ = std::min(area.bottom, box.bottom);
  left_ = std::clamp(box.left, area.left, area.right);
  right_ = std::clamp(box.right, area.left, area.right);
  if (done()) return;
  addEdges(corners);
  findEnds();
}

void PolygonScan::addEdges(std::span<const POINT> corners) {
  edges_.reserve(corners.size());
  std::uint64_t crossings = 0;
  const POINT* from = &corners.back();
  for (const POINT& to : corners) {
    const POINT& upper = from->y < to.y ? *from : to;
    const POINT& lower = from->y < to.y ? to : *from;
    from = &to;
    const std::int64_t rows = std::min<std::int64_t>(lower.y, end_) - std::max<std::int64_t>(upper.y, y_);
    if (rows <= 0) continue;
    crossings += static_cast<std::uint64_t>(rows);
    if (crossings > maximumCrossings) throw std::length_error("polygon of too many rows");
    edges_.emplace_back(upper, lower);
  }
  std::sort(edges_.begin(), edges_.end(), [](const Edge& a, const Edge& b) { return a.top() < b.top(); });
  ends_.resize(edges_.size());
}

void PolygonScan::findEnds() {
  if (done()) return;
  for (; below_ < edges_.size() && edges_[below_].top() <= y_; ++below_) {
    edges_[crossing_] = edges_[below_];
    edges_[crossing_++].startAt(y_);
  }
  count_ = 0;
  for (std::size_t i = 0; i < crossing_;) {
    Edge& edge = edges_[i];
    if (edge.bottom() <= y_) {
      edge = edges_[--crossing_];
      continue;
    }
    ends_[count_++] = static_cast<int>(std::clamp<std::int64_t>(edge.crossing(), left_, right_));
    edge.nextRow();
    ++i;
  }
  sortEnds();
}

void PolygonScan::sortEnds() {
  const std::size_t words = static_cast<std::size_t>((std::int64_t{right_} - left_) / 64 + 1);
  if (count_ <= 16 || count_ < words) {
    std::sort(ends_.begin(), ends_.begin() + static_cast<std::ptrdiff_t>(count_));
    return;
  }
  // Of many crossings a bit a column is set, or cleared by a second one: two at the same column have no
  // effect.
  flips_.resize(words);
  for (std::size_t i = 0; i < count_; ++i) {
    const auto column = static_cast<std::uint64_t>(std::int64_t{ends_[i]} - left_);
    flips_[static_cast<std::size_t>(column / 64)] ^= std::uint64_t{1} << column % 64;
  }
  count_ = 0;
  for (std::size_t word = 0; word < words; ++word) {
    for (std::uint64_t bits = std::exchange(flips_[word], 0); bits != 0; bits &= bits - 1) {
      ends_[count_++] =
          static_cast<int>(left_ + static_cast<std::int64_t>(word) * 64 + std::countr_zero(bits));
    }
  }
}

Region polygonRegion(std::span<const POINT> corners) {
  constexpr int farthest = 1 << 20;
  constexpr RECT area{std::numeric_limits<LONG>::min(), -farthest, std::numeric_limits<LONG>::max(),
                      farthest};
  BandBuilder bands;
  for (PolygonScan scan(corners, area); !scan.done(); scan.nextRow()) {
    const std::span<const int> ends = scan.ends();
    for (std::size_t i = 0; i < ends.size(); i += 2) {
      bands.add(scan.row(), scan.row() + 1, ends[i], ends[i + 1]);
    }
    if (bands.size() > maximumRectangles) throw std::length_error("polygon of too many spans");
  }
  return Region(bands.take());
}

}  // namespace dibkit::standin
