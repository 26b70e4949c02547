#include "cel/placed_cel.h"
#include "dib/allocate.h"
#include "dib/view.h"
#include "frames/frames.h"
#include "frames/tint.h"
#include "frames/trim.h"
#include "gifmask/flatten.h"
#include "platform/guard.h"
#include "raster/flood_fill.h"
#include "raster/index_rows.h"
#include "raster/mask_rows.h"

namespace dibkit {
namespace {

/// The fill colour laid over white at the fill's strength.
Rgb mixedWithWhite(Rgb fill, int percent) {
  BYTE pixel[3] = {255, 255, 255};
  Tint(fill, percent, 1).apply(pixel, 0, 1);
  return Bgr24::get(pixel, 0);
}

/// Which pixels of the canvas are transparent before the fill: the frame's transparent ones and those beside
/// it.
OwnedDib canvasMask(BITMAPINFOHEADER* mask, const Box& frame, const SIZE& canvas, const Margins& margins) {
  if (mask != nullptr) return flattenOnto(mask, nullptr, {255, 255, 255}, margins);
  OwnedDib result = createMask(canvas.cx, canvas.cy);
  if (!result) return nullptr;
  const Box visible = intersection(frame, placedBox(canvas.cx, canvas.cy, POINT{0, 0}));
  RECT inside{static_cast<LONG>(visible.left), static_cast<LONG>(visible.top),
              static_cast<LONG>(visible.right), static_cast<LONG>(visible.bottom)};
  ExclusiveWhiteFill2BitsDib(GetDIBBits(result.get()), canvas.cx, canvas.cy, inside);
  return result;
}

/// Makes the transparent area around the seed opaque. The pixel that counts as visited from the start is not
/// the seed but the one at the frame's x on the seed's line, counted through the whole canvas, so that the
/// fill stops there: deliberate, pictures that were filled so have to come out the same. Beside the canvas it
/// counts for nothing.
/// \param begun called with every run of pixels: from the first one on only the work list can run out of
/// memory
template <class Begun>
void clearArea(const View& mask, const POINT& seed, std::int64_t frameX, Begun&& begun) {
  const std::int64_t barred = std::int64_t{seed.y} * mask.width() + frameX;
  floodFill(
      mask.width(), mask.height(), seed,
      [&](int y, BYTE* flags) {
        unpackBits(mask.row(y), mask.width(), flags);
        const std::int64_t x = barred - std::int64_t{y} * mask.width();
        if (x >= 0 && x < mask.width()) flags[x] = 0;
      },
      [&](int y, int left, int right) {
        begun();
        fillMaskRow(mask.row(y), left, right, false);
      });
}

int giveTrimmed(OwnedDib image, OwnedDib mask, BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask,
                POINT* outPosition) {
  const TransparentEdges edges = transparentEdges(ConstView(mask.get()));
  *outPosition = {edges.left, edges.top};
  if (edges.any()) return cropLeakingRegion(image.get(), mask.get(), edges, outImage, outMask);
  *outImage = image.release();
  *outMask = mask.release();
  return 1;
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

BITMAPINFOHEADER* InflateDib(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, DWORD fill, int left, int top,
                             int right, int bottom) {
  return orOutOfMemory<BITMAPINFOHEADER*>(nullptr, [&] {
    return flattenOnto(frame, mask, fromColorRef(fill), {left, top, right, bottom}).release();
  });
}

void ExclusiveWhiteFill2BitsDib(BYTE* bits, int width, int height, RECT& rect) {
  if (bits == nullptr || width <= 0 || height <= 0) return;
  const Box kept = intersection(toBox(rect), placedBox(width, height, POINT{0, 0}));
  const auto stride = static_cast<std::ptrdiff_t>(strideOf(width, 1));
  for (int y = 0; y < height; ++y) {
    BYTE* row = bits + (height - 1 - std::ptrdiff_t{y}) * stride;
    const bool crosses = y >= kept.top && y < kept.bottom;
    fillMaskRow(row, 0, crosses ? static_cast<int>(kept.left) : width, true);
    if (crosses) fillMaskRow(row, static_cast<int>(kept.right), width, true);
  }
}

int ExtFillBkgnd(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, const POINT& position, const SIZE& canvas,
                 DWORD fill, int percent, int reserved, const POINT& seed, BITMAPINFOHEADER** outImage,
                 BITMAPINFOHEADER** outMask, POINT* outPosition) {
  static_cast<void>(reserved);
  return orOutOfMemory(0, [&] {
    const Cel source(frame, mask);
    if (!source || outImage == nullptr || outMask == nullptr || outPosition == nullptr) return 0;
    if (!placedBox(canvas.cx, canvas.cy, POINT{0, 0}).contains(seed.x, seed.y)) return 0;
    const Box placed = placedBox(source.width(), source.height(), position);
    const Margins margins{position.x, position.y, canvas.cx - placed.right, canvas.cy - placed.bottom};

    OwnedDib image = flattenOnto(frame, mask, mixedWithWhite(fromColorRef(fill), percent), margins);
    if (!image) return 0;
    OwnedDib transparent = canvasMask(mask, placed, canvas, margins);
    // A mask without white comes back deeper, with an index for white: no mask any more. One of another size
    // than the frame's does not cover the canvas.
    const View rows = viewOfDepth(transparent.get(), 1);
    if (!rows || rows.width() != canvas.cx || rows.height() != canvas.cy) return 0;
    clearArea(rows, seed, position.x, [&] {
      // The result of a flood fill that runs out of memory after it has begun.
      *outImage = nullptr;
      *outMask = nullptr;
      *outPosition = position;
    });
    return giveTrimmed(std::move(image), std::move(transparent), outImage, outMask, outPosition);
  });
}
