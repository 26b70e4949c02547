#pragma once

#include "kernels/dispatch.h"

namespace dibkit {

/// What conversions without a palette do to a row of `width` pixels. Rows may have any alignment; `from` and
/// `to` do not overlap.
struct ConversionKernels {
  using Row = void (*)(const std::uint8_t* from, int width, std::uint8_t* to);

  Row bgra32ToBgr24;
  Row rgb555ToBgr24;
  Row bgr24ToRgb555;
  Row bgra32ToRgb555;
  /// All with the same alpha.
  void (*bgr24ToBgra32)(const std::uint8_t* from, int width, std::uint8_t alpha, std::uint8_t* to);
  /// To the bytes 0, red, green, blue: the reverse of the order in images with alpha.
  Row bgr24ToReversed32;
  /// 0.299 red + 0.587 green + 0.114 blue in doubles, added in this order and truncated.
  Row bgr24ToGray;
};

template <>
const ConversionKernels& plainKernels();
template <>
std::span<const Compiled<ConversionKernels>> compiledKernels();

/// The gray of a pixel of 24 bits. Exact on every target: no two steps may be fused into one instruction.
inline std::uint8_t grayInDoubles(const std::uint8_t* pixel) {
  return static_cast<std::uint8_t>(pixel[2] * 0.299 + pixel[1] * 0.587 + pixel[0] * 0.114);
}

}  // namespace dibkit
