#pragma once

#include "dib/pixel_format.h"

namespace dibkit {

/// A pixel of a 32-bit image, in its order in memory.
struct Bgra {
  BYTE blue = 0;
  BYTE green = 0;
  BYTE red = 0;
  BYTE alpha = 0;
  friend bool operator==(const Bgra&, const Bgra&) = default;
};
static_assert(sizeof(Bgra) == 4 && alignof(Bgra) == 1);

constexpr Bgra withAlpha(Rgb colour, BYTE alpha) { return {colour.blue, colour.green, colour.red, alpha}; }

/// The pixels of a row of a 32-bit view. All members are bytes, which may alias any memory.
inline Bgra* pixelsOf(BYTE* row) { return reinterpret_cast<Bgra*>(row); }
inline const Bgra* pixelsOf(const BYTE* row) { return reinterpret_cast<const Bgra*>(row); }
inline BYTE* bytesOf(Bgra* row) { return reinterpret_cast<BYTE*>(row); }
inline const BYTE* bytesOf(const Bgra* row) { return reinterpret_cast<const BYTE*>(row); }

/// \name Pixels as numbers 0xAARRGGBB
/// Loops over whole pixels vectorise on these, not on structures.
/// @{
inline DWORD wordAt(const Bgra* row, int x) { return Bgra32::get(reinterpret_cast<const BYTE*>(row), x); }
inline void putWord(Bgra* row, int x, DWORD word) { Bgra32::put(reinterpret_cast<BYTE*>(row), x, word); }
constexpr DWORD colourBits = 0x00FFFFFF;
/// @}

/// What the alphas of some pixels have in common; translucent when some are neither 0 nor 255.
enum class AlphaKind { opaque, opaqueOrTransparent, translucent };

/// Examines all pixels, without a branch for each. An empty range counts as opaque.
inline AlphaKind alphaKindOf(const Bgra* pixels, int count) {
  DWORD all = ~DWORD{0};
  DWORD translucent = 0;
  for (int x = 0; x < count; ++x) {
    all &= wordAt(pixels, x);
    // (alpha + 1) has bits 1 to 7 clear only for the alphas 0 and 255.
    translucent |= wordAt(pixels, x) + 0x01000000;
  }
  if (translucent >= 0x02000000) return AlphaKind::translucent;
  return all > 0xFEFFFFFF ? AlphaKind::opaque : AlphaKind::opaqueOrTransparent;
}

/// Brightness on a scale of 0 to 255; the weights sum to 1024.
constexpr int luminance(const Bgra& pixel) {
  return (117 * pixel.blue + 601 * pixel.green + 306 * pixel.red) >> 10;
}

}  // namespace dibkit
