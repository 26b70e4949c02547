#pragma once

#include "platform/win32.h"

namespace dibkit::standin {

/// Synthesises another clipboard format from a packed DIB: a bitmap compatible with the screen (CF_BITMAP) or
/// the picture with a longer header (CF_DIBV5). The caller owns the result. Null for any other format and for
/// a block without a picture. May throw std::bad_alloc.
HANDLE makeOfDib(UINT format, HGLOBAL dib);

}  // namespace dibkit::standin
