#include <cstddef>
#include <cstring>

#include "kernels/conversion.h"

namespace dibkit {
namespace {

using Bytes = std::uint8_t* __restrict;
using ConstBytes = const std::uint8_t* __restrict;

void storeWord(Bytes to, std::uint32_t word) {
  const auto value = static_cast<std::uint16_t>(word);
  std::memcpy(to, &value, sizeof(value));
}

void bgra32ToBgr24(ConstBytes from, int width, Bytes to) {
  for (std::ptrdiff_t x = 0; x < width; ++x) {
    to[3 * x] = from[4 * x];
    to[3 * x + 1] = from[4 * x + 1];
    to[3 * x + 2] = from[4 * x + 2];
  }
}

void rgb555ToBgr24(ConstBytes from, int width, Bytes to) {
  for (std::ptrdiff_t x = 0; x < width; ++x) {
    std::uint16_t pixel;
    std::memcpy(&pixel, from + 2 * x, sizeof(pixel));
    to[3 * x] = static_cast<std::uint8_t>(pixel << 3 & 0xF8);
    to[3 * x + 1] = static_cast<std::uint8_t>(pixel >> 2 & 0xF8);
    to[3 * x + 2] = static_cast<std::uint8_t>(pixel >> 7 & 0xF8);
  }
}

void bgr24ToRgb555(ConstBytes from, int width, Bytes to) {
  for (std::ptrdiff_t x = 0; x < width; ++x) {
    const std::uint32_t red = from[3 * x + 2];
    const std::uint32_t green = from[3 * x + 1];
    const std::uint32_t blue = from[3 * x];
    storeWord(to + 2 * x, (red & 0xF8) << 7 | (green & 0xF8) << 2 | blue >> 3);
  }
}

void bgra32ToRgb555(ConstBytes from, int width, Bytes to) {
  for (std::ptrdiff_t x = 0; x < width; ++x) {
    std::uint32_t pixel;
    std::memcpy(&pixel, from + 4 * x, sizeof(pixel));
    storeWord(to + 2 * x, (pixel >> 9 & 0x7C00) | (pixel >> 6 & 0x03E0) | (pixel >> 3 & 0x001F));
  }
}

void bgr24ToBgra32(ConstBytes from, int width, std::uint8_t alpha, Bytes to) {
  for (std::ptrdiff_t x = 0; x < width; ++x) {
    to[4 * x] = from[3 * x];
    to[4 * x + 1] = from[3 * x + 1];
    to[4 * x + 2] = from[3 * x + 2];
    to[4 * x + 3] = alpha;
  }
}

void bgr24ToReversed32(ConstBytes from, int width, Bytes to) {
  for (std::ptrdiff_t x = 0; x < width; ++x) {
    to[4 * x] = 0;
    to[4 * x + 1] = from[3 * x + 2];
    to[4 * x + 2] = from[3 * x + 1];
    to[4 * x + 3] = from[3 * x];
  }
}

void bgr24ToGray(ConstBytes from, int width, Bytes to) {
  for (std::ptrdiff_t x = 0; x < width; ++x) to[x] = grayInDoubles(from + 3 * x);
}

}  // namespace

template <>
const ConversionKernels& plainKernels() {
  static constexpr ConversionKernels plain{bgra32ToBgr24, rgb555ToBgr24,     bgr24ToRgb555, bgra32ToRgb555,
                                           bgr24ToBgra32, bgr24ToReversed32, bgr24ToGray};
  return plain;
}

}  // namespace dibkit
