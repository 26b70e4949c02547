#pragma once

#include "kernels/dispatch.h"

namespace dibkit {

/// Copies of rows of 32-bit pixels, and what tells which copy will do.
struct CopyKernels {
  /// Copies the pixels, with alpha max(alpha - reduction, 0). The rows may be parts of one image and overlap:
  /// pixels are processed one after the other from the left.
  void (*lowered)(std::uint8_t* to, const std::uint8_t* from, int count, std::uint8_t reduction);
  /// Copies the alphas alone, in the same order.
  void (*alphas)(std::uint8_t* to, const std::uint8_t* from, int count);
  /// Each pixel twice: 2 count pixels. The rows do not overlap.
  void (*doubled)(const std::uint8_t* from, int count, std::uint8_t* to);
  /// `count` pixels, every second one of `from`. The rows do not overlap.
  void (*everySecond)(const std::uint8_t* from, int count, std::uint8_t* to);
  /// The bits that all pixels have set; all of them for none.
  std::uint32_t (*commonBits)(const std::uint8_t* pixels, int count);
};

template <>
const CopyKernels& plainKernels();
template <>
std::span<const Compiled<CopyKernels>> compiledKernels();

}  // namespace dibkit
