#pragma once

#include <algorithm>
#include <cstring>

#include "support/images.h"

/// What each blend does to a destination pixel d and a source pixel s of alpha a. Quotients are truncated.
namespace test {

inline BYTE byteOf(std::int64_t value) { return static_cast<BYTE>(value); }

namespace blends {

inline void over(BYTE* d, BYTE* s, int a) {
  const int below = d[3], alpha = 255 - (255 - below) * (255 - a) / 255;
  for (int i = 0; i < 3; ++i) {
    const int sum = d[i] * below * (255 - a) / 255 + s[i] * a;
    d[i] = byteOf(std::min(alpha > 0 ? sum / alpha : sum, 255));
  }
  d[3] = byteOf(alpha);
}
inline void stepwiseOver(BYTE* d, BYTE* s, int a) {
  const int sum = (d[3] + a) * 256 - d[3] * a;
  for (int i = 0; i < 3 && a > 0; ++i) {
    d[i] = byteOf((d[i] * d[3] * 256 + (s[i] * 256 - d[i] * d[3]) * a) / sum);
  }
  d[3] = byteOf(sum / 256);
}
inline void linearMix(BYTE* d, BYTE* s, int a) {
  for (int i = 0; i < 4; ++i) d[i] = a == 255 ? s[i] : byteOf((d[i] * (256 - a) + s[i] * a) / 256);
}
inline void evenMix(BYTE* d, BYTE* s, int a) {
  const int f = a * 32768 / 255;
  for (int i = 0; i < 4 && a > 0; ++i) {
    d[i] = a == 255 ? s[i] : byteOf(std::min(2 * (d[i] * (32768 - f) / 65536 + s[i] * f / 65536), 255));
  }
}
inline void copyOrShade(BYTE* d, BYTE* s, int a) {
  if (a == 255) std::memmove(d, s, 4);
  for (int i = 0; i < 3 && a > 0 && a < 255; ++i) {
    s[i] = byteOf((s[i] * 256 + (d[i] - s[i]) * (a * 256 / 255)) >> 8);
  }
}

}  // namespace blends
}  // namespace test
