#pragma once

#include <memory>

#include "dib/framework.h"
#include "dib/progress.h"
#include "platform/export.h"
#include "platform/win32.h"

/// \file
/// The packed DIB: one block that holds a BITMAPINFOHEADER, the three colour masks of a BI_BITFIELDS image,
/// the palette of an image of at most 8 bits, and the pixel rows from the bottom line of the picture to the
/// top one, each padded to a multiple of 4 bytes. Heights are positive.

/// Number of palette entries of a packed DIB: biClrUsed, or all that the depth can index when that is 0. An
/// image of more than 8 bits has no palette whatever biClrUsed says.
inline DWORD GetDIBPaletteSize(const BITMAPINFOHEADER* dib) {
  if (dib->biBitCount > 8) return 0;
  return dib->biClrUsed != 0 ? dib->biClrUsed : DWORD{1} << dib->biBitCount;
}

/// First byte of the pixel rows, which is the left end of the picture's bottom line. Counts from the header's
/// own size field, so longer headers work too.
inline BYTE* GetDIBBits(BITMAPINFOHEADER* dib) {
  std::size_t offset = dib->biSize;
  if (dib->biCompression == BI_BITFIELDS) offset += 3 * sizeof(DWORD);
  offset += std::size_t{GetDIBPaletteSize(dib)} * sizeof(RGBQUAD);
  return reinterpret_cast<BYTE*>(dib) + offset;
}
inline const BYTE* GetDIBBits(const BITMAPINFOHEADER* dib) {
  return GetDIBBits(const_cast<BITMAPINFOHEADER*>(dib));
}

/// \name Pixels of one row
/// `row` points to the first byte of the row, x counts from its left end.
/// @{

/// 1 when pixel x of a 1-bit row is set, else 0; the most significant bit is the leftmost pixel.
inline BYTE Get1BitPixel(const BYTE* row, int x) { return static_cast<BYTE>(row[x / 8] >> (7 - x % 8) & 1); }

/// Sets pixel x of a 1-bit row when value is not 0, clears it otherwise.
inline void Set1BitPixel(BYTE* row, BYTE value, int x) {
  const BYTE bit = static_cast<BYTE>(0x80 >> x % 8);
  row[x / 8] = static_cast<BYTE>(value != 0 ? row[x / 8] | bit : row[x / 8] & ~bit);
}

/// Index at x of a 4-bit row: even columns lie in the high nibble.
inline BYTE Get4BitPixel(const BYTE* row, int x) {
  return static_cast<BYTE>(x % 2 != 0 ? row[x / 2] & 15 : row[x / 2] >> 4);
}

/// Stores an index of 0 to 15 at x of a 4-bit row. The value is not masked on purpose: a larger one spills
/// into the neighbour's nibble at an odd x and loses its high bits at an even one.
inline void Set4BitPixel(BYTE* row, BYTE value, int x) {
  BYTE& pair = row[x / 2];
  pair = static_cast<BYTE>(x % 2 != 0 ? (pair & 0xF0) | value : pair % 16 + value * 16);
}

inline BYTE Get8BitPixel(const BYTE* row, int x) { return row[x]; }
inline void Set8BitPixel(BYTE* row, BYTE value, int x) { row[x] = value; }
/// @}

/// Allocation of packed DIBs. Every image is a block from the array form of new, owned by whoever receives it
/// and released with `delete[] reinterpret_cast<BYTE*>(image)` (dibkit::OwnedDib does that).
class DIBKIT_API CBitmapCreator {
 public:
  CBitmapCreator() {}
  CBitmapCreator& operator=(const CBitmapCreator&) { return *this; }

  /// A new image with black palette and all pixels 0, uncompressed; its biSizeImage stays 0.
  /// \param width,height in pixels; 0 gives an image without pixels
  /// \param bitCount bits a pixel
  /// \param clrUsed palette entries of an image of at most 8 bits; below 1 a full palette and biClrUsed 0
  /// \return the image, or null when a size is negative, the block would pass 2 GiB, or memory runs out
  static BITMAPINFOHEADER* CreateDibImage(int width, int height, int bitCount, int clrUsed);

  /// A copy of the whole block: header, masks, palette and rows.
  /// \return the copy, or null for a null image, an unusable header, or when memory runs out
  static BITMAPINFOHEADER* Clone(const BITMAPINFOHEADER* dib);
};

namespace dibkit {

/// Releases a packed DIB in the way that it was allocated.
struct DibDeleter {
  void operator()(BITMAPINFOHEADER* dib) const noexcept { delete[] reinterpret_cast<BYTE*>(dib); }
};

/// Sole owner of a packed DIB.
using OwnedDib = std::unique_ptr<BITMAPINFOHEADER, DibDeleter>;

/// Releases a region.
struct RegionDeleter {
  using pointer = HRGN;
  void operator()(HRGN region) const noexcept { DeleteObject(region); }
};

/// Sole owner of a region.
using OwnedRegion = std::unique_ptr<HRGN, RegionDeleter>;

}  // namespace dibkit
