#include "platform/standin/regions/ellipse_corner.h"

#include <stdexcept>
#include <utility>

namespace dibkit::standin {

namespace {

constexpr int unreached = -1;

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

RowInsets::RowInsets(int width, int height, std::int64_t shapeWidth) : height_(height) {
  EllipseCorner corner(width, height);
  insets_.assign((static_cast<std::size_t>(height) + 1) / 2, unreached);
  insets_.back() = 0;
  while (!corner.done()) {
    if (corner.step() && corner.row() >= 0) insets_[static_cast<std::size_t>(corner.row())] = corner.column();
  }
  // In a narrow, tall box the curve ends before the top; the rows above it get the middle of the box.
  for (int& inset : insets_) {
    if (inset == unreached || 2 * std::int64_t{inset} >= shapeWidth) inset = (width - 1) / 2;
  }
}

RoundedRectangle::Span RoundedRectangle::row(std::int64_t y) const {
  if (y < rect_.top || y >= rect_.bottom) return {};
  if (y >= fullTop() && y < fullBottom()) return {rect_.left, rect_.right};
  const std::int64_t inCorner = y < fullTop() ? y - rect_.top : y - (rect_.bottom - cornerHeight_);
  const int inset = insets_[static_cast<int>(inCorner)];
  return {rect_.left + inset, rect_.right - inset};
}

Region RoundedRectangle::region() const {
  BandBuilder bands;
  const auto addRows = [&](int top, int bottom) {
    for (int y = top; y < bottom; ++y) {
      const Span span = row(y);
      bands.add(y, y + 1, span.left, span.right);
    }
  };
  addRows(rect_.top, fullTop());
  bands.add(fullTop(), fullBottom(), rect_.left, rect_.right);
  addRows(fullBottom(), rect_.bottom);
  Region region(bands.take());
  region.markCurved();
  return region;
}

}  // namespace dibkit::standin
