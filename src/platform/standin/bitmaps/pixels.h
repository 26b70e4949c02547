#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "platform/win32.h"

namespace dibkit::standin {

/// A colour, 0xRRGGBB: an RGBQUAD read as a number.
using Colour = DWORD;
constexpr Colour colourOf(COLORREF value) {
  return (value & 0xFF) << 16 | (value & 0xFF00) | (value >> 16 & 0xFF);
}
constexpr COLORREF colorRefOf(Colour colour) { return colourOf(colour); }

inline constexpr Colour black = 0;
inline constexpr Colour white = 0xFFFFFF;

constexpr bool isPixelDepth(int bitCount) {
  return bitCount == 1 || bitCount == 4 || bitCount == 8 || bitCount == 16 || bitCount == 24 ||
         bitCount == 32;
}

/// The pixel rows of a bitmap or of a caller's DIB, not owned. `raw` means a pixel as it is stored: an index,
/// a word, 0xRRGGBB or all four bytes.
struct Pixels {
  BYTE* top = nullptr;       ///< first byte of the top row
  std::ptrdiff_t below = 0;  ///< bytes from a row to the one below it in the picture
  int width = 0;
  int height = 0;
  int bitCount = 0;
  bool sixGreenBits = false;        ///< 16 bits: 5-6-5 instead of 5-5-5
  std::span<const Colour> colours;  ///< up to 8 bits: one for every index

  BYTE* row(int y) const { return top + y * below; }
  RECT bounds() const { return {0, 0, width, height}; }

  DWORD rawAt(int x, int y) const;
  void setRaw(int x, int y, DWORD raw) const { fill({x, y, x + 1, y + 1}, raw); }
  /// Stores the same pixel in a rectangle, which is inside.
  void fill(const RECT& rect, DWORD raw) const;

  Colour colourOfRaw(DWORD raw) const;
  /// The pixel nearest to a colour. With a colour table that is the entry with the smallest sum of squared
  /// differences, the first of several; 16 bits have the top bits of each channel.
  DWORD rawOfColour(Colour colour) const;

  /// The raw pixels of a row, from column x on.
  void read(int x, int y, std::span<DWORD> raw) const;
  void write(int x, int y, std::span<const DWORD> raw) const;
};

/// The colour tables of bitmaps that have none of their own.
/// @{
inline constexpr std::array<Colour, 2> monochromeColours{black, white};
inline constexpr std::array<Colour, 16> systemColours16{
    0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080, 0x008080, 0x808080,
    0xC0C0C0, 0xFF0000, 0x00FF00, 0xFFFF00, 0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF};
/// Ten fixed colours at each end, and a cube of 8 reds, 8 greens and 4 blues between them.
const std::array<Colour, 256>& systemColours256();
/// The table of a depth; empty above 8 bits.
std::span<const Colour> systemColours(int bitCount);
/// @}

}  // namespace dibkit::standin
