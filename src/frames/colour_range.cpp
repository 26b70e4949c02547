#include "frames/colour_range.h"

#include <algorithm>

namespace dibkit {

ColourRange::ColourRange(Rgb centre, std::int64_t tolerance) {
  const BYTE channels[3] = {centre.blue, centre.green, centre.red};
  for (int i = 0; i < 3; ++i) {
    const std::int64_t low = std::max<std::int64_t>(channels[i] - tolerance, 0);
    const std::int64_t high = std::min<std::int64_t>(channels[i] + tolerance, 255);
    // An empty range may lie outside the bytes.
    low_[i] = low <= high ? static_cast<BYTE>(low) : BYTE{255};
    high_[i] = low <= high ? static_cast<BYTE>(high) : BYTE{0};
  }
}

void ColourRange::match(const BYTE* bgr, int count, BYTE* flags) const {
  // The bounds repeated over 16 pixels: every byte is then tested alike, in vectors.
  constexpr int block = 16;
  BYTE low[block * 3];
  BYTE high[block * 3];
  for (int i = 0; i < block * 3; ++i) {
    low[i] = low_[i % 3];
    high[i] = high_[i % 3];
  }
  int x = 0;
  for (; x + block <= count; x += block, bgr += block * 3) {
    BYTE inside[block * 3];
    for (int i = 0; i < block * 3; ++i) {
      inside[i] = static_cast<BYTE>((bgr[i] >= low[i] ? 1 : 0) & (bgr[i] <= high[i] ? 1 : 0));
    }
    for (int i = 0; i < block; ++i) {
      flags[x + i] = static_cast<BYTE>(inside[i * 3] & inside[i * 3 + 1] & inside[i * 3 + 2]);
    }
  }
  for (; x < count; ++x, bgr += 3) flags[x] = contains({bgr[2], bgr[1], bgr[0]}) ? 1 : 0;
}

}  // namespace dibkit
