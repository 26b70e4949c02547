#pragma once

#include "dib32/bgra.h"
#include "kernels/opacity.h"

namespace dibkit {

/// A pixel composited over another. Two transparent pixels give transparent black, since the formula has no
/// colour there.
constexpr Bgra over(const Bgra& below, const Bgra& above) {
  const BYTE alpha = lowByte(unionAlpha(below.alpha, above.alpha));
  return {overChannel(below.alpha, above.alpha, below.blue, above.blue, alpha),
          overChannel(below.alpha, above.alpha, below.green, above.green, alpha),
          overChannel(below.alpha, above.alpha, below.red, above.red, alpha), alpha};
}

}  // namespace dibkit
