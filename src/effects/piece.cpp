#include "effects/piece.h"

#include <cmath>
#include <cstring>

#include "dib/view.h"
#include "frames/frames.h"

namespace dibkit {

double diagonalOf(const SIZE& picture) {
  // 64 bits, since the square of 46341 already needs more than 32.
  const std::int64_t w = picture.cx;
  const std::int64_t h = picture.cy;
  return std::sqrt(static_cast<double>(w * w + h * h));
}

OwnedDib copyOf(const BITMAPINFOHEADER* picture) {
  const ConstView from = viewOfDepth(picture, 32);
  if (!from || from.width() == 0) return nullptr;
  return makeRows(from, [&](BYTE* row, int y) {
    std::memcpy(row, from.row(y), static_cast<std::size_t>(from.stride()));
  });
}

BOOL cutPiece(BITMAPINFOHEADER* source, const OwnedRegion& region, EffectOutput& output) {
  if (!region) return FALSE;
  const auto [w, h] = sizeOf(source);
  const OwnedRegion whole(CreateRectRgn(0, 0, w, h));
  CombineRgn(region.get(), region.get(), whole.get(), RGN_AND);
  GetRgnBox(region.get(), &output.rect);
  output.image = Crop32BitsDIB(source, region.get());
  return output.image != nullptr ? TRUE : FALSE;
}

}  // namespace dibkit
