#pragma once

#include "dib32/opacity.h"

namespace dibkit {

/// The row blends of blend.h; a null mask is none.
struct BlendKernels {
  template <class From>
  using Blend = void (*)(Bgra* to, From* from, int count, LayerOpacity opacity, const BYTE* mask);

  Blend<const Bgra> over;
  Blend<const Bgra> plainOver;
  Blend<const Bgra> linearMix;
  Blend<const Bgra> evenMix;
  Blend<Bgra> copyOrShade;
};

/// One source, compiled for several instruction sets. The plain ones run everywhere.
extern const BlendKernels plainBlendKernels;
#if defined(DIBKIT_AVX2)
extern const BlendKernels avx2BlendKernels;
#endif

}  // namespace dibkit
