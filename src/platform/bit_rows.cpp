#include "platform/bit_rows.h"

#include <algorithm>
#include <cstring>

namespace dibkit {
namespace {

/// Stores the bits of `value` that `mask` has.
void put(BYTE& byte, int value, int mask) { byte = static_cast<BYTE>((byte & ~mask) | (value & mask)); }

}  // namespace

void fillBits(BYTE* row, std::int64_t begin, std::int64_t end, BYTE pattern) {
  if (begin >= end) return;
  const std::int64_t first = begin / 8;
  const std::int64_t last = (end - 1) / 8;
  const int head = 0xFF >> begin % 8;
  const int tail = 0xFF << (7 - (end - 1) % 8);
  if (first == last) {
    put(row[first], pattern, head & tail);
    return;
  }
  put(row[first], pattern, head);
  std::memset(row + first + 1, pattern, static_cast<std::size_t>(last - first - 1));
  put(row[last], pattern, tail);
}

void copyBits(const BYTE* from, std::int64_t fromBit, BYTE* to, std::int64_t toBit, std::int64_t count,
              BYTE flip) {
  if (count <= 0) return;
  to += toBit / 8;
  // Up to eight bits of the source, in the high bits.
  const auto bitsAt = [from](std::int64_t bit, std::int64_t wanted) {
    const int shift = static_cast<int>(bit % 8);
    int bits = from[bit / 8] << shift;
    if (shift + wanted > 8) bits |= from[bit / 8 + 1] >> (8 - shift);
    return bits & 0xFF;
  };
  const auto putPart = [&](int offset, std::int64_t bits) {
    put(*to, (bitsAt(fromBit, bits) >> offset) ^ flip, (0xFF << (8 - bits) & 0xFF) >> offset);
    fromBit += bits;
    count -= bits;
  };
  if (const int offset = static_cast<int>(toBit % 8); offset != 0) {
    putPart(offset, std::min<std::int64_t>(8 - offset, count));
    ++to;
  }
  const std::int64_t bytes = count / 8;
  const BYTE* whole = from + fromBit / 8;
  const int shift = static_cast<int>(fromBit % 8);
  if (shift == 0 && flip == 0) {
    if (bytes > 0) std::memcpy(to, whole, static_cast<std::size_t>(bytes));
  } else if (shift == 0) {
    for (std::int64_t i = 0; i < bytes; ++i) to[i] = static_cast<BYTE>(whole[i] ^ flip);
  } else {
    for (std::int64_t i = 0; i < bytes; ++i) {
      to[i] = static_cast<BYTE>((whole[i] << shift | whole[i + 1] >> (8 - shift)) ^ flip);
    }
  }
  to += bytes;
  fromBit += bytes * 8;
  count -= bytes * 8;
  if (count > 0) putPart(0, count);
}

}  // namespace dibkit
