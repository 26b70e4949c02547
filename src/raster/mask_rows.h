#pragma once

#include <cstdint>

#include "platform/win32.h"

/// \file
/// Rows of 1-bit images, in which the most significant bit of a byte is the leftmost pixel, handled in runs
/// and words instead of pixels.

namespace dibkit {

/// Mirrors the bits inside every byte of a word.
constexpr std::uint64_t mirrorBytes(std::uint64_t word) {
  word = (word >> 1 & 0x5555555555555555U) | (word & 0x5555555555555555U) << 1;
  word = (word >> 2 & 0x3333333333333333U) | (word & 0x3333333333333333U) << 2;
  return (word >> 4 & 0x0F0F0F0F0F0F0F0FU) | (word & 0x0F0F0F0F0F0F0F0FU) << 4;
}

/// Sets the pixels of [left, right) to `value`.
void fillMaskRow(BYTE* row, int left, int right, bool value);

/// Gives the first `width` pixels as BitGrid holds them: bit x mod 64 of word x / 64 is pixel x, bits beyond
/// the width are 0. Reads no byte beyond the one that holds the last pixel.
void loadMaskRow(const BYTE* row, int width, std::uint64_t* words);

/// Copies `count` bits from bit `firstBit` of a row, counted from its left end, to the left end of another;
/// the bits that follow in the last byte written become 0. For pixels of any depth.
void copyRowBits(const BYTE* from, std::int64_t firstBit, std::int64_t count, BYTE* to);

/// Copies `count` stored pixels of a depth that has a format from column `fromX` of a row to column `toX` of
/// another, whose other pixels are unchanged.
void copyPixels(int bitCount, const BYTE* from, int fromX, int count, BYTE* to, int toX);

}  // namespace dibkit
