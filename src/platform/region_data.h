#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "platform/win32.h"

namespace dibkit {

/// A copy of a region's rectangles: rows from the top, within a row from the left, those of one row with the
/// same top and bottom.
class RegionData {
 public:
  /// A null region, or memory that ran out, gives an object that is not valid and has no rectangles.
  explicit RegionData(HRGN region);

  bool valid() const { return valid_; }
  /// The region's own bounding box; all zeros without rectangles.
  const RECT& box() const { return box_; }
  std::span<const RECT> rectangles() const { return rectangles_; }

 private:
  std::unique_ptr<std::uint64_t[]> block_;
  std::span<const RECT> rectangles_;
  RECT box_{};
  bool valid_ = false;
};

/// The region of all pixels that any of the rectangles holds; empty for none. Cheapest for rectangles in the
/// order in which RegionData gives them. Null when the platform fails; throws std::bad_alloc when memory runs
/// out.
HRGN createRegion(std::span<const RECT> rectangles);
/// The region of the rectangles of a BandBuilder, whose memory it takes over where the platform can.
HRGN createRegion(std::vector<RECT>&& bands);

}  // namespace dibkit
