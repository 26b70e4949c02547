#pragma once

#include "platform/win32.h"

namespace dibkit::standin {

/// What the platform makes of a packed DIB on the clipboard for those who ask for another format: the picture
/// as a bitmap of the screen's kind (CF_BITMAP) or under a longer header (CF_DIBV5). Null for any other
/// format and for a block that holds no picture. The caller owns what is made. May throw std::bad_alloc.
HANDLE makeOfDib(UINT format, HGLOBAL dib);

}  // namespace dibkit::standin
