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

/// The pixels between either side of an ellipse's box and the ellipse, by rows.
class RowInsets {
 public:
  RowInsets() = default;
  /// \param shapeWidth width of the shape that has the ellipse's quarters as corners; in each row of it at
  ///     least a pixel is left
  /// Throws std::bad_alloc when memory runs out, and std::length_error above EllipseCorner::longestSide.
  RowInsets(int width, int height, std::int64_t shapeWidth);

  bool empty() const { return insets_.empty(); }
  int operator[](int row) const {
    const int mirrored = height_ - 1 - row;
    return insets_[static_cast<std::size_t>(row < mirrored ? row : mirrored)];
  }

 private:
  int height_ = 0;
  std::vector<int> insets_;  ///< of the upper half
};

/// A rectangle with round corners; right and bottom are exclusive. The corners are those of an ellipse of
/// `cornerWidth` x `cornerHeight` pixels, from 2 to the size of the rectangle.
class RoundedRectangle {
 public:
  /// Throws as RowInsets does.
  RoundedRectangle(const RECT& rect, int cornerWidth, int cornerHeight)
      : rect_(rect),
        cornerHeight_(cornerHeight),
        insets_(cornerWidth, cornerHeight, std::int64_t{rect.right} - rect.left) {}

  struct Span {
    int left = 0;
    int right = 0;
    bool empty() const { return left >= right; }
  };
  /// Row y; nothing above and below the rectangle.
  Span row(std::int64_t y) const;
  /// The rows between the upper and the lower corners, which fill the width.
  int fullTop() const { return rect_.top + cornerHeight_ / 2; }
  int fullBottom() const { return rect_.bottom - (cornerHeight_ - cornerHeight_ / 2); }

  Region region() const;

 private:
  RECT rect_;
  int cornerHeight_;
  RowInsets insets_;
};

}  // namespace dibkit::standin
