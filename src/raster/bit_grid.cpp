#include "raster/bit_grid.h"

#include <bit>
#include <cstring>

namespace dibkit {
namespace {

/// Bits [from, 64) of a word.
std::uint64_t upperBits(int from) { return ~std::uint64_t{0} << from; }

/// Calls change(word, bits) for every word of a row that has pixels of [left, right), with their bits.
template <class Change>
void forEachWord(std::uint64_t* row, int left, int right, Change&& change) {
  if (left >= right) return;
  const int first = left / 64;
  const int last = (right - 1) / 64;
  const std::uint64_t head = upperBits(left % 64);
  const std::uint64_t tail = ~(upperBits((right - 1) % 64) << 1);
  if (first == last) {
    change(row[first], head & tail);
    return;
  }
  change(row[first], head);
  for (int word = first + 1; word < last; ++word) change(row[word], ~std::uint64_t{0});
  change(row[last], tail);
}

}  // namespace

void packFlags(const BYTE* flags, std::size_t words, std::uint64_t* bits) {
  for (std::size_t word = 0; word < words; ++word, flags += 64) {
    std::uint64_t packed = 0;
    for (int group = 0; group < 8; ++group) {
      std::uint64_t eight;
      std::memcpy(&eight, flags + group * 8, sizeof(eight));
      // Moves the low bit of byte i to bit 56 + i: byte i has weight 256^i, the factor holds 2^(56 - 7 i).
      packed |= (eight * 0x0102040810204080U) >> 56 << group * 8;
    }
    bits[word] = packed;
  }
}

int findBit(const std::uint64_t* row, int from, int end, bool set) {
  if (from >= end) return end;
  const std::uint64_t flip = set ? 0 : ~std::uint64_t{0};
  int word = from / 64;
  std::uint64_t bits = (row[word] ^ flip) & upperBits(from % 64);
  while (bits == 0) {
    ++word;
    if (word * 64LL >= end) return end;
    bits = row[word] ^ flip;
  }
  const int found = word * 64 + std::countr_zero(bits);
  return found < end ? found : end;
}

int runStart(const std::uint64_t* row, int x) {
  int word = x / 64;
  // Clear bits below x, the nearest of them on top.
  std::uint64_t clear = ~row[word] << (63 - x % 64);
  if (clear != 0) return x - std::countl_zero(clear) + 1;
  while (word > 0) {
    --word;
    clear = ~row[word];
    if (clear != 0) return word * 64 + 64 - std::countl_zero(clear);
  }
  return 0;
}

void clearBits(std::uint64_t* row, int left, int right) {
  forEachWord(row, left, right, [](std::uint64_t& word, std::uint64_t bits) { word &= ~bits; });
}

void setBits(std::uint64_t* row, int left, int right) {
  forEachWord(row, left, right, [](std::uint64_t& word, std::uint64_t bits) { word |= bits; });
}

}  // namespace dibkit
