#pragma once

#include "dib32/bgra.h"

/// \file
/// Exact compositing: what one layer over another gives, for a value, a pixel and a row.

namespace dibkit {

/// x / 255, truncated, for x below 65536.
constexpr unsigned divideBy255(unsigned x) { return x * 0x8081 >> 23; }

/// max(alpha - reduction, 0)
constexpr BYTE reduced(BYTE alpha, BYTE reduction) {
  return static_cast<BYTE>(alpha > reduction ? alpha - reduction : 0);
}

/// alpha (255 - reduction) / 255, truncated
constexpr BYTE scaledDown(BYTE alpha, BYTE reduction) {
  return static_cast<BYTE>(divideBy255(alpha * (255U - reduction)));
}

/// 255 - (255 - a)(255 - b) / 255, truncated
constexpr BYTE unionOpacity(BYTE a, BYTE b) {
  return static_cast<BYTE>(255 - divideBy255((255U - a) * (255U - b)));
}

/// v = (below belowAlpha (255 - aboveAlpha)) / 255 + above aboveAlpha; at most 65025
constexpr unsigned weightedSum(BYTE belowAlpha, BYTE aboveAlpha, BYTE below, BYTE above) {
  // Split as 255 quotient + remainder, so that no product passes 16 bits.
  const unsigned product = unsigned{below} * belowAlpha;
  const unsigned quotient = divideBy255(product);
  const unsigned remainder = product - 255 * quotient;
  const unsigned rest = 255U - aboveAlpha;
  return quotient * rest + divideBy255(remainder * rest) + unsigned{above} * aboveAlpha;
}

/// v / outAlpha, v itself for outAlpha 0, at most 255; v is the weighted sum
constexpr BYTE overChannel(BYTE belowAlpha, BYTE aboveAlpha, BYTE below, BYTE above, BYTE outAlpha) {
  const unsigned sum = weightedSum(belowAlpha, aboveAlpha, below, above);
  const unsigned value = outAlpha > 0 ? sum / outAlpha : sum;
  return static_cast<BYTE>(value < 255 ? value : 255);
}

/// A pixel laid over another. Two transparent pixels give transparent black: the formula has no colour there.
constexpr Bgra over(const Bgra& below, const Bgra& above) {
  const BYTE alpha = unionOpacity(below.alpha, above.alpha);
  return {overChannel(below.alpha, above.alpha, below.blue, above.blue, alpha),
          overChannel(below.alpha, above.alpha, below.green, above.green, alpha),
          overChannel(below.alpha, above.alpha, below.red, above.red, alpha), alpha};
}

/// result[i] = over(below[i], above[i]) for `count` pixels, with `belowReduction` and `aboveReduction` taken
/// off the opacities first. `result` may be `below`; apart from that the rows do not overlap or are the same.
void overRow(Bgra* result, const Bgra* below, BYTE belowReduction, const Bgra* above, BYTE aboveReduction,
             int count);

}  // namespace dibkit
