#include "dib/region_spans.h"

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
  rectangles_ = {reinterpret_cast<const RECT*>(data->Buffer), data->rdh.nCount};
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

void SpanCollector::add(int y, int left, int right) {
  if (left >= right) return;
  if (openRow_ < rectangles_.size()) {
    RECT& last = rectangles_.back();
    if (last.top != y) {
      closeRow();
    } else if (last.right == left) {
      last.right = right;
      return;
    }
  }
  rectangles_.push_back({left, y, right, y + 1});
}

void SpanCollector::closeRow() {
  const auto above = rectangles_.begin() + static_cast<std::ptrdiff_t>(bandAbove_);
  const auto open = rectangles_.begin() + static_cast<std::ptrdiff_t>(openRow_);
  const bool extends = open != rectangles_.end() && above->bottom == open->top &&
                       std::equal(above, open, open, rectangles_.end(), [](const RECT& a, const RECT& b) {
                         return a.left == b.left && a.right == b.right;
                       });
  if (extends && above != open) {
    const LONG bottom = open->bottom;
    std::for_each(above, open, [bottom](RECT& rect) { rect.bottom = bottom; });
    rectangles_.erase(open, rectangles_.end());
  } else {
    bandAbove_ = openRow_;
  }
  openRow_ = rectangles_.size();
}

OwnedRegion SpanCollector::region() {
  closeRow();
  const std::size_t listBytes = rectangles_.size() * sizeof(RECT);
  std::vector<std::uint64_t> block((sizeof(RGNDATAHEADER) + listBytes + 7) / 8);
  auto* data = reinterpret_cast<RGNDATA*>(block.data());
  data->rdh = {sizeof(RGNDATAHEADER), RDH_RECTANGLES, static_cast<DWORD>(rectangles_.size()),
               static_cast<DWORD>(listBytes), RECT{}};
  if (!rectangles_.empty()) {
    RECT& bound = data->rdh.rcBound;
    bound = rectangles_.front();
    for (const RECT& rect : rectangles_) {
      bound.left = std::min(bound.left, rect.left);
      bound.right = std::max(bound.right, rect.right);
      bound.bottom = rect.bottom;
    }
    std::memcpy(data->Buffer, rectangles_.data(), listBytes);
  }
  return OwnedRegion(ExtCreateRegion(nullptr, static_cast<DWORD>(sizeof(RGNDATAHEADER) + listBytes), data));
}

}  // namespace dibkit
