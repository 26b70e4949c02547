#pragma once

#include "host/picture.h"

namespace host {

/// Makes every pixel opaque or transparent, as a GIF has it. A smooth edge becomes a sharp one half way
/// through it. All else that is half transparent, such as shadows, glows and fades, becomes a pattern of dots
/// as dense as it was opaque, which stays where it is from frame to frame.
void ditherAlpha(Picture& picture);

}  // namespace host
