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

/// The fill colour mixed into white at the fill's strength.
Rgb mixedWithWhite(Rgb fill, int percent) {
  BYTE pixel[3] = {255, 255, 255};
  Tint(fill, percent, 1).apply(pixel, 0, 1);
  return Bgr24::get(pixel, 0);
}

/// The mask of the whole canvas before the fill. The canvas outside the frame has the bit of the mask's first
/// white palette entry. That is 1, transparent, unless the palette begins with white.
/// \return null without white in a palette of two entries, for a mask of another size than the frame's, and
///         when memory runs out
OwnedDib canvasMask(const Cel& frame, const BITMAPINFOHEADER* mask, const Box& placed, const SIZE& canvas) {
  if (mask != nullptr && (mask->biWidth != frame.width() || mask->biHeight != frame.height())) return nullptr;
  MatteImage made = mask != nullptr ? imageWithMatte(mask, {255, 255, 255}, canvas)
                                    : MatteImage{createMask(canvas.cx, canvas.cy), 1};
  const View rows = viewOfDepth(made.image.get(), 1);
  if (!rows) return nullptr;
  const auto common = overlapOf<2>({placedBox(canvas.cx, canvas.cy, POINT{0, 0}), placed});
  const auto& onCanvas = common.start[0];
  const auto& inFrame = common.start[1];
  for (int y = 0; y < rows.height(); ++y) fillMaskRow(rows.row(y), 0, rows.width(), made.index != 0);
  for (int y = 0; y < common.height; ++y) {
    BYTE* row = rows.row(onCanvas.y + y);
    if (const BYTE* marked = frame.mask().row(inFrame.y + y)) {
      copyPixels(1, marked, inFrame.x, common.width, row, onCanvas.x);
    } else {
      fillMaskRow(row, onCanvas.x, onCanvas.x + common.width, false);
    }
  }
  return std::move(made.image);
}

/// Makes the transparent area around the seed opaque. The fill never enters pixel frameX of the seed's line,
/// on purpose: it has always counted as visited in place of the seed, and results depend on it. An x outside
/// the line is a pixel of another line, as in an array of all pixels.
/// \param visiting called before each run of pixels is changed
template <class Visiting>
void clearArea(const View& mask, const POINT& seed, std::int64_t frameX, Visiting&& visiting) {
  const std::int64_t excluded = std::int64_t{seed.y} * mask.width() + frameX;
  floodFill(
      mask.width(), mask.height(), seed,
      [&](int y, int x, int count, BYTE* flags) {
        unpackBits(mask.row(y) + x / 8, count, flags);
        const std::int64_t i = excluded - std::int64_t{y} * mask.width() - x;
        if (i >= 0 && i < count) flags[i] = 0;
      },
      [&](int y, int left, int right) {
        visiting();
        fillMaskRow(mask.row(y), left, right, false);
      });
}

/// Cuts off the edges that are still transparent.
int giveTrimmed(OwnedDib image, OwnedDib mask, BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask,
                POINT* outPosition) {
  const TransparentEdges edges = transparentEdges(ConstView(mask.get()));
  *outPosition = {edges.left, edges.top};
  if (edges.any()) return cropTrimmed(image.get(), mask.get(), edges, outImage, outMask);
  *outImage = image.release();
  *outMask = mask.release();
  return 1;
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

BITMAPINFOHEADER* InflateDib(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, DWORD fill, int left, int top,
                             int right, int bottom) {
  return catchOutOfMemory([&] {
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
  return catchOutOfMemory([&] {
    const Cel source(frame, mask);
    if (!source || outImage == nullptr || outMask == nullptr || outPosition == nullptr) return 0;
    if (!placedBox(canvas.cx, canvas.cy, POINT{0, 0}).contains(seed.x, seed.y)) return 0;
    const Box placed = placedBox(source.width(), source.height(), position);
    const Margins margins{position.x, position.y, canvas.cx - placed.right, canvas.cy - placed.bottom};

    OwnedDib image = flattenOnto(frame, mask, mixedWithWhite(fromColorRef(fill), percent), margins);
    if (!image) return 0;
    OwnedDib transparent = canvasMask(source, mask, placed, canvas);
    if (!transparent) return 0;
    clearArea(View(transparent.get()), seed, position.x, [&] {
      // The results of a flood fill that runs out of memory.
      *outImage = nullptr;
      *outMask = nullptr;
      *outPosition = position;
    });
    return giveTrimmed(std::move(image), std::move(transparent), outImage, outMask, outPosition);
  });
}
