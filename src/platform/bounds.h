#pragma once

#include <algorithm>
#include <span>

#include "platform/win32.h"

namespace dibkit {

/// Moves each side of a box outwards to that of a rectangle, even if the rectangle is empty.
/// \tparam Rectangle a type with the members left, top, right and bottom
template <class Rectangle>
constexpr void extend(Rectangle& box, const Rectangle& rect) {
  box.left = std::min(box.left, rect.left);
  box.top = std::min(box.top, rect.top);
  box.right = std::max(box.right, rect.right);
  box.bottom = std::max(box.bottom, rect.bottom);
}

/// The bounding box of rectangles; all zeros for none.
inline RECT boundsOf(std::span<const RECT> rectangles) {
  if (rectangles.empty()) return {};
  RECT box = rectangles.front();
  for (const RECT& rect : rectangles) extend(box, rect);
  return box;
}

}  // namespace dibkit
