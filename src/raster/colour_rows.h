#pragma once

#include "dib/view.h"

namespace dibkit {

/// Decodes pixels [x, x + count) of a row of any depth to blue, green, red bytes. In a depth that has no
/// format every pixel is palette entry 0 up to 8 bits, and black above.
void decodeBgrRow(int bitCount, const BYTE* row, int x, int count, const PaletteTable& palette, BYTE* bgr);

}  // namespace dibkit
