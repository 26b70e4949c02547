#include "dib/index_rows.h"

#include <bit>

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

static_assert(std::endian::native == std::endian::little);

/// Eight bytes, each 0 or 1, to eight bits, the first byte to the most significant one. The multiplication
/// adds bit 8i shifted to bit 63 - i for every i; no two of its partial products meet, so nothing carries.
BYTE gatherBits(const BYTE* flags) {
  std::uint64_t bytes = 0;
  std::memcpy(&bytes, flags, sizeof(bytes));
  return static_cast<BYTE>(bytes * 0x8040201008040201U >> 56);
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
  BYTE flags[64];
  int x = 0;
  for (; x + 64 <= count; x += 64) {
    for (int i = 0; i < 64; ++i) flags[i] = indexes[x + i] != 0;
    for (int i = 0; i < 64; i += 8) row[(x + i) / 8] = gatherBits(flags + i);
  }
  for (; x < count; ++x) Set1BitPixel(row, indexes[x], x);
}

void packNibbles(const BYTE* indexes, int count, BYTE* row) {
  const int pairs = count / 2;
  // The odd pixel comes second, so bits of its that do not fit in a nibble end up in its neighbour.
  for (int i = 0; i < pairs; ++i) row[i] = static_cast<BYTE>(indexes[2 * i] << 4 | indexes[2 * i + 1]);
  if (count % 2 != 0) Set4BitPixel(row, indexes[count - 1], count - 1);
}

}  // namespace dibkit
