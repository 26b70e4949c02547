#include "frames/mix.h"

#include <cstring>

namespace dibkit {
namespace {

template <class Rule>
void mixRows(const BYTE* top, const BYTE* backdrop, std::size_t bytes, BYTE* mixed, Rule&& rule) {
  // Into a local buffer, which cannot alias the rows, so that the compiler vectorises the loop.
  constexpr std::size_t block = 64;
  std::size_t i = 0;
  for (; i + block <= bytes; i += block) {
    BYTE buffer[block];
    for (std::size_t k = 0; k < block; ++k) buffer[k] = rule(top[i + k], backdrop[i + k]);
    std::memcpy(mixed + i, buffer, block);
  }
  for (; i < bytes; ++i) mixed[i] = rule(top[i], backdrop[i]);
}

}  // namespace

void mixByByteOpacity(const BYTE* top, const BYTE* backdrop, std::size_t bytes, BYTE opacity, BYTE* mixed) {
  const WORD above = opacity;
  const WORD below = static_cast<WORD>(255 - opacity);
  mixRows(top, backdrop, bytes, mixed, [above, below](WORD a, WORD b) {
    const WORD sum = static_cast<WORD>(a * above + b * below);
    // sum / 255, exact up to 65025, in 16 bits.
    return static_cast<BYTE>(static_cast<WORD>(sum + 1 + (sum >> 8)) >> 8);
  });
}

void mixByWordOpacity(const BYTE* top, const BYTE* backdrop, std::size_t bytes, WORD opacity, BYTE* mixed) {
  // Only bits 8 to 15 of the sum are used, so it may wrap in 16 bits.
  const WORD above = opacity;
  const WORD below = static_cast<WORD>(256U - opacity);
  mixRows(top, backdrop, bytes, mixed, [above, below](WORD a, WORD b) {
    const WORD sum = static_cast<WORD>(DWORD{a} * above + DWORD{b} * below);
    return static_cast<BYTE>(sum >> 8);
  });
}

}  // namespace dibkit
