#include "dib/index_rows.h"

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

/// Eight bytes to eight bits, the first byte to the most significant bit.
BYTE gatherBits(const BYTE* indexes) {
  unsigned bits = 0;
  for (int x = 0; x < 8; ++x) bits |= (indexes[x] != 0 ? 0x80U : 0U) >> x;
  return lowByte(bits);
}

}  // namespace

void unpackBits(const BYTE* row, int count, BYTE* indexes) {
  int x = 0;
  for (; x + 8 <= count; x += 8) std::memcpy(indexes + x, bitTable.pixels[row[x / 8]], 8);
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

void packBits(const BYTE* indexes, int count, BYTE* row) {
  int x = 0;
  for (; x + 8 <= count; x += 8) row[x / 8] = gatherBits(indexes + x);
  for (; x < count; ++x) Set1BitPixel(row, indexes[x], x);
}

void packNibbles(const BYTE* indexes, int count, BYTE* row) {
  const int pairs = count / 2;
  // The odd pixel comes second, so bits of its that do not fit in a nibble end up in its neighbour.
  for (int i = 0; i < pairs; ++i) row[i] = static_cast<BYTE>(indexes[2 * i] << 4 | indexes[2 * i + 1]);
  if (count % 2 != 0) Set4BitPixel(row, indexes[count - 1], count - 1);
}

}  // namespace dibkit
