#include "dib32/blend.h"

#include "dib32/blend_kernels.h"
#include "dib32/blend_kernels_body.h"
#include "platform/kernels.h"

namespace dibkit {

const BlendKernels BlendKernels::plain = kernelsOfThisSource;

void overRow(Bgra* to, const Bgra* from, int count, LayerOpacity opacity, const BYTE* mask) {
  fastestKernels<BlendKernels>().over(to, from, count, opacity, mask);
}

void plainOverRow(Bgra* to, const Bgra* from, int count, LayerOpacity opacity, const BYTE* mask) {
  fastestKernels<BlendKernels>().plainOver(to, from, count, opacity, mask);
}

void linearMixRow(Bgra* to, const Bgra* from, int count, LayerOpacity opacity, const BYTE* mask) {
  fastestKernels<BlendKernels>().linearMix(to, from, count, opacity, mask);
}

void evenMixRow(Bgra* to, const Bgra* from, int count, LayerOpacity opacity, const BYTE* mask) {
  fastestKernels<BlendKernels>().evenMix(to, from, count, opacity, mask);
}

void copyOrShadeRow(Bgra* to, Bgra* from, int count, LayerOpacity opacity, const BYTE* mask) {
  fastestKernels<BlendKernels>().copyOrShade(to, from, count, opacity, mask);
}

void copyOrShade(Bgra& to, Bgra& from, BYTE alpha) {
  if (alpha == 255) {
    to = from;
  } else if (alpha > 0) {
    const auto shade = [alpha](BYTE s, BYTE d) { return lowByte(mixed(s, d, alpha)); };
    from.blue = shade(from.blue, to.blue);
    from.green = shade(from.green, to.green);
    from.red = shade(from.red, to.red);
  }
}

}  // namespace dibkit
