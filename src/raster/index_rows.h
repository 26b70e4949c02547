#pragma once

#include "dib/pixel_format.h"

/// \file
/// Rows of palette indexes unpacked to one byte a pixel, and packed again, so that what happens to an index
/// is written once for 1, 4 and 8 bits.

namespace dibkit {

/// How many pixels are unpacked at a time, in a buffer on the stack: whole bytes at every depth.
constexpr int indexChunk = 512;

/// Calls use(left, count) for the chunks of a row from the left.
template <class Use>
void forEachChunk(int width, Use&& use) {
  for (int left = 0; left < width; left += indexChunk) {
    use(left, width - left < indexChunk ? width - left : indexChunk);
  }
}

/// \name What a pixel stores of an index
/// That is the index itself as long as the depth can hold it. The operations differ in what they make of any
/// other index, and hosts rely on each of these results.
/// @{

/// Of an exact reduction: the low bits, but in one bit only index 1 is stored as 1.
constexpr BYTE storedLowBits(int bitCount, int index) {
  return bitCount == 1 ? BYTE{index == 1} : lowByte(index & ((1 << bitCount) - 1));
}
/// Of a map's palette: the low byte, which packNibbles does not mask, and in one bit whether the index is not
/// 0.
constexpr BYTE storedLowByte(int bitCount, std::int64_t index) {
  return bitCount == 1 ? BYTE{index != 0} : lowByte(index);
}
/// Of a change of depth: the same, but in one bit whether the index is positive.
constexpr BYTE storedPositive(int bitCount, std::int64_t index) {
  return bitCount == 1 ? BYTE{index > 0} : lowByte(index);
}
/// @}

/// Unpacks `count` pixels to one byte each; `row` points to the byte that holds the first one.
void unpackBits(const BYTE* row, int count, BYTE* indexes);
void unpackNibbles(const BYTE* row, int count, BYTE* indexes);

/// Stores one pixel for each byte: a bit that is set where the byte is at least `level`, which at 1 means any
/// value but 0. The other bits of the row's last byte are unchanged.
void packBits(const BYTE* bytes, int count, BYTE* row, BYTE level = 1);

/// Stores one pixel for each byte as Set4BitPixel does: a value above 15 is not masked.
void packNibbles(const BYTE* indexes, int count, BYTE* row);

/// The indexes of `count` <= indexChunk pixels from column `left` on, a multiple of 8.
/// \return `buffer`, or a place in the row itself at 8 bits
template <class Format>
const BYTE* indexesAt(const BYTE* row, int left, int count, BYTE* buffer) {
  const BYTE* first = row + left / 8 * Format::bits;
  if constexpr (Format::bits == 8) {
    return first;
  } else {
    Format::bits == 4 ? unpackNibbles(first, count, buffer) : unpackBits(first, count, buffer);
    return buffer;
  }
}

/// Stores the indexes of `count` pixels from column `left` on, a multiple of 8.
template <class Format>
void storeIndexes(const BYTE* indexes, int left, int count, BYTE* row) {
  BYTE* first = row + left / 8 * Format::bits;
  if constexpr (Format::bits == 8) {
    std::memcpy(first, indexes, static_cast<std::size_t>(count));
  } else {
    Format::bits == 4 ? packNibbles(indexes, count, first) : packBits(indexes, count, first);
  }
}

}  // namespace dibkit
