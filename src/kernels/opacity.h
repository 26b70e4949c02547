#pragma once

#include <cstdint>

/// \file
/// Alpha and opacity arithmetic: the result of one layer over another, for one value. Everything is exact and
/// fits 16 bits where possible.

namespace dibkit {

/// An intermediate value of a channel.
using Lane = std::uint16_t;

/// The upper half of the 32-bit product.
constexpr Lane multiplyHigh(Lane a, Lane b) { return static_cast<Lane>(std::uint32_t{a} * b >> 16); }

/// (d (256 - weight) + s weight) / 256, truncated; a weight of 256 copies s.
constexpr Lane mixed(Lane d, Lane s, Lane weight) {
  return static_cast<Lane>(d * (256 - weight) + s * weight) >> 8;
}

/// x / 255, truncated, for every x
constexpr Lane divideBy255(Lane x) { return multiplyHigh(x, 0x8081) >> 7; }

/// max(alpha - reduction, 0)
constexpr std::uint8_t reduced(std::uint8_t alpha, std::uint8_t reduction) {
  return static_cast<std::uint8_t>(alpha > reduction ? alpha - reduction : 0);
}

/// alpha scale / 255, truncated
constexpr std::uint8_t scaled(std::uint8_t alpha, std::uint8_t scale) {
  return static_cast<std::uint8_t>(divideBy255(static_cast<Lane>(alpha * scale)));
}

/// 255 - (255 - a)(255 - b) / 255, truncated
constexpr Lane unionAlpha(Lane a, Lane b) {
  return static_cast<Lane>(255 - divideBy255(static_cast<Lane>((255 - a) * (255 - b))));
}

/// (below belowAlpha (255 - aboveAlpha)) / 255 + above aboveAlpha, at most 65025
constexpr Lane weightedSum(Lane belowAlpha, Lane aboveAlpha, Lane below, Lane above) {
  // The product of two bytes is split into 255 quotient + remainder, so that the third factor fits 16 bits.
  const Lane product = static_cast<Lane>(below * belowAlpha);
  const Lane quotient = divideBy255(product);
  const Lane remainder = static_cast<Lane>(product - 255 * quotient);
  const Lane rest = static_cast<Lane>(255 - aboveAlpha);
  return static_cast<Lane>(quotient * rest + divideBy255(static_cast<Lane>(remainder * rest)) +
                           above * aboveAlpha);
}

/// weightedSum / outAlpha, the sum itself for outAlpha 0, at most 255
constexpr std::uint8_t overChannel(std::uint8_t belowAlpha, std::uint8_t aboveAlpha, std::uint8_t below,
                                   std::uint8_t above, std::uint8_t outAlpha) {
  const int sum = weightedSum(belowAlpha, aboveAlpha, below, above);
  const int value = outAlpha > 0 ? sum / outAlpha : sum;
  return static_cast<std::uint8_t>(value < 255 ? value : 255);
}

/// The effective opacity of a layer's pixels: max(alpha - reduction, 0) scale / 255, truncated after each
/// step, then scaled in the same way by the pixel's mask byte if there is a mask.
struct LayerOpacity {
  std::uint8_t reduction = 0;
  std::uint8_t scale = 255;
};

}  // namespace dibkit
