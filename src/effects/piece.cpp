#include "effects/piece.h"

#include "frames/frames.h"

namespace dibkit {

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
