#pragma once

#include <span>

#include "dib/dib.h"
#include "platform/region_data.h"

namespace dibkit {

/// A region as spans, so that no pixel is tested by itself.
class RegionSpans : public RegionData {
 public:
  using RegionData::RegionData;

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
};

/// The region of all pixels that any of the rectangles holds; empty for none. Cheapest for rectangles in the
/// order in which RegionData gives them. Null when the platform fails; throws std::bad_alloc when memory runs
/// out.
OwnedRegion regionOfRectangles(std::span<const RECT> rectangles);

}  // namespace dibkit
