#pragma once

#include "dib/dib.h"

namespace dibkit {

/// Fades one picture into another. Colours count by their opacity, so that what is transparent in one of the
/// pictures does not stain the other.
/// \param incoming,outgoing 32 bits, of one size
/// \param progress 0 for the outgoing picture to 1 for the incoming one, both then to the byte
/// \return the frame; null for unusable pictures or when memory runs out
OwnedDib fade(const BITMAPINFOHEADER* incoming, const BITMAPINFOHEADER* outgoing, double progress);

}  // namespace dibkit
