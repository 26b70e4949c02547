#pragma once

#include "dib/view.h"

namespace dibkit {

/// Fades one picture into another. Colours are weighted by their alpha, so that the hidden colours of
/// transparent pixels do not show.
/// \param incoming,outgoing 32 bits, of one size
/// \param progress 0 for the outgoing picture to 1 for the incoming one
/// \return the frame; null when memory runs out
OwnedDib fade(const BITMAPINFOHEADER* incoming, const BITMAPINFOHEADER* outgoing, double progress);

/// The same with a progress for each pixel.
/// \param shares 32 bits, of the same size: its blue is the incoming picture's share, 0 to 255
OwnedDib fadeByShares(const BITMAPINFOHEADER* incoming, const BITMAPINFOHEADER* outgoing,
                      const BITMAPINFOHEADER* shares);

/// Whether all pixels have alpha 255. \param picture 32 bits
bool isOpaque(const ConstView& picture);

}  // namespace dibkit
