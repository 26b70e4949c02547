#pragma once

#include <array>

#include "kernels/dispatch.h"

namespace dibkit {

/// Comparisons of pixels with fixed values. Rows may have any alignment; what is written does not overlap
/// what is read.
struct MatchKernels {
  /// The limits of each byte of a pixel, both inclusive.
  struct Box {
    std::array<std::uint8_t, 4> low, high;
  };

  /// flags[i] = 1 where every byte of pixel i is inside the box, else 0. Of 24-bit pixels three bytes are
  /// compared.
  using Inside = void (*)(const std::uint8_t* pixels, int count, const Box& box, std::uint8_t* flags);
  Inside inside24;
  Inside inside32;

  /// bits[i / 8] = the bits of eight bytes from i on, the first one's the most significant: set where the
  /// byte is at least `level`. \param count a multiple of 8
  void (*atLeast)(const std::uint8_t* bytes, int count, std::uint8_t level, std::uint8_t* bits);
};

template <>
const MatchKernels& plainKernels();
template <>
std::span<const Compiled<MatchKernels>> compiledKernels();

}  // namespace dibkit
