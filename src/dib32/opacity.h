#pragma once

#include "dib32/bgra.h"

/// \file
/// Alpha and opacity arithmetic: the result of one layer over another, for a value and for a pixel.
/// Everything is exact and fits 16 bits where possible, so that a row kernel has eight values in a vector
/// register. Static, so that each source that includes it has its own copy: the linker must not use one
/// compiled for a newer processor in the place of a plain one.

namespace dibkit {

/// An intermediate value of a channel.
using Lane = std::uint16_t;

/// The upper half of the 32-bit product.
static constexpr Lane multiplyHigh(Lane a, Lane b) { return static_cast<Lane>(std::uint32_t{a} * b >> 16); }

/// (d (256 - weight) + s weight) / 256, truncated; a weight of 256 copies s.
static constexpr Lane mixed(Lane d, Lane s, Lane weight) {
  return static_cast<Lane>(d * (256 - weight) + s * weight) >> 8;
}

/// x / 255, truncated, for every x
static constexpr Lane divideBy255(Lane x) { return multiplyHigh(x, 0x8081) >> 7; }

/// max(alpha - reduction, 0)
static constexpr BYTE reduced(BYTE alpha, BYTE reduction) {
  return static_cast<BYTE>(alpha > reduction ? alpha - reduction : 0);
}

/// alpha scale / 255, truncated
static constexpr BYTE scaled(BYTE alpha, BYTE scale) {
  return static_cast<BYTE>(divideBy255(static_cast<Lane>(alpha * scale)));
}

/// 255 - (255 - a)(255 - b) / 255, truncated
static constexpr Lane unionAlpha(Lane a, Lane b) {
  return static_cast<Lane>(255 - divideBy255(static_cast<Lane>((255 - a) * (255 - b))));
}

/// (below belowAlpha (255 - aboveAlpha)) / 255 + above aboveAlpha, at most 65025
static constexpr Lane weightedSum(Lane belowAlpha, Lane aboveAlpha, Lane below, Lane above) {
  // The product of two bytes is split into 255 quotient + remainder, so that the third factor fits 16 bits.
  const Lane product = static_cast<Lane>(below * belowAlpha);
  const Lane quotient = divideBy255(product);
  const Lane remainder = static_cast<Lane>(product - 255 * quotient);
  const Lane rest = static_cast<Lane>(255 - aboveAlpha);
  return static_cast<Lane>(quotient * rest + divideBy255(static_cast<Lane>(remainder * rest)) +
                           above * aboveAlpha);
}

/// weightedSum / outAlpha, the sum itself for outAlpha 0, at most 255
static constexpr BYTE overChannel(BYTE belowAlpha, BYTE aboveAlpha, BYTE below, BYTE above, BYTE outAlpha) {
  const int sum = weightedSum(belowAlpha, aboveAlpha, below, above);
  const int value = outAlpha > 0 ? sum / outAlpha : sum;
  return static_cast<BYTE>(value < 255 ? value : 255);
}

/// A pixel composited over another. Two transparent pixels give transparent black, since the formula has no
/// colour there.
static constexpr Bgra over(const Bgra& below, const Bgra& above) {
  const BYTE alpha = lowByte(unionAlpha(below.alpha, above.alpha));
  return {overChannel(below.alpha, above.alpha, below.blue, above.blue, alpha),
          overChannel(below.alpha, above.alpha, below.green, above.green, alpha),
          overChannel(below.alpha, above.alpha, below.red, above.red, alpha), alpha};
}

/// The effective opacity of a layer's pixels: max(alpha - reduction, 0) scale / 255, truncated after each
/// step, then scaled in the same way by the pixel's mask byte if there is a mask.
struct LayerOpacity {
  BYTE reduction = 0;
  BYTE scale = 255;
};

}  // namespace dibkit
