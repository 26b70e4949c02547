#include "platform/standin/regions/scan_polygon.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <utility>
#include <vector>

namespace dibkit::standin {

namespace {

constexpr std::uint64_t maximumCrossings = 1 << 25;

/// An edge that is not horizontal and its crossing with a row: computed exactly from row to row, rounded up.
/// Whole part and fraction are separate, so that no product needs more than 64 bits.
class Edge {
 public:
  /// `upper` has to be above `lower`.
  Edge(const POINT& upper, const POINT& lower) : top_(upper.y), bottom_(lower.y), x_(upper.x) {
    const std::int64_t dx = std::int64_t{lower.x} - upper.x;
    const std::int64_t dy = bottom_ - top_;
    step_ = dx / dy - (dx % dy < 0 ? 1 : 0);
    fractionStep_ = static_cast<std::uint64_t>(dx - step_ * dy);
    denominator_ = static_cast<std::uint64_t>(dy);
  }

  int firstRow(RowRange rows) const { return static_cast<int>(std::max<std::int64_t>(top_, rows.first)); }
  int endRow(RowRange rows) const { return static_cast<int>(std::min<std::int64_t>(bottom_, rows.end)); }

  /// Moves from the upper end down to row y.
  void startAt(int y) {
    const std::int64_t rowsDown = y - top_;
    const std::uint64_t fraction = static_cast<std::uint64_t>(rowsDown) * fractionStep_;
    x_ += rowsDown * step_ + static_cast<std::int64_t>(fraction / denominator_);
    fraction_ = fraction % denominator_;
  }
  int crossing() const { return static_cast<int>(x_ + (fraction_ != 0 ? 1 : 0)); }
  void nextRow() {
    x_ += step_;
    fraction_ += fractionStep_;
    if (fraction_ >= denominator_) {
      fraction_ -= denominator_;
      ++x_;
    }
  }

 private:
  std::int64_t top_;
  std::int64_t bottom_;
  std::int64_t x_;
  std::int64_t step_;
  std::uint64_t fractionStep_;
  std::uint64_t denominator_;
  std::uint64_t fraction_ = 0;
};

/// The edges that cross one of the rows; horizontal ones never do.
std::vector<Edge> edgesOf(std::span<const POINT> corners, RowRange rows) {
  std::vector<Edge> edges;
  edges.reserve(corners.size());
  const POINT* from = &corners.back();
  for (const POINT& to : corners) {
    const POINT& upper = from->y < to.y ? *from : to;
    const POINT& lower = from->y < to.y ? to : *from;
    if (upper.y != lower.y && upper.y < rows.end && lower.y > rows.first) edges.emplace_back(upper, lower);
    from = &to;
  }
  return edges;
}

}  // namespace

Region polygonRegion(std::span<const POINT> corners, RowRange rows) {
  if (corners.size() < 3) return {};
  const auto [highest, lowest] = std::minmax_element(
      corners.begin(), corners.end(), [](const POINT& a, const POINT& b) { return a.y < b.y; });
  rows = {std::max<int>(rows.first, highest->y), std::min<int>(rows.end, lowest->y)};
  if (rows.first >= rows.end) return {};
  std::vector<Edge> edges = edgesOf(corners, rows);

  // The crossings of a row are stored together. Their places are found by counting where edges begin and end,
  // so that each edge can then be followed in one pass.
  const auto rowCount = static_cast<std::size_t>(rows.end - rows.first);
  const auto indexOf = [&](int y) { return static_cast<std::size_t>(y - rows.first); };
  std::uint64_t total = 0;
  std::vector<std::int32_t> change(rowCount + 1);
  for (const Edge& edge : edges) {
    total += static_cast<std::uint64_t>(edge.endRow(rows) - edge.firstRow(rows));
    if (total > maximumCrossings) throw std::length_error("polygon of too many rows");
    ++change[indexOf(edge.firstRow(rows))];
    --change[indexOf(edge.endRow(rows))];
  }
  std::vector<std::uint32_t> place(rowCount);
  std::uint32_t used = 0;
  std::int32_t open = 0;
  for (std::size_t row = 0; row < rowCount; ++row) {
    place[row] = used;
    open += change[row];
    used += static_cast<std::uint32_t>(open);
  }

  std::vector<int> crossings(used);
  for (Edge& edge : edges) {
    edge.startAt(edge.firstRow(rows));
    for (int y = edge.firstRow(rows); y < edge.endRow(rows); ++y, edge.nextRow()) {
      crossings[place[indexOf(y)]++] = edge.crossing();
    }
  }

  BandBuilder bands;
  auto next = crossings.begin();
  for (std::size_t row = 0; row < rowCount; ++row) {
    const auto end = crossings.begin() + static_cast<std::ptrdiff_t>(place[row]);
    std::sort(next, end);
    const int y = rows.first + static_cast<int>(row);
    for (; next != end; next += 2) bands.add(y, y + 1, next[0], next[1]);
  }
  return Region(bands.take());
}

}  // namespace dibkit::standin
