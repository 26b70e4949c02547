#include "effects/piece.h"

#include <cstring>

#include "dib/allocate.h"
#include "frames/frames.h"

namespace dibkit {

OwnedDib copyOf(const BITMAPINFOHEADER* picture) {
  const ConstView from = viewOfDepth(picture, 32);
  if (!from || from.width() == 0) return nullptr;
  OwnedDib copy = createDib(from.width(), from.height(), 32, 0, Pixels::unwritten);
  if (!copy) return nullptr;
  const View to(copy.get());
  for (int y = 0; y < to.height(); ++y) {
    std::memcpy(to.row(y), from.row(y), static_cast<std::size_t>(to.stride()));
  }
  return copy;
}

void clipToPicture(const OwnedRegion& region, const SIZE& picture) {
  if (!region) return;
  const OwnedRegion whole(CreateRectRgn(0, 0, picture.cx, picture.cy));
  CombineRgn(region.get(), region.get(), whole.get(), RGN_AND);
}

BOOL cutPiece(BITMAPINFOHEADER* source, const OwnedRegion& region, EffectOutput& output) {
  if (!region) return FALSE;
  RECT box{};
  GetRgnBox(region.get(), &box);
  output.image = Crop32BitsDIB(source, region.get());
  output.rect = box;
  return output.image != nullptr ? TRUE : FALSE;
}

}  // namespace dibkit
