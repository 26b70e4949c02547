#include "frames/mix.h"

#include <cstring>

namespace dibkit {
namespace {

template <class Rule>
void mixRows(const BYTE* top, const BYTE* under, std::size_t bytes, BYTE* mixed, Rule&& rule) {
  // By way of a buffer of its own, so that the compiler need not fear that the rows overlap.
  constexpr std::size_t block = 64;
  std::size_t i = 0;
  for (; i + block <= bytes; i += block) {
    BYTE buffer[block];
    for (std::size_t k = 0; k < block; ++k) buffer[k] = rule(top[i + k], under[i + k]);
    std::memcpy(mixed + i, buffer, block);
  }
  for (; i < bytes; ++i) mixed[i] = rule(top[i], under[i]);
}

}  // namespace

void mixByByteOpacity(const BYTE* top, const BYTE* under, std::size_t bytes, BYTE opacity, BYTE* mixed) {
  const WORD above = opacity;
  const WORD below = static_cast<WORD>(255 - opacity);
  mixRows(top, under, bytes, mixed, [above, below](WORD a, WORD u) {
    const WORD sum = static_cast<WORD>(a * above + u * below);
    // sum / 255, exact up to 65025, in 16 bits.
    return static_cast<BYTE>(static_cast<WORD>(sum + 1 + (sum >> 8)) >> 8);
  });
}

void mixByWordOpacity(const BYTE* top, const BYTE* under, std::size_t bytes, WORD opacity, BYTE* mixed) {
  // Only bits 8 to 15 of the sum count, so that it may wrap in 16 bits.
  const WORD above = opacity;
  const WORD below = static_cast<WORD>(256U - opacity);
  mixRows(top, under, bytes, mixed, [above, below](WORD a, WORD u) {
    const WORD sum = static_cast<WORD>(DWORD{a} * above + DWORD{u} * below);
    return static_cast<BYTE>(sum >> 8);
  });
}

}  // namespace dibkit
