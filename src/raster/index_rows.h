#pragma once

#include "dib/pixel_format.h"

/// \file
/// Rows of palette indexes taken apart into one byte a pixel, and put together again, so that what happens to
/// an index is written once for 1, 4 and 8 bits.

namespace dibkit {

/// How many pixels are taken apart at a time, in a buffer on the stack: whole bytes at every depth.
constexpr int indexChunk = 512;

/// Takes `count` pixels apart, one byte each; `row` points to the byte that holds the first one.
void unpackBits(const BYTE* row, int count, BYTE* indexes);
void unpackNibbles(const BYTE* row, int count, BYTE* indexes);

/// Stores one pixel for each byte: a bit that is set where the byte is at least `level`, which at 1 means any
/// value but 0. What else the row's last byte holds stays.
void packBits(const BYTE* bytes, int count, BYTE* row, BYTE level = 1);

/// Stores one pixel for each byte as Set4BitPixel does: a value above 15 is not masked.
void packNibbles(const BYTE* indexes, int count, BYTE* row);

/// The indexes of `count` <= indexChunk pixels from column `left` on, a multiple of 8.
/// \return `buffer`, or the row itself when it holds bytes anyway
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
