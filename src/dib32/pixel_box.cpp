#include "dib32/pixel_box.h"

#include <algorithm>

namespace dibkit {
namespace {

/// A range as one comparison of bytes: value - low, taken modulo 256, is at most the width.
struct Window {
  BYTE low, width;

  explicit Window(const ByteRange& range)
      : low(static_cast<BYTE>(range.low)), width(static_cast<BYTE>(range.high - range.low)) {}
  /// 1 or 0
  BYTE holds(BYTE value) const { return static_cast<BYTE>(value - low) <= width; }
};

}  // namespace

void markMatches(const Bgra* pixels, int count, const PixelBox& box, BYTE* flags) {
  if (box.blue.empty() || box.green.empty() || box.red.empty() || box.alpha.empty()) {
    std::fill_n(flags, count, BYTE{0});
    return;
  }
  const Window blue(box.blue), green(box.green), red(box.red), alpha(box.alpha);
  for (int i = 0; i < count; ++i) {
    const Bgra& pixel = pixels[i];
    // All four are evaluated: a branch would prevent vectorisation.
    flags[i] = static_cast<BYTE>(blue.holds(pixel.blue) & green.holds(pixel.green) & red.holds(pixel.red) &
                                 alpha.holds(pixel.alpha));
  }
}

void keepUnderMask(const BYTE* mask, int count, BYTE* flags) {
  for (int i = 0; i < count; ++i) flags[i] = static_cast<BYTE>(flags[i] & (mask[i] != 0));
}

}  // namespace dibkit
