#pragma once

#include <cstring>

#include "dib/palette_table.h"

/// \file
/// Pixel formats as types, one for each depth, so that a loop over pixels is compiled for its depth.

namespace dibkit {

/// A colour without opacity.
struct Rgb {
  BYTE red = 0;
  BYTE green = 0;
  BYTE blue = 0;
  friend bool operator==(const Rgb&, const Rgb&) = default;
};

/// The value modulo 256.
constexpr BYTE lowByte(std::int64_t value) { return static_cast<BYTE>(value & 0xFF); }

/// The colour in a COLORREF: red in the lowest byte, then green, then blue; the top byte is ignored.
constexpr Rgb fromColorRef(DWORD colour) {
  return {lowByte(colour), lowByte(colour >> 8), lowByte(colour >> 16)};
}
/// The colour of a palette entry; its fourth byte is ignored.
constexpr Rgb rgbOf(const RGBQUAD& entry) { return {entry.rgbRed, entry.rgbGreen, entry.rgbBlue}; }

/// Red in bits 16 to 23, green in 8 to 15, blue in 0 to 7: a palette entry read as a little-endian number.
constexpr DWORD packRgb(Rgb colour) {
  return DWORD{colour.red} << 16 | DWORD{colour.green} << 8 | DWORD{colour.blue};
}

/// \name Pixel formats
/// How pixels are stored in a row. `bits` is the depth and `Raw` the type of a stored value. `get` and `put`
/// read and write the raw value of pixel x, which is not checked. `colour` gives the colour of a raw value,
/// and `encode`, in formats without palette, the raw value of a colour.
/// @{

/// An index into the palette: Index1, Index4 and Index8.
template <int bitCount, BYTE (*read)(const BYTE*, int), void (*write)(BYTE*, BYTE, int)>
struct PaletteIndex {
  static constexpr int bits = bitCount;
  using Raw = BYTE;
  static Raw get(const BYTE* row, int x) { return read(row, x); }
  static void put(BYTE* row, int x, Raw value) { write(row, value, x); }
  static Rgb colour(Raw value, const PaletteTable& palette) { return rgbOf(palette[value]); }
};
using Index1 = PaletteIndex<1, Get1BitPixel, Set1BitPixel>;
using Index4 = PaletteIndex<4, Get4BitPixel, Set4BitPixel>;
using Index8 = PaletteIndex<8, Get8BitPixel, Set8BitPixel>;

/// A pixel that is one number, with its lowest byte first.
template <class Number>
struct NumberPixel {
  static constexpr int bits = 8 * static_cast<int>(sizeof(Number));
  using Raw = Number;
  static Raw get(const BYTE* row, int x) {
    Raw value;
    std::memcpy(&value, row + x * std::ptrdiff_t{sizeof(value)}, sizeof(value));
    return value;
  }
  static void put(BYTE* row, int x, Raw value) {
    std::memcpy(row + x * std::ptrdiff_t{sizeof(value)}, &value, sizeof(value));
  }
};

/// [0RRRRRGG GGGBBBBB], always: the masks of a bit-field image are deliberately ignored.
struct Rgb555 : NumberPixel<WORD> {
  /// The five bits become the upper bits of a byte; its low three are 0, so that full white is 248.
  static constexpr Rgb colour(Raw value) {
    return {lowByte((value & 0x7C00) >> 7), lowByte((value & 0x03E0) >> 2), lowByte((value & 0x001F) << 3)};
  }
  static Rgb colour(Raw value, const PaletteTable&) { return colour(value); }
  /// Drops the low three bits of each channel, without rounding.
  static constexpr Raw encode(Rgb colour) {
    return static_cast<Raw>((colour.red & 0xF8) << 7 | (colour.green & 0xF8) << 2 | colour.blue >> 3);
  }
};

/// Bytes of blue, green and red.
struct Bgr24 {
  static constexpr int bits = 24;
  using Raw = Rgb;
  static Raw get(const BYTE* row, int x) {
    const BYTE* pixel = row + std::ptrdiff_t{x} * 3;
    return {pixel[2], pixel[1], pixel[0]};
  }
  static void put(BYTE* row, int x, Raw value) {
    BYTE* pixel = row + std::ptrdiff_t{x} * 3;
    pixel[0] = value.blue;
    pixel[1] = value.green;
    pixel[2] = value.red;
  }
  static constexpr Rgb colour(Raw value) { return value; }
  static Rgb colour(Raw value, const PaletteTable&) { return value; }
  static constexpr Raw encode(Rgb colour) { return colour; }
};

/// Bytes of blue, green, red and alpha: a raw value is 0xAARRGGBB. Operations without alpha ignore it.
struct Bgra32 : NumberPixel<DWORD> {
  static constexpr Rgb colour(Raw value) {
    return {lowByte(value >> 16), lowByte(value >> 8), lowByte(value)};
  }
  static Rgb colour(Raw value, const PaletteTable&) { return colour(value); }
  /// Alpha is 0: or it with 0xFF000000 for an opaque pixel.
  static constexpr Raw encode(Rgb colour) { return packRgb(colour); }
};
/// @}

/// Calls use(format) with the format of a depth, so that a loop knows its depth at compile time.
/// \return use's result; for a depth that has no format a value-initialised one: null, 0 or false
template <class Use>
auto withFormat(int bitCount, Use&& use) -> decltype(use(Index1{})) {
  switch (bitCount) {
    case 1:
      return use(Index1{});
    case 4:
      return use(Index4{});
    case 8:
      return use(Index8{});
    case 16:
      return use(Rgb555{});
    case 24:
      return use(Bgr24{});
    case 32:
      return use(Bgra32{});
    default:
      return decltype(use(Index1{}))();
  }
}

/// Whether a depth is 1, 4, 8, 16, 24 or 32 bits.
inline bool hasFormat(int bitCount) {
  return withFormat(bitCount, [](auto) { return true; });
}

}  // namespace dibkit
