#include "dib32/blend.h"

#include "dib32/blend_kernels.h"
#include "dib32/blend_kernels_body.h"

namespace dibkit {

extern const BlendKernels plainBlendKernels = kernelsOfThisSource;

namespace {

/// The fastest that the processor runs; chosen once.
const BlendKernels& blendKernels() {
#if defined(DIBKIT_AVX2)
  static const bool avx2 = __builtin_cpu_supports("avx2");
  if (avx2) return avx2BlendKernels;
#endif
  return plainBlendKernels;
}

}  // namespace

void overRow(Bgra* to, const Bgra* from, int count, LayerOpacity opacity, const BYTE* mask) {
  blendKernels().over(to, from, count, opacity, mask);
}

void plainOverRow(Bgra* to, const Bgra* from, int count, LayerOpacity opacity) {
  blendKernels().plainOver(to, from, count, opacity, nullptr);
}

void linearMixRow(Bgra* to, const Bgra* from, int count, LayerOpacity opacity) {
  blendKernels().linearMix(to, from, count, opacity, nullptr);
}

void evenMixRow(Bgra* to, const Bgra* from, int count, LayerOpacity opacity, const BYTE* mask) {
  blendKernels().evenMix(to, from, count, opacity, mask);
}

void copyOrShadeRow(Bgra* to, Bgra* from, int count, LayerOpacity opacity) {
  blendKernels().copyOrShade(to, from, count, opacity, nullptr);
}

void copyOrShade(Bgra& to, Bgra& from, BYTE opacity) {
  if (opacity == 255) {
    to = from;
  } else if (opacity > 0) {
    const auto shade = [opacity](BYTE s, BYTE d) { return lowByte(mixed(s, d, opacity)); };
    from.blue = shade(from.blue, to.blue);
    from.green = shade(from.green, to.green);
    from.red = shade(from.red, to.red);
  }
}

}  // namespace dibkit
