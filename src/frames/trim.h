#pragma once

#include "dib/view.h"

namespace dibkit {

/// Numbers of wholly transparent rows and columns at the edges of a frame mask.
struct TransparentEdges {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;

  bool any() const { return left != 0 || top != 0 || right != 0 || bottom != 0; }
};

/// Counts them. In a wholly transparent mask left and right are its width, top and bottom its height. Throws
/// std::bad_alloc when memory runs out.
TransparentEdges transparentEdges(const ConstView& mask);

/// Makes a region that is never deleted, on purpose: trimming a picture has always left one region behind,
/// and hosts can see the number of objects that their process has. \return whether there was memory for it
bool keepRegionForGood(const RECT& rect, HRGN& kept);

/// Cuts the edges off an image and its mask, which may be null, as CropFrame cuts, and keeps a region for
/// good.
/// \return the result of CropFrame
int cropTrimmed(BITMAPINFOHEADER* image, BITMAPINFOHEADER* mask, const TransparentEdges& edges,
                BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask);

}  // namespace dibkit
