#include "dib/view.h"
#include "dib32/dib32.h"
#include "dib32/paint.h"
#include "dib32/pixel_box.h"
#include "raster/placement.h"
#include "raster/region_spans.h"

namespace dibkit {
namespace {

/// Paints every pixel in the box, connected or not.
template <class Paint>
BOOL fillSimilar(BITMAPINFOHEADER* dib, const PixelBox& box, Paint paint) {
  const View image = viewOfDepth(dib, 32);
  if (!image) return FALSE;
  for (int y = 0; y < image.lines(); ++y) {
    Bgra* const row = pixelsOf(image.row(y));
    forEachMarkedRun(
        image.width(), [&](int x, int count, BYTE* flags) { markMatches(row + x, count, box, flags); },
        [&](int left, int right) { paint(row + left, right - left); });
  }
  return TRUE;
}

/// Paints every pixel in the box whose mask byte is not 0.
template <class Paint>
BOOL fillSimilarUnderMask(BITMAPINFOHEADER* dib, const PixelBox& box, Paint paint,
                          const BITMAPINFOHEADER* maskDib, const POINT& maskOrigin) {
  const Placed image{viewOfDepth(dib, 32), POINT{0, 0}};
  const Placed mask{viewOfDepth(maskDib, 8), maskOrigin};
  if (!image.view || !mask.view) return FALSE;
  forEachCommonRow(
      [&](int width, BYTE* pixels, const BYTE* maskRow) {
        Bgra* const row = pixelsOf(pixels);
        forEachMarkedRun(
            width,
            [&](int x, int count, BYTE* flags) {
              markMatches(row + x, count, box, flags);
              keepUnderMask(maskRow + x, count, flags);
            },
            [&](int left, int right) { paint(row + left, maskRow + left, right - left); });
      },
      image, mask);
  return TRUE;
}

/// Paints the part of a rectangle that is inside the image.
template <class Paint>
void fillRectangle(const View& image, const RECT& rect, Paint paint) {
  const Box area = intersection(toBox(rect), {0, 0, image.width(), image.height()});
  for (std::int64_t y = area.top; y < area.bottom; ++y) {
    paint(pixelsOf(image.row(static_cast<int>(y))) + area.left, static_cast<int>(area.width()));
  }
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

BOOL CDIB32::ExtFill32BitsDIB(BITMAPINFOHEADER* image, DWORD target, COLORREF fill, int opacity,
                              int tolerance) {
  return fillSimilar(image, PixelBox::nearTarget(target, tolerance), CompositeColour(fill, lowByte(opacity)));
}

BOOL CDIB32::ExtFill32BitsDIB_Mask(BITMAPINFOHEADER* image, DWORD target, COLORREF fill, int opacity,
                                   int tolerance, BITMAPINFOHEADER* mask, const CPoint& maskOrigin) {
  return fillSimilarUnderMask(image, PixelBox::nearTarget(target, tolerance),
                              CompositeColour(fill, lowByte(opacity)), mask, maskOrigin);
}

BOOL CDIB32::ExtFillTransBlock(BITMAPINFOHEADER* image, COLORREF colour, int alpha) {
  return fillSimilar(image, PixelBox::transparent(), PutColour(colour, lowByte(alpha)));
}

BOOL CDIB32::ExtFillTransBlock_Mask(BITMAPINFOHEADER* image, COLORREF colour, int alpha,
                                    BITMAPINFOHEADER* mask, const CPoint& maskOrigin) {
  return fillSimilarUnderMask(image, PixelBox::transparent(), PutColour(colour, lowByte(alpha)), mask,
                              maskOrigin);
}

BOOL CDIB32::Fill32DIBOpacityArea(BITMAPINFOHEADER* image, const RECT& area, BYTE alpha) {
  const View view = viewOfDepth(image, 32);
  if (!view) return FALSE;
  fillRectangle(view, area, SetAlpha(alpha));
  return TRUE;
}

BOOL CDIB32::Fill32DIBOpacityArea(BITMAPINFOHEADER* image, HRGN region, BYTE alpha) {
  const View view = viewOfDepth(image, 32);
  const RegionSpans spans(region);
  if (!view || !spans.valid()) return FALSE;
  for (const RECT& rect : spans.rectangles()) {
    fillRectangle(view, rect, SetAlpha(alpha));
  }
  return TRUE;
}
