#pragma once

#include <vector>

#include "dib/pixel_format.h"
#include "kernels/mix.h"

namespace dibkit {

/// A percentage as a weight of MixKernels::bytesOver256: 100 is 256. Computed in 64 bits and taken modulo
/// 2^16, so that every int is valid.
constexpr WORD opacityOfPercent(int percent) {
  return static_cast<WORD>(std::int64_t{percent} * 256 / 100 & 0xFFFF);
}

/// Mixes a colour into pixels at a strength in percent: (old * 256 + (fill - old) * s) >> 8, with
/// s = percent * 256 / 100.
class Tint {
 public:
  Tint(Rgb fill, int percent, int width)
      : opacity_(opacityOfPercent(percent)), fill_(static_cast<std::size_t>(width) * 3) {
    for (int x = 0; x < width; ++x) Bgr24::put(fill_.data(), x, fill);
  }

  /// Tints the pixels [left, right) of a 24-bit row.
  void apply(BYTE* row, int left, int right) const {
    BYTE* first = row + std::ptrdiff_t{left} * 3;
    kernels<MixKernels>().bytesOver256(fill_.data(), first, std::ptrdiff_t{right - left} * 3, opacity_,
                                       first);
  }

 private:
  WORD opacity_;
  std::vector<BYTE> fill_;  ///< a row of the fill colour
};

}  // namespace dibkit
