#include <cstddef>

#include "kernels/mix.h"

namespace dibkit {
namespace {

using Byte = std::uint8_t;
using Weight = std::uint16_t;

Byte over255(Byte top, Byte below, Weight weight) {
  return static_cast<Byte>((top * weight + below * (255 - weight)) / 255);
}
Byte over256(Byte top, Byte below, Weight weight) {
  return static_cast<Byte>((top * weight + below * (256 - weight)) >> 8);
}
using Rule = Byte (*)(Byte top, Byte below, Weight weight);

template <Rule rule>
void bytes(const Byte* top, const Byte* below, std::ptrdiff_t count, Weight weight, Byte* mixed) {
  for (std::ptrdiff_t i = 0; i < count; ++i) mixed[i] = rule(top[i], below[i], weight);
}

template <Rule rule>
void bgra32ToBgr24(const Byte* top, const Byte* below, std::ptrdiff_t count, Weight weight, Byte* mixed) {
  for (std::ptrdiff_t x = 0; x < count; ++x)
    bytes<rule>(top + 4 * x, below + 4 * x, 3, weight, mixed + 3 * x);
}

void opaqueOver255(const Byte* top, const Byte* below, std::ptrdiff_t count, Weight weight, Byte* mixed) {
  for (std::ptrdiff_t x = 0; x < count; ++x) {
    bytes<over255>(top + 4 * x, below + 4 * x, 3, weight, mixed + 4 * x);
    mixed[4 * x + 3] = 255;
  }
}

void fade(const Byte* top, const Byte* below, std::ptrdiff_t count, Weight weight, Byte* mixed) {
  for (std::ptrdiff_t x = 0; x < count; ++x) fadePixel(top + 4 * x, below + 4 * x, weight, mixed + 4 * x);
}

}  // namespace

void fadePixel(const Byte* top, const Byte* below, Weight weight, Byte* mixed) {
  const int weightTop = weight * top[3];
  const int weightBelow = (255 - weight) * below[3];
  const int sum = weightTop + weightBelow;
  for (int i = 0; i < 3; ++i) {
    const int colours = top[i] * weightTop + below[i] * weightBelow + sum / 2;
    mixed[i] = static_cast<Byte>(sum != 0 ? colours / sum : 0);
  }
  mixed[3] = static_cast<Byte>((sum + 127) / 255);
}

template <>
const MixKernels& plainKernels() {
  static constexpr MixKernels plain{bytes<over255>,         bytes<over256>, bgra32ToBgr24<over255>,
                                    bgra32ToBgr24<over256>, opaqueOver255,  fade};
  return plain;
}

}  // namespace dibkit
