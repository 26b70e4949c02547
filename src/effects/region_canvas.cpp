#include "effects/region_canvas.h"

#include "dib/placement.h"
#include "dib/region_spans.h"

namespace dibkit {
RegionCanvas::RegionCanvas(const SIZE& picture) : picture_(picture), bits_(picture.cx, picture.cy) {}

void RegionCanvas::add(HRGN region, int dx, int dy) {
  if (region == nullptr) return;
  const RegionSpans spans(region);
  for (const RECT& span : spans.rectangles()) {
    add({span.left + dx, span.top + dy, span.right + dx, span.bottom + dy});
  }
}

void RegionCanvas::add(const RECT& rectangle) {
  const Box inside = intersection(toBox(rectangle), {0, 0, picture_.cx, picture_.cy});
  for (auto y = static_cast<int>(inside.top); y < inside.bottom; ++y) {
    setBits(bits_.row(y), static_cast<int>(inside.left), static_cast<int>(inside.right));
  }
}

OwnedRegion RegionCanvas::region() {
  SpanCollector spans;
  for (int y = 0; y < picture_.cy; ++y) {
    forEachRun(bits_.row(y), picture_.cx, [&](int left, int right) { spans.add(y, left, right); });
  }
  return spans.region();
}

}  // namespace dibkit
