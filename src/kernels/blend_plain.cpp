#include <cstddef>
#include <cstring>

#include "kernels/blend.h"

namespace dibkit {
namespace {

using Byte = std::uint8_t;

Byte lowByteOf(int value) { return static_cast<Byte>(value); }

/// Calls rule(d, s, a) for every pixel, from the left.
template <class Source, class Rule>
void blend(Byte* to, Source* from, int count, LayerOpacity opacity, const Byte* mask, Rule&& rule) {
  for (std::ptrdiff_t x = 0; x < count; ++x) {
    const Byte alpha = scaled(reduced(from[4 * x + 3], opacity.reduction), opacity.scale);
    rule(to + 4 * x, from + 4 * x, mask != nullptr ? scaled(alpha, mask[x]) : alpha);
  }
}

void over(Byte* to, const Byte* from, int count, LayerOpacity opacity, const Byte* mask) {
  blend(to, from, count, opacity, mask, [](Byte* d, const Byte* s, Byte a) {
    const Byte below = d[3];
    const Byte alpha = lowByteOf(unionAlpha(below, a));
    for (int i = 0; i < 3; ++i) d[i] = overChannel(below, a, d[i], s[i], alpha);
    d[3] = alpha;
  });
}

void plainOver(Byte* to, const Byte* from, int count, LayerOpacity opacity, const Byte* mask) {
  blend(to, from, count, opacity, mask, [](Byte* d, const Byte* s, Byte a) {
    if (a == 0) return;
    const int alphas = (d[3] + a) * 256 - d[3] * a;
    for (int i = 0; i < 3; ++i) {
      const int below = d[i] * d[3];
      d[i] = lowByteOf((below * 256 + (s[i] * 256 - below) * a) / alphas);
    }
    d[3] = lowByteOf(alphas / 256);
  });
}

void linearMix(Byte* to, const Byte* from, int count, LayerOpacity opacity, const Byte* mask) {
  blend(to, from, count, opacity, mask, [](Byte* d, const Byte* s, Byte a) {
    // 255 has to copy the source, which a weight of 256 does.
    const auto weight = static_cast<Lane>(a + (a == 255 ? 1 : 0));
    for (int i = 0; i < 4; ++i) d[i] = lowByteOf(mixed(d[i], s[i], weight));
  });
}

void evenMix(Byte* to, const Byte* from, int count, LayerOpacity opacity, const Byte* mask) {
  blend(to, from, count, opacity, mask, [](Byte* d, const Byte* s, Byte a) {
    if (a == 0) return;
    if (a == 255) {
      std::memmove(d, s, 4);
      return;
    }
    const auto f = static_cast<Lane>(32768 * a / 255);
    const auto rest = static_cast<Lane>(32768 - f);
    for (int i = 0; i < 4; ++i) d[i] = lowByteOf(2 * (multiplyHigh(d[i], rest) + multiplyHigh(s[i], f)));
  });
}

void copyOrShade(Byte* to, Byte* from, int count, LayerOpacity opacity, const Byte* mask) {
  blend(to, from, count, opacity, mask, [](Byte* d, Byte* s, Byte a) {
    if (a == 255) {
      std::memmove(d, s, 4);
    } else {
      // 256 a / 255 is a, and (256 s + (d - s) a) / 256 the linear mix with the layers exchanged.
      for (int i = 0; i < 3; ++i) s[i] = lowByteOf(mixed(s[i], d[i], a));
    }
  });
}

}  // namespace

template <>
const BlendKernels& plainKernels() {
  static constexpr BlendKernels plain{over, plainOver, linearMix, evenMix, copyOrShade};
  return plain;
}

}  // namespace dibkit
