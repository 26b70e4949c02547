#pragma once

#include <memory>
#include <span>

#include "dib/dib.h"

namespace dibkit {

/// The rectangles of a region, read once, so that pixels are never asked about one by one: rows from the
/// top, within a row from the left, those of one row sharing top and bottom.
class RegionSpans {
 public:
  /// A null region, or memory that ran out, gives an object that is not valid and has no spans.
  explicit RegionSpans(HRGN region);

  bool valid() const { return valid_; }
  /// The bounding rectangle, all zeros for an empty region.
  const RECT& box() const { return box_; }
  std::span<const RECT> rectangles() const { return rectangles_; }

  /// The spans of one row, each the left and right of a rectangle. Found by binary search.
  std::span<const RECT> row(int y) const;

  /// Calls inside(x0, x1) and outside(x0, x1) for the parts of [left, right) on row y in and out of the
  /// region, in order from the left.
  template <class Inside, class Outside>
  void splitRow(int y, int left, int right, Inside&& inside, Outside&& outside) const {
    if (left >= right) return;
    int x = left;
    for (const RECT& span : row(y)) {
      if (span.right <= x) continue;
      if (span.left >= right) break;
      const int begin = span.left > x ? static_cast<int>(span.left) : x;
      const int end = span.right < right ? static_cast<int>(span.right) : right;
      if (x < begin) outside(x, begin);
      inside(begin, end);
      x = end;
    }
    if (x < right) outside(x, right);
  }

 private:
  std::unique_ptr<std::uint64_t[]> data_;
  std::span<const RECT> rectangles_;
  RECT box_{};
  bool valid_ = false;
};

/// The region of all pixels that any of the rectangles holds; empty for none. Cheapest when they come in rows
/// as RegionSpans gives them. Null when the platform fails; throws std::bad_alloc when memory runs out.
OwnedRegion regionOfRectangles(std::span<const RECT> rectangles);

}  // namespace dibkit
