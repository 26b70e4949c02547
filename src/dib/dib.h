#pragma once

#include <cstddef>

#include "dib/framework.h"
#include "dib/owned.h"
#include "dib/progress.h"
#include "platform/export.h"
#include "platform/win32.h"

/// \file
/// The packed DIB, which every image is: one block that holds
///
/// | part | bytes |
/// |---|---|
/// | BITMAPINFOHEADER | biSize, at least 40 |
/// | masks of red, green and blue | 12 if biCompression is BI_BITFIELDS, else none |
/// | palette, entries of blue, green, red, 0 | 4 x GetDIBPaletteSize(dib) |
/// | pixel rows, the picture's bottom line first | each biWidth x biBitCount / 8, up to a multiple of 4 |
///
/// Depths are 1, 4, 8 (palette indexes), 16 (5-5-5), 24 (blue, green, red) and 32 (blue, green, red, alpha or
/// unused). biHeight is positive. dib/view.h reads and writes pixels without arithmetic on these offsets.
///
/// Threads: any calls may run at once, on one image as long as none writes it. Sizes: the block has at most
/// 2^31 - 1 bytes. Cost: constant time, but CreateDibImage and Clone write the whole block.

/// Number of palette entries: biClrUsed, or all that the depth can index if that is 0. An image of more than
/// 8 bits has no palette, even if biClrUsed is not 0.

/// \param dib not null
inline DWORD GetDIBPaletteSize(const BITMAPINFOHEADER* dib) {
  if (dib->biBitCount > 8) return 0;
  return dib->biClrUsed != 0 ? dib->biClrUsed : DWORD{1} << dib->biBitCount;
}

/// First byte of the pixel rows: the left end of the picture's bottom line. Counts from the header's own size
/// field, so longer headers work too.

/// \param dib not null
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
/// `row` is the first byte of a row, x counts from its left end. Neither is checked.
/// @{

/// 1 when pixel x of a 1-bit row is set, else 0; the most significant bit is the leftmost pixel.
inline BYTE Get1BitPixel(const BYTE* row, int x) { return static_cast<BYTE>(row[x / 8] >> (7 - x % 8) & 1); }

/// Sets pixel x of a 1-bit row when value is not 0, clears it otherwise.
inline void Set1BitPixel(BYTE* row, BYTE value, int x) {
  const BYTE bit = static_cast<BYTE>(0x80 >> x % 8);
  row[x / 8] = static_cast<BYTE>(value != 0 ? row[x / 8] | bit : row[x / 8] & ~bit);
}

/// Index at x of a 4-bit row: even columns are the high nibble.
inline BYTE Get4BitPixel(const BYTE* row, int x) {
  return static_cast<BYTE>(x % 2 != 0 ? row[x / 2] & 15 : row[x / 2] >> 4);
}

/// Stores an index of 0 to 15 at x of a 4-bit row. Deliberately not masked: the high bits of a larger value
/// change the neighbour's nibble at an odd x and are lost at an even one.
inline void Set4BitPixel(BYTE* row, BYTE value, int x) {
  BYTE& pair = row[x / 2];
  pair = static_cast<BYTE>(x % 2 != 0 ? (pair & 0xF0) | value : pair % 16 + value * 16);
}

/// Index at x of an 8-bit row.
inline BYTE Get8BitPixel(const BYTE* row, int x) { return row[x]; }
/// Stores an index at x of an 8-bit row.
inline void Set8BitPixel(BYTE* row, BYTE value, int x) { row[x] = value; }
/// @}

/// Creates and copies packed DIBs. Every image is a block from the array form of new. Whoever receives it
/// owns it and releases it with `delete[] reinterpret_cast<BYTE*>(image)`, as dibkit::OwnedDib does.
class DIBKIT_API CBitmapCreator {
 public:
  CBitmapCreator() {}
  CBitmapCreator& operator=(const CBitmapCreator&) { return *this; }

  /// A new uncompressed image: all pixels 0, palette black, biSizeImage 0.
  /// \param width,height in pixels; 0 gives an image without pixels
  /// \param bitCount bits per pixel
  /// \param clrUsed palette entries of an image of at most 8 bits; below 1 a full palette and biClrUsed 0
  /// \return the image, owned by the caller; null for a negative size, a block above 2^31 - 1 bytes, or when
  ///     memory runs out
  static BITMAPINFOHEADER* CreateDibImage(int width, int height, int bitCount, int clrUsed);

  /// A copy of the whole block: header, masks, palette and rows.
  /// \return the copy, owned by the caller; null for a null image, an unusable header, or when memory runs
  ///     out
  static BITMAPINFOHEADER* Clone(const BITMAPINFOHEADER* dib);
};
