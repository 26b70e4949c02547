#pragma once

#include <algorithm>

#include "dib/dib.h"
#include "platform/bands.h"
#include "raster/bit_grid.h"

namespace dibkit {

/// Builds a region from pixels, which may be added in any order and more than once. They are bits until the
/// region is made of them in one pass, so hundreds of overlapping pieces cost no more than the rows that they
/// cover.
class RegionBuilder {
 public:
  /// Throws std::bad_alloc when memory runs out.
  RegionBuilder(int width, int height) : width_(width), height_(height), top_(height), bits_(width, height) {}

  /// The bits of line y as BitGrid holds them, to be set directly. Those beyond the width have to stay 0.
  std::uint64_t* row(int y) {
    top_ = std::min(top_, y);
    bottom_ = std::max(bottom_, y + 1);
    return bits_.row(y);
  }

  /// Adds [left, right) of line y.
  void add(int y, int left, int right) { setBits(row(y), left, right); }
  /// Adds the part of a rectangle that is inside width x height.
  void add(const RECT& rectangle);
  /// Adds the pixels of a region, moved by (dx, dy), that are inside width x height. A null region adds
  /// nothing.
  void add(HRGN region, int dx = 0, int dy = 0);

  bool empty();
  /// The region of all pixels that were added. Rows of the same spans become one row of rectangles, so that
  /// the region of a large area stays small. Null when the platform fails; throws std::bad_alloc when memory
  /// runs out.
  OwnedRegion region();

 private:
  int width_;
  int height_;
  int top_;         ///< first line that may have bits
  int bottom_ = 0;  ///< the line after the last one that may have bits
  BitGrid bits_;
};

/// Adds rows of bits to bands. Rows that are the same are read once.
/// \param same same(y) tells whether rows y and y + 1 have the same bits
/// \param bits bits(y) gives a row as BitGrid holds it
template <class Same, class Bits>
void addRows(BandBuilder& bands, int top, int bottom, int width, Same&& same, Bits&& bits) {
  for (int y = top; y < bottom;) {
    const int first = y++;
    while (y < bottom && same(y - 1)) ++y;
    forEachRun(bits(first), width, [&](int left, int right) { bands.add(first, y, left, right); });
  }
}

}  // namespace dibkit
