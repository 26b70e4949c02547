#include "platform/region_data.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "platform/bounds.h"

namespace dibkit {
namespace {

/// Removes the rectangles that Wine leaves unset. Its CreateRoundRectRgn (of version 8.0), which makes
/// ellipses too, allocates one rectangle for each row; in a narrow ellipse it ends before it has written all
/// of them, and the others have the former contents of the memory. Those may be anywhere outside the region's
/// bounding box.
std::span<const RECT> withoutUnset(std::span<RECT> rectangles, [[maybe_unused]] const RECT& box) {
#if defined(_WIN32)
  const auto isUnset = [&box](const RECT& rect) {
    return rect.left < box.left || rect.right > box.right || rect.left >= rect.right || rect.top < box.top ||
           rect.bottom > box.bottom || rect.top >= rect.bottom;
  };
  return {rectangles.begin(), std::remove_if(rectangles.begin(), rectangles.end(), isUnset)};
#else
  return rectangles;
#endif
}

}  // namespace

RegionData::RegionData(HRGN region) {
  const DWORD bytes = GetRegionData(region, 0, nullptr);
  if (bytes == 0) return;
  // Words, for the alignment of the data.
  block_.reset(new (std::nothrow) std::uint64_t[(std::size_t{bytes} + 7) / 8]);
  if (!block_) return;
  auto* data = reinterpret_cast<RGNDATA*>(block_.get());
  if (GetRegionData(region, bytes, data) == 0) return;
  rectangles_ = withoutUnset({reinterpret_cast<RECT*>(data->Buffer), data->rdh.nCount}, data->rdh.rcBound);
  if (!rectangles_.empty()) box_ = data->rdh.rcBound;
  valid_ = true;
}

HRGN createRegion(std::span<const RECT> rectangles) {
  const std::size_t bytes = sizeof(RGNDATAHEADER) + rectangles.size_bytes();
  const auto block = std::make_unique_for_overwrite<std::uint64_t[]>((bytes + 7) / 8);
  auto* data = reinterpret_cast<RGNDATA*>(block.get());
  data->rdh = {sizeof(RGNDATAHEADER), RDH_RECTANGLES, static_cast<DWORD>(rectangles.size()),
               static_cast<DWORD>(rectangles.size_bytes()), boundsOf(rectangles)};
  if (!rectangles.empty()) std::memcpy(data->Buffer, rectangles.data(), rectangles.size_bytes());
  return ExtCreateRegion(nullptr, static_cast<DWORD>(bytes), data);
}

#if defined(_WIN32)
HRGN createRegion(std::vector<RECT>&& bands) { return createRegion(std::span<const RECT>(bands)); }
#endif

}  // namespace dibkit
