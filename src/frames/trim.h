#pragma once

#include "frames/opacity.h"

namespace dibkit {

/// Cuts the edges off an image and its mask, which may be null, as CropFrame cuts. The region that says what
/// stays is never deleted, on purpose: fills and shape pictures have always kept one for each picture that
/// they trim, and the objects that the process holds are part of what hosts see of it.
/// \return what CropFrame returns
int cropLeakingRegion(BITMAPINFOHEADER* image, BITMAPINFOHEADER* mask, const TransparentEdges& edges,
                      BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask);

}  // namespace dibkit
