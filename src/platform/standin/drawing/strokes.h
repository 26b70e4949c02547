#pragma once

#include "platform/standin/regions/region.h"

namespace dibkit::standin {

/// The shape of a pen's tip.
struct Nib {
  int width = 1;  ///< up to 1 for hairlines
  bool squareCaps = false;
};

/// The pixels of one segment; those outside `bounds` may be missing. A wide one is a polygon, with a dot at
/// both ends if the caps are round. The larger half of an odd width is on the right and below.
Region segmentRegion(const POINT& from, const POINT& to, const Nib& nib, const RECT& bounds);

}  // namespace dibkit::standin
