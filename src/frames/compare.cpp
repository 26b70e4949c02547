#include <algorithm>

#include "cel/difference.h"
#include "frames/frames.h"

using namespace dibkit;

void GetPixelRGB(BYTE* row, int x, int bitCount, RGBQUAD* palette, BYTE* red, BYTE* green, BYTE* blue) {
  if (red == nullptr || green == nullptr || blue == nullptr || x < 0) return;
  const auto give = [&](Rgb colour) {
    *red = colour.red;
    *green = colour.green;
    *blue = colour.blue;
    return true;
  };
  const bool known = row != nullptr && withFormat(bitCount, [&](auto format) {
                       using Format = decltype(format);
                       const auto raw = Format::get(row, x);
                       if constexpr (Format::bits <= 8) {
                         return palette != nullptr && give(rgbOf(palette[raw]));
                       } else {
                         return give(Format::colour(raw));
                       }
                     });
  // Depths up to 8 without a format count as index 0.
  if (!known && bitCount <= 8 && palette != nullptr) give(rgbOf(palette[0]));
}

int CompareFrame(BITMAPINFOHEADER* frameA, BITMAPINFOHEADER* maskA, BITMAPINFOHEADER* frameB,
                 BITMAPINFOHEADER* maskB) {
  const Cel a(frameA, maskA);
  const Cel b(frameB, maskB);
  if (!a || !b || a.width() != b.width() || a.height() != b.height()) return 0;
  const CelDifference difference(a, b);
  constexpr int step = 32;
  for (int bottom = a.view().lines(); bottom > 0; bottom -= step) {
    const int top = std::max(bottom - step, 0);
    if (difference.sameLines(top, bottom)) continue;
    for (int y = top; y < bottom; ++y) {
      if (difference.first({0, y, 0, y}, a.width()) != a.width()) return 0;
    }
  }
  return 1;
}
