#include "raster/mask_rows.h"

#include <algorithm>
#include <cstring>

#include "dib/pixel_format.h"

namespace dibkit {
namespace {

/// The low `count` bits of a word.
std::uint64_t lowerBits(int count) {
  return count >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << count) - 1;
}

}  // namespace

void fillMaskRow(BYTE* row, int left, int right, bool value) {
  if (left >= right) return;
  const int first = left / 8;
  const int last = (right - 1) / 8;
  const int head = 0xFF >> left % 8;
  const int tail = 0xFF << (7 - (right - 1) % 8) & 0xFF;
  const auto put = [&](int at, int bits) {
    row[at] = static_cast<BYTE>(value ? row[at] | bits : row[at] & ~bits);
  };
  if (first == last) {
    put(first, head & tail);
    return;
  }
  put(first, head);
  std::memset(row + first + 1, value ? 0xFF : 0, static_cast<std::size_t>(last - first - 1));
  put(last, tail);
}

void loadMaskRow(const BYTE* row, int width, std::uint64_t* words) {
  for (; width > 0; width -= 64, row += 8, ++words) {
    const int pixels = std::min(64, width);
    std::uint64_t word = 0;
    std::memcpy(&word, row, static_cast<std::size_t>((pixels + 7) / 8));
    *words = mirrorBytes(word) & lowerBits(pixels);
  }
}

void copyRowBits(const BYTE* from, std::int64_t firstBit, std::int64_t count, BYTE* to) {
  if (count <= 0) return;
  from += firstBit / 8;
  const int shift = static_cast<int>(firstBit % 8);
  const std::int64_t bytes = (count + 7) / 8;
  if (shift == 0) {
    std::memcpy(to, from, static_cast<std::size_t>(bytes));
  } else {
    // Every byte but the last takes bits from two bytes.
    for (std::int64_t i = 0; i + 1 < bytes; ++i) {
      to[i] = static_cast<BYTE>(from[i] << shift | from[i + 1] >> (8 - shift));
    }
    int last = from[bytes - 1] << shift;
    if ((bytes - 1) * 8 + 8 - shift < count) last |= from[bytes] >> (8 - shift);
    to[bytes - 1] = static_cast<BYTE>(last);
  }
  if (count % 8 != 0) to[bytes - 1] = static_cast<BYTE>(to[bytes - 1] & 0xFF << (8 - count % 8));
}

void copyPixels(int bitCount, const BYTE* from, int fromX, int count, BYTE* to, int toX) {
  withFormat(bitCount, [&](auto format) {
    using Format = decltype(format);
    constexpr std::int64_t bits = Format::bits;
    int done = 0;
    if (toX * bits % 8 == 0) {
      done = static_cast<int>(count * bits / 8 * 8 / bits);  // what fills whole bytes
      copyRowBits(from, fromX * bits, done * bits, to + toX * bits / 8);
    }
    for (; done < count; ++done) Format::put(to, toX + done, Format::get(from, fromX + done));
  });
}

}  // namespace dibkit
