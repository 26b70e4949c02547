#include "raster/region_spans.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "platform/bounds.h"

namespace dibkit {

std::span<const RECT> RegionSpans::row(int y) const {
  const std::span<const RECT> all = rectangles();
  const auto first =
      std::partition_point(all.begin(), all.end(), [y](const RECT& rect) { return rect.bottom <= y; });
  if (first == all.end() || first->top > y) return {};
  return {first, std::find_if(first, all.end(), [&](const RECT& rect) { return rect.top != first->top; })};
}

OwnedRegion regionOfRectangles(std::span<const RECT> rectangles) {
  const std::size_t bytes = sizeof(RGNDATAHEADER) + rectangles.size_bytes();
  const auto block = std::make_unique_for_overwrite<std::uint64_t[]>((bytes + 7) / 8);
  auto* data = reinterpret_cast<RGNDATA*>(block.get());
  data->rdh = {sizeof(RGNDATAHEADER), RDH_RECTANGLES, static_cast<DWORD>(rectangles.size()),
               static_cast<DWORD>(rectangles.size_bytes()), boundsOf(rectangles)};
  if (!rectangles.empty()) std::memcpy(data->Buffer, rectangles.data(), rectangles.size_bytes());
  return OwnedRegion(ExtCreateRegion(nullptr, static_cast<DWORD>(bytes), data));
}

}  // namespace dibkit
