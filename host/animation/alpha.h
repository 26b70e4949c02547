#pragma once

#include "host/picture.h"

namespace host {

/// Makes every pixel opaque or transparent, as in a GIF. Smooth edges become sharp at half alpha. All else
/// that is half transparent, such as shadows, glows and fades, becomes a pattern of dots whose density is the
/// alpha and whose places are the same in every frame.
void ditherAlpha(Picture& picture);

}  // namespace host
