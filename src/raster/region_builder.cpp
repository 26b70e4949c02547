#include "raster/region_builder.h"

#include "platform/bands.h"
#include "raster/placement.h"
#include "raster/region_spans.h"

namespace dibkit {

void RegionBuilder::add(const RECT& rectangle) {
  const Box inside = intersection(toBox(rectangle), {0, 0, width_, height_});
  for (auto y = static_cast<int>(inside.top); y < inside.bottom; ++y) {
    add(y, static_cast<int>(inside.left), static_cast<int>(inside.right));
  }
}

void RegionBuilder::add(HRGN region, int dx, int dy) {
  if (region == nullptr) return;
  const RegionSpans spans(region);
  for (const RECT& span : spans.rectangles()) {
    add({span.left + dx, span.top + dy, span.right + dx, span.bottom + dy});
  }
}

bool RegionBuilder::empty() {
  for (int y = top_; y < bottom_; ++y) {
    if (findBit(bits_.row(y), 0, width_, true) < width_) return false;
  }
  return true;
}

OwnedRegion RegionBuilder::region() {
  BandBuilder bands;
  for (int y = top_; y < bottom_; ++y) {
    forEachRun(bits_.row(y), width_, [&](int left, int right) { bands.add(y, y + 1, left, right); });
  }
  return regionOfRectangles(bands.take());
}

}  // namespace dibkit
