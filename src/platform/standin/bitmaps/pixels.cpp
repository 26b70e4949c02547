#include "platform/standin/bitmaps/pixels.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <type_traits>

#include "platform/bit_rows.h"

namespace dibkit::standin {

namespace {

/// Calls use(i, byte, shift) for `count` pixels from x on of a row with several pixels in a byte: pixel i is
/// in that byte, `shift` bits above its low end.
template <class Use>
void forEachPacked(int bitCount, int x, std::size_t count, Use&& use) {
  for (std::size_t i = 0; i < count; ++i) {
    const auto bit = (static_cast<std::size_t>(x) + i) * static_cast<std::size_t>(bitCount);
    use(i, bit / 8, 8 - bitCount - static_cast<int>(bit % 8));
  }
}

/// Five or six bits of a channel as eight, so that the largest value becomes 255.
constexpr DWORD widened(DWORD value, int bits) { return value << (8 - bits) | value >> (2 * bits - 8); }

/// Calls use(bytes) with the bytes of a pixel of at least 8 bits as a compile-time constant, so that loops
/// copy pixels without a call.
template <class Use>
void withPixelBytes(int bitCount, Use&& use) {
  switch (bitCount) {
    case 8:
      return use(std::integral_constant<std::size_t, 1>{});
    case 16:
      return use(std::integral_constant<std::size_t, 2>{});
    case 24:
      return use(std::integral_constant<std::size_t, 3>{});
    default:
      return use(std::integral_constant<std::size_t, 4>{});
  }
}

}  // namespace

DWORD Pixels::rawAt(int x, int y) const {
  DWORD raw = 0;
  read(x, y, {&raw, 1});
  return raw;
}

void Pixels::read(int x, int y, std::span<DWORD> raw) const {
  const BYTE* from = row(y);
  if (bitCount < 8) {
    const int mask = (1 << bitCount) - 1;
    forEachPacked(bitCount, x, raw.size(), [&](std::size_t i, std::size_t byte, int shift) {
      raw[i] = static_cast<DWORD>(from[byte] >> shift & mask);
    });
    return;
  }
  withPixelBytes(bitCount, [&](auto bytes) {
    from += static_cast<std::size_t>(x) * bytes;
    for (DWORD& pixel : raw) {
      pixel = 0;
      std::memcpy(&pixel, from, bytes);
      from += bytes;
    }
  });
}

void Pixels::write(int x, int y, std::span<const DWORD> raw) const {
  BYTE* to = row(y);
  if (bitCount < 8) {
    const int mask = (1 << bitCount) - 1;
    forEachPacked(bitCount, x, raw.size(), [&](std::size_t i, std::size_t byte, int shift) {
      to[byte] = static_cast<BYTE>((to[byte] & ~(mask << shift)) | static_cast<int>(raw[i]) << shift);
    });
    return;
  }
  withPixelBytes(bitCount, [&](auto bytes) {
    to += static_cast<std::size_t>(x) * bytes;
    for (const DWORD pixel : raw) {
      std::memcpy(to, &pixel, bytes);
      to += bytes;
    }
  });
}

void Pixels::fill(const RECT& rect, DWORD raw) const {
  if (IsRectEmpty(&rect)) return;
  if (bitCount < 8) {
    // A byte of such pixels.
    const auto pattern = static_cast<BYTE>(bitCount == 1 ? raw * 0xFF : raw * 0x11);
    for (int y = rect.top; y < rect.bottom; ++y) {
      fillBits(row(y), std::int64_t{rect.left} * bitCount, std::int64_t{rect.right} * bitCount, pattern);
    }
    return;
  }
  withPixelBytes(bitCount, [&](auto bytes) {
    const std::size_t start = static_cast<std::size_t>(rect.left) * bytes;
    const auto count = static_cast<std::size_t>(rect.right - rect.left);
    BYTE* const first = row(rect.top) + start;
    for (std::size_t i = 0; i < count; ++i) std::memcpy(first + i * bytes, &raw, bytes);
    for (int y = rect.top + 1; y < rect.bottom; ++y) std::memcpy(row(y) + start, first, count * bytes);
  });
}

Colour Pixels::colourOfRaw(DWORD raw) const {
  if (bitCount <= 8) return raw < colours.size() ? colours[raw] : black;
  if (bitCount != 16) return raw & white;
  if (sixGreenBits) {
    return widened(raw >> 11 & 31, 5) << 16 | widened(raw >> 5 & 63, 6) << 8 | widened(raw & 31, 5);
  }
  return widened(raw >> 10 & 31, 5) << 16 | widened(raw >> 5 & 31, 5) << 8 | widened(raw & 31, 5);
}

DWORD Pixels::rawOfColour(Colour colour) const {
  if (bitCount == 16 && sixGreenBits) {
    return (colour >> 8 & 0xF800) | (colour >> 5 & 0x07E0) | (colour >> 3 & 0x001F);
  }
  if (bitCount == 16) return (colour >> 9 & 0x7C00) | (colour >> 6 & 0x03E0) | (colour >> 3 & 0x001F);
  if (bitCount > 8) return colour;
  const auto channel = [](Colour of, int shift) { return static_cast<int>(of >> shift & 255); };
  const int red = channel(colour, 16);
  const int green = channel(colour, 8);
  const int blue = channel(colour, 0);
  // A distance takes 18 bits. With the index in the low bits one minimum finds the nearest entry, of several
  // the first, without a branch that depends on colours.
  int best = std::numeric_limits<int>::max() & ~0xFF;
  const int count = static_cast<int>(colours.size());
  for (int i = 0; i < count; ++i) {
    const Colour entry = colours[static_cast<std::size_t>(i)];
    const int r = channel(entry, 16) - red;
    const int g = channel(entry, 8) - green;
    const int b = channel(entry, 0) - blue;
    best = std::min(best, (r * r + g * g + b * b) << 8 | i);
  }
  return static_cast<DWORD>(best) & 0xFF;
}

const std::array<Colour, 256>& systemColours256() {
  static constexpr std::array<Colour, 256> table = [] {
    constexpr std::array<Colour, 10> first{0x000000, 0x800000, 0x008000, 0x808000, 0x000080,
                                           0x800080, 0x008080, 0xC0C0C0, 0xC0DCC0, 0xA6CAF0};
    constexpr std::array<Colour, 10> last{0xFFFBF0, 0xA0A0A4, 0x808080, 0xFF0000, 0x00FF00,
                                          0xFFFF00, 0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF};
    std::array<Colour, 256> colours{};
    for (Colour i = 0; i < 256; ++i) colours[i] = (i & 7) << 21 | (i >> 3 & 7) << 13 | (i >> 6) << 6;
    std::copy(first.begin(), first.end(), colours.begin());
    std::copy(last.begin(), last.end(), colours.end() - 10);
    return colours;
  }();
  return table;
}

std::span<const Colour> systemColours(int bitCount) {
  switch (bitCount) {
    case 1:
      return monochromeColours;
    case 4:
      return systemColours16;
    case 8:
      return systemColours256();
    default:
      return {};
  }
}

}  // namespace dibkit::standin
