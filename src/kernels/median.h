#pragma once

#include "kernels/dispatch.h"

namespace dibkit {

/// Medians of 3 x 3 pixels, row by row. Rows may have any alignment; what is written does not overlap what is
/// read.
struct MedianKernels {
  /// A row of 32-bit pixels with their luminances.
  struct Row {
    const std::uint8_t* lumas;
    const std::uint8_t* pixels;
  };

  /// The median of each byte of 24-bit pixels, channel by channel: of the bytes i - 3, i and i + 3 of three
  /// rows. The rows begin at the first byte that has a left neighbour, and 3 bytes follow the last of
  /// `count`.
  void (*ofBytes)(const std::uint8_t* above, const std::uint8_t* row, const std::uint8_t* below, int count,
                  std::uint8_t* out);

  /// lumas[i] = (117 blue + 601 green + 306 red) / 1024 of pixels[i], truncated
  void (*luminances)(const std::uint8_t* pixels, int count, std::uint8_t* lumas);

  /// out[i] = the pixel with the median luminance of the pixels i, i + 1 and i + 2 of three rows, for `count`
  /// pixels; of several with this luminance the rightmost one of the lowest row.
  void (*ofPixels)(const Row& top, const Row& centre, const Row& bottom, int count, std::uint8_t* out);
};

template <>
const MedianKernels& plainKernels();
template <>
std::span<const Compiled<MedianKernels>> compiledKernels();

}  // namespace dibkit
