#pragma once

#include <algorithm>
#include <span>
#include <vector>

#include "platform/bands.h"

namespace dibkit::standin {

/// How two regions a and b are combined. Bit 2 inA + inB of the value is set if the result has the pixels for
/// which inA is 1 in a and 0 outside, and inB likewise for b.
enum class Combination : unsigned { both = 0b1000, either = 0b1110, one = 0b0110, firstOnly = 0b0100 };

/// A set of pixels, stored as the canonical rectangles of BandBuilder.
class Region {
 public:
  Region() = default;
  /// \param canonical a list from a BandBuilder
  explicit Region(std::vector<RECT>&& canonical);
  /// One rectangle, whose sides may be in either order.
  static Region ofRectangle(int left, int top, int right, int bottom);
  /// The union of any rectangles; empty and reversed ones are ignored. Linear for a canonical list.
  static Region ofRectangles(std::span<const RECT> list);

  /// The rectangles in order from the top, those of a band from the left.
  std::span<const RECT> rectangles() const { return rectangles_; }
  bool empty() const { return rectangles_.empty(); }
  /// The bounding box, all zeros for an empty region.
  const RECT& box() const { return box_; }
  bool contains(int x, int y) const;
  /// Calls use(rect) for the parts of a rectangle that are in the region.
  template <class Use>
  void forEachPart(const RECT& area, Use&& use) const {
    const auto first = std::partition_point(rectangles_.begin(), rectangles_.end(),
                                            [&](const RECT& rect) { return rect.bottom <= area.top; });
    for (auto rect = first; rect != rectangles_.end() && rect->top < area.bottom; ++rect) {
      RECT part;
      if (IntersectRect(&part, &*rect, &area)) use(part);
    }
  }
  bool operator==(const Region& other) const;

  /// NULLREGION, SIMPLEREGION or COMPLEXREGION.
  int complexity() const;
  /// Makes complexity() report the region as complex even if it is a single rectangle.
  void markCurved() { curved_ = !empty(); }

  /// Moves the region. False, and no change, when a coordinate would leave the range of a LONG.
  bool offset(int dx, int dy);

  /// Linear in the rectangles of both and of the result.
  static Region combine(const Region& a, const Region& b, Combination combination);

 private:
  std::vector<RECT> rectangles_;
  RECT box_{};
  /// Shapes with round corners are reported as complex even if they are a rectangle, until an operation that
  /// computes new rectangles.
  bool curved_ = false;
};

}  // namespace dibkit::standin
