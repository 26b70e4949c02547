#pragma once

#include "platform/standin/regions/region.h"

namespace dibkit::standin {

/// What a pen draws with.
struct Nib {
  int width = 1;  ///< up to 1 a thin line
  bool squareCaps = false;
};

/// The pixels of one segment, as far as they can lie in `bounds`. A wide one is a polygon, with a dot at both
/// ends where the caps are round. The larger half of an odd width lies to the right and below.
Region segmentRegion(const POINT& from, const POINT& to, const Nib& nib, const RECT& bounds);

}  // namespace dibkit::standin
