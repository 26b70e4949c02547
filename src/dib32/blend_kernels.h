#pragma once

#include "dib32/opacity.h"

namespace dibkit {

/// The row blends of blend.h. `plain` and `avx2` are for fastestKernels().
struct BlendKernels {
  template <class From>
  using Blend = void (*)(Bgra* to, From* from, int count, LayerOpacity opacity, const BYTE* mask);

  Blend<const Bgra> over;
  Blend<const Bgra> plainOver;
  Blend<const Bgra> linearMix;
  Blend<const Bgra> evenMix;
  Blend<Bgra> copyOrShade;

  static const BlendKernels plain;
  static const BlendKernels avx2;
};

}  // namespace dibkit
