#include "frames/trim.h"

#include "frames/frames.h"

namespace dibkit {

int cropLeakingRegion(BITMAPINFOHEADER* image, BITMAPINFOHEADER* mask, const TransparentEdges& edges,
                      BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask) {
  const HRGN kept = CreateRectRgn(edges.left, edges.top, static_cast<int>(image->biWidth - edges.right),
                                  static_cast<int>(image->biHeight - edges.bottom));
  return CropFrame(image, mask, kept, outImage, outMask);
}

}  // namespace dibkit
