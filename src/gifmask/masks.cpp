#include "dib/mask_rows.h"
#include "dib/placement.h"
#include "dib/region_spans.h"
#include "dib/view.h"
#include "gifmask/gifmask.h"

namespace dibkit {
namespace {

/// The part of a rectangle that lies in an image.
Box clipped(const RECT& rect, const View& view) {
  return intersection(toBox(rect), placedBox(view.width(), view.height(), POINT{0, 0}));
}

template <class Line>
void forEachLine(const Box& box, const View& view, Line&& line) {
  for (std::int64_t y = box.top; y < box.bottom; ++y) {
    line(view.row(static_cast<int>(y)), static_cast<int>(box.left), static_cast<int>(box.right));
  }
}

bool allSet(const BYTE* row, int left, int right) {
  while (left < right && left % 8 != 0) {
    if (Get1BitPixel(row, left++) == 0) return false;
  }
  for (; left + 8 <= right; left += 8) {
    if (row[left / 8] != 0xFF) return false;
  }
  while (left < right) {
    if (Get1BitPixel(row, left++) == 0) return false;
  }
  return true;
}

/// Whether a mask already has every bit of a region.
bool holds(const View& mask, const RegionSpans& region) {
  bool all = true;
  for (const RECT& rect : region.rectangles()) {
    forEachLine(clipped(rect, mask), mask,
                [&](const BYTE* row, int left, int right) { all = all && allSet(row, left, right); });
    if (!all) break;
  }
  return all;
}

void fill(const View& mask, const RECT& rect, bool value) {
  forEachLine(clipped(rect, mask), mask,
              [value](BYTE* row, int left, int right) { fillMaskRow(row, left, right, value); });
}

}  // namespace
}  // namespace dibkit

BITMAPINFOHEADER* CMaskedBitmapTransform::FillMask(BITMAPINFOHEADER* mask, HRGN region) {
  using namespace dibkit;
  const View old = viewOfDepth(mask, 1);
  if (!old) return nullptr;
  const RegionSpans spans(region);
  // No copy of a mask that would not change: the argument itself says so to the caller.
  if (holds(old, spans)) return mask;
  OwnedDib changed(CBitmapCreator::Clone(mask));
  if (!changed) return nullptr;
  for (const RECT& rect : spans.rectangles()) fill(View(changed.get()), rect, true);
  return changed.release();
}

void CMaskedBitmapTransform::FillMaskDIBBits(BITMAPINFOHEADER* mask, const RECT& rect, bool value) {
  using namespace dibkit;
  const View view = viewOfDepth(mask, 1);
  if (view) fill(view, rect, value);
}

BITMAPINFOHEADER* CMaskedBitmapTransform::MarkedMaskDIB(BITMAPINFOHEADER* mask, BITMAPINFOHEADER* second) {
  using namespace dibkit;
  const View above = viewOfDepth(second, 1);
  if (!viewOfDepth(mask, 1) || !above) return nullptr;
  OwnedDib marked(CBitmapCreator::Clone(mask));
  if (!marked) return nullptr;
  const View below(marked.get());
  const int width = std::min(below.width(), above.width());
  for (int y = 0; y < std::min(below.lines(), above.lines()); ++y) {
    std::memcpy(below.row(y), above.row(y), static_cast<std::size_t>(width / 8));
    for (int x = width / 8 * 8; x < width; ++x) Set1BitPixel(below.row(y), Get1BitPixel(above.row(y), x), x);
  }
  return marked.release();
}
