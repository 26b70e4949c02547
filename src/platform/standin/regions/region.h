#pragma once

#include <span>
#include <vector>

#include "platform/bands.h"

namespace dibkit::standin {

/// How the pixels of two regions make those of a third. Bit inA * 2 + inB of the value tells whether a
/// pixel that is in a and in b as said belongs to the result.
enum class Combination : unsigned { both = 0b1000, either = 0b1110, one = 0b0110, firstOnly = 0b0100 };

/// A set of pixels, held as the canonical rectangles of BandBuilder.
class Region {
 public:
  Region() = default;
  /// The pixels of a list that BandBuilder has made.
  explicit Region(std::vector<RECT>&& canonical);
  /// The pixels of one rectangle, whose sides may come in either order.
  static Region ofRectangle(int left, int top, int right, int bottom);
  /// The union of any rectangles; empty and reversed ones count for nothing. Linear for a list that is in
  /// canonical order already.
  static Region ofRectangles(std::span<const RECT> list);

  /// The rectangles from the top, those of a band from the left.
  std::span<const RECT> rectangles() const { return rectangles_; }
  bool empty() const { return rectangles_.empty(); }
  /// The smallest rectangle around all pixels, all zeros for an empty region. Linear in the rectangles.
  const RECT& box() const { return box_; }
  bool contains(int x, int y) const;
  bool operator==(const Region& other) const;

  /// NULLREGION, SIMPLEREGION or COMPLEXREGION.
  int complexity() const;
  /// Makes the region count as a complex one even if it is a single rectangle.
  void markCurved() { curved_ = !empty(); }

  /// Moves every pixel. False, and no change, when a coordinate would leave the range of a LONG.
  bool offset(int dx, int dy);

  /// Linear in the rectangles of both and of the result.
  static Region combine(const Region& a, const Region& b, Combination combination);

 private:
  std::vector<RECT> rectangles_;
  RECT box_{};
  /// Shapes with round corners are reported as complex even when their pixels form a rectangle, until an
  /// operation really puts pixels together anew.
  bool curved_ = false;
};

}  // namespace dibkit::standin
