#include "raster/index_rows.h"

#include "kernels/match.h"

namespace dibkit {
namespace {

/// For every byte its eight bits as bytes 0 or 1 in memory order, the most significant bit first.
struct BitTable {
  BYTE pixels[256][8];
  constexpr BitTable() : pixels{} {
    for (int byte = 0; byte < 256; ++byte) {
      for (int x = 0; x < 8; ++x) pixels[byte][x] = lowByte(byte >> (7 - x) & 1);
    }
  }
};
constexpr BitTable bitTable;

}  // namespace

void unpackBits(const BYTE* row, int count, BYTE* indexes) {
  int x = 0;
  for (; count - x >= 8; x += 8) std::memcpy(indexes + x, bitTable.pixels[row[x / 8]], 8);
  for (; x < count; ++x) indexes[x] = Get1BitPixel(row, x);
}

void unpackNibbles(const BYTE* row, int count, BYTE* indexes) {
  const int pairs = count / 2;
  for (int i = 0; i < pairs; ++i) {
    indexes[2 * i] = static_cast<BYTE>(row[i] >> 4);
    indexes[2 * i + 1] = static_cast<BYTE>(row[i] & 15);
  }
  if (count % 2 != 0) indexes[count - 1] = Get4BitPixel(row, count - 1);
}

void packBits(const BYTE* bytes, int count, BYTE* row, BYTE level) {
  const int whole = count / 8 * 8;
  kernels<MatchKernels>().atLeast(bytes, whole, level, row);
  for (int x = whole; x < count; ++x) Set1BitPixel(row, bytes[x] >= level, x);
}

void packNibbles(const BYTE* indexes, int count, BYTE* row) {
  const int pairs = count / 2;
  // Bits of an odd pixel that do not fit in its nibble end up in the neighbour's, on purpose.
  for (int i = 0; i < pairs; ++i) row[i] = static_cast<BYTE>(indexes[2 * i] << 4 | indexes[2 * i + 1]);
  if (count % 2 != 0) Set4BitPixel(row, indexes[count - 1], count - 1);
}

}  // namespace dibkit
