#include <cstddef>
#include <cstring>

#include "kernels/copy.h"
#include "kernels/opacity.h"

namespace dibkit {
namespace {

using Byte = std::uint8_t;

void lowered(Byte* to, const Byte* from, int count, Byte reduction) {
  for (std::ptrdiff_t x = 0; x < count; ++x) {
    std::memmove(to + 4 * x, from + 4 * x, 4);
    to[4 * x + 3] = reduced(to[4 * x + 3], reduction);
  }
}

void alphas(Byte* to, const Byte* from, int count) {
  for (std::ptrdiff_t x = 0; x < count; ++x) to[4 * x + 3] = from[4 * x + 3];
}

void doubled(const Byte* from, int count, Byte* to) {
  for (std::ptrdiff_t x = 0; x < count; ++x) {
    std::memcpy(to + 8 * x, from + 4 * x, 4);
    std::memcpy(to + 8 * x + 4, from + 4 * x, 4);
  }
}

void everySecond(const Byte* from, int count, Byte* to) {
  for (std::ptrdiff_t x = 0; x < count; ++x) std::memcpy(to + 4 * x, from + 8 * x, 4);
}

std::uint32_t commonBits(const Byte* pixels, int count) {
  std::uint32_t common = ~std::uint32_t{0};
  for (std::ptrdiff_t x = 0; x < count; ++x) {
    std::uint32_t pixel;
    std::memcpy(&pixel, pixels + 4 * x, 4);
    common &= pixel;
  }
  return common;
}

}  // namespace

template <>
const CopyKernels& plainKernels() {
  static constexpr CopyKernels plain{lowered, alphas, doubled, everySecond, commonBits};
  return plain;
}

}  // namespace dibkit
