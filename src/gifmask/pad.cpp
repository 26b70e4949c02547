#include "cel/placed_cel.h"
#include "dib/allocate.h"
#include "dib/view.h"
#include "gifmask/flatten.h"
#include "gifmask/gifmask.h"
#include "platform/guard.h"

namespace dibkit {
namespace {

struct Padded {
  OwnedDib image;
  OwnedDib mask;
};

Padded pad(const BITMAPINFOHEADER* dib, const BITMAPINFOHEADER* sourceMask, const Margins& margins) {
  PlacedCel frame(dib, sourceMask, POINT{margins.left, margins.top});
  if (!frame || !hasFormat(dib->biBitCount)) return {};
  const std::optional<SIZE> size = paddedSize(frame.box(), margins);
  if (!size) return {};
  Padded padded{createDib(size->cx, size->cy, dib->biBitCount, static_cast<int>(dib->biClrUsed)), nullptr};
  // Without an image no mask either, although there may be memory for the smaller mask.
  if (padded.image) padded.mask = createMask(size->cx, size->cy);
  if (!padded.mask) return {};
  copyPalette(dib, padded.image.get());

  const View image(padded.image.get());
  const View mask(padded.mask.get());
  const Box area = placedBox(size->cx, size->cy, POINT{0, 0});
  BitGrid opaque(image.width(), 1);
  for (int y = 0; y < image.lines(); ++y) {
    fillMaskRow(mask.row(y), 0, mask.width(), true);
    frame.opaqueBits(y, area, opaque.row(0));
    forEachRun(opaque.row(0), image.width(), [&](int left, int right) {
      const BYTE* from = frame.cel().view().row(static_cast<int>(y - frame.box().top));
      copyPixels(image.bitCount(), from, static_cast<int>(left - frame.box().left), right - left,
                 image.row(y), left);
      fillMaskRow(mask.row(y), left, right, false);
    });
  }
  return padded;
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

int CMaskedBitmapTransform::ExpandDIB(BITMAPINFOHEADER* source, BITMAPINFOHEADER* sourceMask,
                                      BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask, int left,
                                      int top, int right, int bottom) {
  return catchOutOfMemory([&] {
    if (outImage == nullptr || outMask == nullptr) return 0;
    Padded padded = pad(source, sourceMask, {left, top, right, bottom});
    if (!padded.image) return 0;
    *outImage = padded.image.release();
    *outMask = padded.mask.release();
    return 1;
  });
}
