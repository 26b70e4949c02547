#pragma once

#include "dib/dib.h"

namespace dibkit {

/// Fades one picture into another, refracted by water waves that rise until half way and then level out.
/// \param incoming,outgoing 32 bits, of one size
/// \param progress 0 for the outgoing picture to 1 for the incoming one
/// \return the frame; null when memory runs out, which may throw std::bad_alloc as well
OwnedDib rippleFade(const BITMAPINFOHEADER* incoming, const BITMAPINFOHEADER* outgoing, double progress);

}  // namespace dibkit
