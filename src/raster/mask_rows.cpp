#include "raster/mask_rows.h"

#include <algorithm>
#include <cstring>

#include "dib/pixel_format.h"
#include "platform/bit_rows.h"

namespace dibkit {
namespace {

/// The low `count` bits of a word.
std::uint64_t lowerBits(int count) {
  return count >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << count) - 1;
}

}  // namespace

void fillMaskRow(BYTE* row, int left, int right, bool value) { fillBits(row, left, right, value ? 0xFF : 0); }

void loadMaskRow(const BYTE* row, int width, std::uint64_t* words) {
  for (; width > 0; width -= 64, row += 8, ++words) {
    const int pixels = std::min(64, width);
    std::uint64_t word = 0;
    std::memcpy(&word, row, static_cast<std::size_t>((pixels + 7) / 8));
    *words = mirrorBytes(word) & lowerBits(pixels);
  }
}

void copyRowBits(const BYTE* from, std::int64_t firstBit, std::int64_t count, BYTE* to) {
  copyBits(from, firstBit, to, 0, count);
  fillBits(to, count, (count + 7) / 8 * 8, 0);
}

void copyPixels(int bitCount, const BYTE* from, int fromX, int count, BYTE* to, int toX) {
  withFormat(bitCount, [&](auto format) {
    constexpr std::int64_t bits = decltype(format)::bits;
    copyBits(from, fromX * bits, to, toX * bits, count * bits);
  });
}

}  // namespace dibkit
