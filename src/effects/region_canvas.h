#pragma once

#include "dib/dib.h"
#include "dib/flood.h"

namespace dibkit {

/// A picture's pixels as bits, in which overlapping pieces are joined; the region is made of them once, at
/// the end, so that hundreds of pieces cost no more than the rows that they cover.
class RegionCanvas {
 public:
  /// Throws std::bad_alloc when memory runs out.
  explicit RegionCanvas(const SIZE& picture);

  /// Adds the pixels of a region, moved by (dx, dy), that lie in the picture. A null region adds nothing.
  void add(HRGN region, int dx = 0, int dy = 0);
  void add(const RECT& rectangle);
  /// All pixels that were added.
  OwnedRegion region();

 private:
  SIZE picture_;
  BitGrid bits_;
};

}  // namespace dibkit
