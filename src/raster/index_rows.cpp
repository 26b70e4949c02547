#include "raster/index_rows.h"

#include <bit>

#include "raster/mask_rows.h"

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#endif

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

/// One bit for each of eight bytes, set where the byte is at least `level`, the first one's the most
/// significant.
BYTE bitsOfEight(const BYTE* bytes, BYTE level) {
  BYTE flags[8];
  for (int i = 0; i < 8; ++i) flags[i] = bytes[i] >= level;
  std::uint64_t word = 0;
  std::memcpy(&word, flags, sizeof(word));
  // Adds bit 8i shifted to bit 63 - i for every i; no two of the partial products meet, so nothing carries.
  return static_cast<BYTE>(word * 0x8040201008040201U >> 56);
}

#if defined(__SSE2__) || defined(_M_X64)
/// The same for 64 bytes, each group of eight to one byte of the word.
std::uint64_t bitsOf64(const BYTE* bytes, BYTE level) {
  const __m128i levels = _mm_set1_epi8(static_cast<char>(level));
  std::uint64_t bits = 0;
  for (int i = 0; i < 4; ++i) {
    const __m128i sixteen = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes) + i);
    const __m128i reached = _mm_cmpeq_epi8(_mm_max_epu8(sixteen, levels), sixteen);
    bits |= static_cast<std::uint64_t>(_mm_movemask_epi8(reached)) << 16 * i;
  }
  return mirrorBytes(bits);
}
#endif

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
  int x = 0;
#if defined(__SSE2__) || defined(_M_X64)
  for (; count - x >= 64; x += 64) {
    const std::uint64_t bits = bitsOf64(bytes + x, level);
    std::memcpy(row + x / 8, &bits, sizeof(bits));
  }
#endif
  for (; count - x >= 8; x += 8) row[x / 8] = bitsOfEight(bytes + x, level);
  for (; x < count; ++x) Set1BitPixel(row, bytes[x] >= level, x);
}

void packNibbles(const BYTE* indexes, int count, BYTE* row) {
  const int pairs = count / 2;
  // Bits of an odd pixel that do not fit in its nibble end up in the neighbour's, on purpose.
  for (int i = 0; i < pairs; ++i) row[i] = static_cast<BYTE>(indexes[2 * i] << 4 | indexes[2 * i + 1]);
  if (count % 2 != 0) Set4BitPixel(row, indexes[count - 1], count - 1);
}

}  // namespace dibkit
