#pragma once

#include <span>

#include "platform/standin/regions/region.h"

namespace dibkit::standin {

/// The rows [first, end).
struct RowRange {
  int first;
  int end;
};

/// Rows on which polygons are looked at unless the caller knows better. No image reaches further, and a
/// polygon that spans every coordinate there is stays cheap.
inline constexpr RowRange widestRows{-(1 << 20), 1 << 20};

/// The pixels of a closed polygon by the even-odd rule: those with an odd number of edges at or left of
/// their integer coordinates. Left and top sides belong to it, right and bottom ones do not. The cost is that
/// of the rows and of the crossings of edges with rows, wherever the corners lie. Throws
/// std::length_error for a polygon of more than 2^25 crossings.
Region polygonRegion(std::span<const POINT> corners, RowRange rows = widestRows);

}  // namespace dibkit::standin
