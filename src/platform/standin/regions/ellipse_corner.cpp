#include "platform/standin/regions/ellipse_corner.h"

#include <stdexcept>
#include <utility>

namespace dibkit::standin {

namespace {

constexpr int unreached = -1;

/// The insets of the ellipse's rows from both sides, for its upper half. In a narrow, tall box the curve ends
/// before the top; the rows above it get the middle of the box.
std::vector<int> insetsOf(int width, int height, std::int64_t shapeWidth) {
  EllipseCorner corner(width, height);
  std::vector<int> insets((static_cast<std::size_t>(height) + 1) / 2, unreached);
  insets.back() = 0;
  while (!corner.done()) {
    if (corner.step() && corner.row() >= 0) insets[static_cast<std::size_t>(corner.row())] = corner.column();
  }
  for (int& inset : insets) {
    if (inset == unreached || 2 * std::int64_t{inset} >= shapeWidth) inset = (width - 1) / 2;
  }
  return insets;
}

}  // namespace

EllipseCorner::EllipseCorner(int width, int height) : left_(0), right_(width - 1) {
  if (width > longestSide || height > longestSide) throw std::length_error("round corner too large");
  const std::int64_t a = width - 1;
  const std::int64_t b = height - 1;
  const std::int64_t odd = b & 1;
  up_ = static_cast<int>((b + 1) / 2 - odd);
  dx_ = 4 * (1 - a) * b * b;
  dy_ = 4 * (odd + 1) * a * a;
  dxStep_ = 8 * b * b;
  dyStep_ = 8 * a * a;
  error_ = dx_ + dy_ + odd * a * a;
}

bool EllipseCorner::step() {
  // Both tests use the error as it is before either step.
  const std::int64_t twice = 2 * error_;
  const bool reachesRow = twice <= dy_;
  if (reachesRow) {
    --up_;
    dy_ += dyStep_;
    error_ += dy_;
  }
  if (twice >= dx_) {
    ++left_;
    --right_;
    dx_ += dxStep_;
    error_ += dx_;
  }
  return reachesRow;
}

Region roundedRegion(int left, int top, int right, int bottom, int cornerWidth, int cornerHeight) {
  const std::vector<int> insets = insetsOf(cornerWidth, cornerHeight, std::int64_t{right} - left);
  const auto insetOf = [&](int row) {
    return insets[static_cast<std::size_t>(row < cornerHeight - 1 - row ? row : cornerHeight - 1 - row)];
  };
  const int upper = cornerHeight / 2;
  BandBuilder bands;
  const auto addRow = [&](int y, int inset) { bands.add(y, y + 1, left + inset, right - inset); };
  for (int i = 0; i < upper; ++i) addRow(top + i, insetOf(i));
  bands.add(top + upper, bottom - (cornerHeight - upper), left, right);
  for (int i = upper; i < cornerHeight; ++i) addRow(bottom - cornerHeight + i, insetOf(i));
  Region region(bands.take());
  region.markCurved();
  return region;
}

}  // namespace dibkit::standin
