#pragma once

#include <cstddef>

#include "kernels/dispatch.h"

namespace dibkit {

/// Mixtures of two rows at one weight, with the formulas
///
///     over255(t, b) = (t weight + b (255 - weight)) / 255, truncated
///     over256(t, b) = (t weight + b (256 - weight)) >> 8, modulo 256
///
/// for a byte t of the upper row and the byte b below it. A weight above 256 is not clamped, on purpose.
/// over255 takes weights up to 255. `mixed` may be one of the two rows; otherwise it does not overlap them.
struct MixKernels {
  using Row = void (*)(const std::uint8_t* top, const std::uint8_t* below, std::ptrdiff_t count,
                       std::uint16_t weight, std::uint8_t* mixed);

  Row bytesOver255;
  Row bytesOver256;
  /// \name From pixels of 32 bits to pixels of 24 bits
  /// @{
  Row bgra32ToBgr24Over255;
  Row bgra32ToBgr24Over256;
  /// @}
  /// Pixels of 32 bits, all opaque, whatever alphas they had.
  Row opaqueOver255;
  /// Pixels of 32 bits whose colours are weighted by their alphas too. With wt = weight * alpha of t and
  /// wb = (255 - weight) * alpha of b:
  ///     alpha = (wt + wb + 127) / 255
  ///     colour = (t wt + b wb + (wt + wb) / 2) / (wt + wb), of which 0 / 0 is 0
  Row fade;
};

template <>
const MixKernels& plainKernels();
template <>
std::span<const Compiled<MixKernels>> compiledKernels();

/// A pixel of MixKernels::fade.
void fadePixel(const std::uint8_t* top, const std::uint8_t* below, std::uint16_t weight, std::uint8_t* mixed);

}  // namespace dibkit
