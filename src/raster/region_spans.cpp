#include "raster/region_spans.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace dibkit {

RegionSpans::RegionSpans(HRGN region) {
  const DWORD bytes = GetRegionData(region, 0, nullptr);
  if (bytes == 0) return;
  data_.reset(new (std::nothrow) std::uint64_t[(std::size_t{bytes} + 7) / 8]);
  if (!data_) return;
  auto* data = reinterpret_cast<RGNDATA*>(data_.get());
  if (GetRegionData(region, bytes, data) == 0) return;
  // Wine leaves some rectangles of narrow ellipses unset. None of them may lead outside the region's box.
  const RECT& box = data->rdh.rcBound;
  const auto isUnset = [&box](const RECT& rect) {
    return rect.left < box.left || rect.right > box.right || rect.left >= rect.right || rect.top < box.top ||
           rect.bottom > box.bottom || rect.top >= rect.bottom;
  };
  auto* const first = reinterpret_cast<RECT*>(data->Buffer);
  rectangles_ = {first, std::remove_if(first, first + data->rdh.nCount, isUnset)};
  box_ = rectangles_.empty() ? RECT{} : data->rdh.rcBound;
  valid_ = true;
}

std::span<const RECT> RegionSpans::row(int y) const {
  const auto first = std::partition_point(rectangles_.begin(), rectangles_.end(),
                                          [y](const RECT& rect) { return rect.bottom <= y; });
  if (first == rectangles_.end() || first->top > y) return {};
  const auto last =
      std::find_if(first, rectangles_.end(), [&](const RECT& rect) { return rect.top != first->top; });
  return {first, last};
}

OwnedRegion regionOfRectangles(std::span<const RECT> rectangles) {
  const std::size_t listBytes = rectangles.size_bytes();
  const auto block =
      std::make_unique_for_overwrite<std::uint64_t[]>((sizeof(RGNDATAHEADER) + listBytes + 7) / 8);
  auto* data = reinterpret_cast<RGNDATA*>(block.get());
  data->rdh = {sizeof(RGNDATAHEADER), RDH_RECTANGLES, static_cast<DWORD>(rectangles.size()),
               static_cast<DWORD>(listBytes), RECT{}};
  if (!rectangles.empty()) {
    RECT& bound = data->rdh.rcBound;
    bound = rectangles.front();
    for (const RECT& rect : rectangles) {
      bound.left = std::min(bound.left, rect.left);
      bound.top = std::min(bound.top, rect.top);
      bound.right = std::max(bound.right, rect.right);
      bound.bottom = std::max(bound.bottom, rect.bottom);
    }
    std::memcpy(data->Buffer, rectangles.data(), listBytes);
  }
  return OwnedRegion(ExtCreateRegion(nullptr, static_cast<DWORD>(sizeof(RGNDATAHEADER) + listBytes), data));
}

}  // namespace dibkit
