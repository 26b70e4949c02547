#pragma once

#include "kernels/dispatch.h"

namespace dibkit {

/// What soft brushes do to rows. Rows may have any alignment; what is written does not overlap what is read.
struct BrushKernels {
  /// counts[i] += 1 where entering[i] is not 0, and -= 1 where leaving[i] is not 0: one step of column counts
  /// that move down a brush.
  void (*moveCounts)(const std::uint8_t* entering, const std::uint8_t* leaving, int count,
                     std::uint16_t* counts);

  /// The largest n of `strengths`: amount times sum stays below 2^16.
  static constexpr int largestBox = 16;
  /// values[i] = amount sum / (n n), truncated, of the n column counts from i on. Each is at most n, and n +
  /// count of them can be read. \param amount 0 to 255
  void (*strengths)(const std::uint16_t* counts, int n, int amount, int count, std::uint8_t* values);

  /// Lowers or raises the alphas of `count` pixels of 32 bits by amounts[i], down to 0 or up to 255.
  using ChangeAlphas = void (*)(const std::uint8_t* amounts, int count, std::uint8_t* pixels);
  ChangeAlphas lowerAlphas;
  ChangeAlphas raiseAlphas;
};

template <>
const BrushKernels& plainKernels();
template <>
std::span<const Compiled<BrushKernels>> compiledKernels();

}  // namespace dibkit
