#include "raster/region_spans.h"

#include <algorithm>

namespace dibkit {

std::span<const RECT> RegionSpans::row(int y) const {
  const std::span<const RECT> all = rectangles();
  const auto first =
      std::partition_point(all.begin(), all.end(), [y](const RECT& rect) { return rect.bottom <= y; });
  if (first == all.end() || first->top > y) return {};
  return {first, std::find_if(first, all.end(), [&](const RECT& rect) { return rect.top != first->top; })};
}

OwnedRegion regionOfRectangles(std::span<const RECT> rectangles) {
  return OwnedRegion(createRegion(rectangles));
}

}  // namespace dibkit
