#pragma once

#include <cstdint>
#include <vector>

#include "platform/standin/regions/region.h"

namespace dibkit::standin {

/// Follows the implicit equation of the ellipse in a box of pixels from its left side up to its top, one
/// pixel straight or diagonally at a time; the other three quadrants mirror it. (The midpoint algorithm for
/// all four quadrants at once, in exact integers.)
class EllipseCorner {
 public:
  /// The largest side that 64 bits are sure to carry.
  static constexpr int longestSide = 800'000;

  /// Sides of 2 pixels and more. Throws std::length_error above longestSide.
  EllipseCorner(int width, int height);

  bool done() const { return left_ > right_; }
  /// The pixel reached, from the box's top-left pixel. The row may be above the box at the end of the
  /// curve of a narrow one.
  int column() const { return left_; }
  int row() const { return up_; }
  /// One step on. True when it reached a new row.
  bool step();

 private:
  int left_;
  int right_;
  int up_;
  std::int64_t dx_;
  std::int64_t dy_;
  std::int64_t dxStep_;
  std::int64_t dyStep_;
  std::int64_t error_;
};

/// The rectangle with round corners that has its left and top sides at (left, top) and its right and
/// bottom ones, exclusive, at (right, bottom). The corners are those of an ellipse of `cornerWidth` x
/// `cornerHeight` pixels, 2 to the size of the rectangle.
Region roundedRegion(int left, int top, int right, int bottom, int cornerWidth, int cornerHeight);

}  // namespace dibkit::standin
