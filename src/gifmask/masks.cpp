#include "dib/view.h"
#include "gifmask/gifmask.h"
#include "raster/mask_rows.h"
#include "raster/region_spans.h"

namespace dibkit {
namespace {

/// A rectangle clipped to an image; all zeros when nothing is left.
RECT clipped(const RECT& rect, const View& view) {
  const RECT whole{0, 0, view.width(), view.height()};
  RECT common;
  IntersectRect(&common, &rect, &whole);
  return common;
}

bool allSet(const BYTE* row, int left, int right) {
  while (left < right && left % 8 != 0) {
    if (Get1BitPixel(row, left++) == 0) return false;
  }
  for (; right - left >= 8; left += 8) {
    if (row[left / 8] != 0xFF) return false;
  }
  while (left < right) {
    if (Get1BitPixel(row, left++) == 0) return false;
  }
  return true;
}

/// Whether a mask already has every bit of a region.
bool holds(const View& mask, const RegionSpans& region) {
  for (const RECT& rect : region.rectangles()) {
    const RECT part = clipped(rect, mask);
    for (int y = part.top; y < part.bottom; ++y) {
      if (!allSet(mask.row(y), part.left, part.right)) return false;
    }
  }
  return true;
}

void fill(const View& mask, const RECT& rect, bool value) {
  const RECT part = clipped(rect, mask);
  for (int y = part.top; y < part.bottom; ++y) fillMaskRow(mask.row(y), part.left, part.right, value);
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

BITMAPINFOHEADER* CMaskedBitmapTransform::FillMask(BITMAPINFOHEADER* mask, HRGN region) {
  const View old = viewOfDepth(mask, 1);
  if (!old) return nullptr;
  const RegionSpans spans(region);
  if (region != nullptr && !spans.valid()) return nullptr;
  // No copy of a mask that would not change: returning the argument is how the caller can see that.
  if (holds(old, spans)) return mask;
  OwnedDib changed(CBitmapCreator::Clone(mask));
  if (!changed) return nullptr;
  for (const RECT& rect : spans.rectangles()) fill(View(changed.get()), rect, true);
  return changed.release();
}

void CMaskedBitmapTransform::FillMaskDIBBits(BITMAPINFOHEADER* mask, const RECT& rect, bool value) {
  const View view = viewOfDepth(mask, 1);
  if (view) fill(view, rect, value);
}

BITMAPINFOHEADER* CMaskedBitmapTransform::MarkedMaskDIB(BITMAPINFOHEADER* mask, BITMAPINFOHEADER* second) {
  const View above = viewOfDepth(second, 1);
  if (!viewOfDepth(mask, 1) || !above) return nullptr;
  OwnedDib marked(CBitmapCreator::Clone(mask));
  if (!marked) return nullptr;
  const View below(marked.get());
  const int width = std::min(below.width(), above.width());
  for (int y = 0; y < std::min(below.lines(), above.lines()); ++y) {
    copyPixels(Index1::bits, above.row(y), 0, width, below.row(y), 0);
  }
  return marked.release();
}
