#pragma once

#include <cstdint>
#include <vector>

#include "platform/standin/regions/region.h"

namespace dibkit::standin {

/// Follows an ellipse in a box of pixels from its left side up to its top, one pixel straight or diagonally
/// at a time; the other three quadrants mirror it. (The midpoint algorithm on the implicit equation, in
/// integers.)
class EllipseCorner {
 public:
  /// The largest side for which no term overflows 64 bits.
  static constexpr int longestSide = 800'000;

  /// \param width,height of the box, at least 2. Throws std::length_error above longestSide.
  EllipseCorner(int width, int height);

  bool done() const { return left_ > right_; }
  /// The current pixel, relative to the box's top-left one. In a narrow box the curve may end above the box.
  int column() const { return left_; }
  int row() const { return up_; }
  /// Goes to the next pixel. \return whether that is in a new row
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

/// A rectangle with round corners; right and bottom are exclusive. The corners are those of an ellipse of
/// `cornerWidth` x `cornerHeight` pixels, from 2 to the size of the rectangle.
Region roundedRegion(int left, int top, int right, int bottom, int cornerWidth, int cornerHeight);

}  // namespace dibkit::standin
