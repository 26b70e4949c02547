#pragma once

#include <span>

#include "platform/standin/regions/region.h"

namespace dibkit::standin {

/// The rows [first, end).
struct RowRange {
  int first;
  int end;
};

/// The rows in which polygons are filled unless the caller gives others. No image is larger, and a polygon
/// that spans all coordinates remains cheap.
inline constexpr RowRange widestRows{-(1 << 20), 1 << 20};

/// The pixels of a closed polygon by the even-odd rule: those with an odd number of edges at or left of their
/// integer coordinates, so that left and top sides belong to it and right and bottom ones do not. The cost
/// grows with the rows and the crossings of edges with rows, not with the coordinates. Throws
/// std::length_error for more than 2^25 crossings.
Region polygonRegion(std::span<const POINT> corners, RowRange rows = widestRows);

}  // namespace dibkit::standin
