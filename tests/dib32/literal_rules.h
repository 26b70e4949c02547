#pragma once

#include <algorithm>
#include <cstring>

#include "platform/win32.h"

/// Blends of one pixel d under s, written as they are defined, step by step.
namespace test {

inline BYTE byteOf(int value) { return static_cast<BYTE>(value); }
inline int reducedAlpha(const BYTE* s, int reduction) { return s[3] > reduction ? s[3] - reduction : 0; }

/// Exact compositing.
inline void combine(BYTE* d, BYTE* s, int reduction, int = 255) {
  const int as = reducedAlpha(s, reduction);
  const int ad = d[3];
  const int ao = 255 - (255 - ad) * (255 - as) / 255;
  for (int i = 0; i < 3; ++i) {
    int value = d[i] * ad * (255 - as) / 255 + s[i] * as;
    if (ao > 0) value /= ao;
    d[i] = byteOf(std::min(value, 255));
  }
  d[3] = byteOf(ao);
}

/// Opaque pixels are copied, translucent ones mixed into the source.
inline void shade(BYTE* d, BYTE* s, int reduction, int = 255) {
  const int a = reducedAlpha(s, reduction);
  const int f = a * 256 / 255;
  if (a == 255) std::memmove(d, s, 4);
  for (int i = 0; i < 3 && a > 0 && a < 255; ++i) s[i] = byteOf((s[i] * 256 + (d[i] - s[i]) * f) >> 8);
}

/// All four bytes in steps of 1/32768.
inline void evenMixAt(BYTE* d, const BYTE* s, int a) {
  const int f = a * 32768 / 255;
  for (int i = 0; i < 4 && a > 0; ++i) {
    const int half = ((d[i] * (32768 - f)) >> 16) + ((s[i] * f) >> 16);
    d[i] = a == 255 ? s[i] : byteOf(std::min(half * 2, 255));
  }
}

}  // namespace test
