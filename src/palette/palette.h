#pragma once

#include "dib/dib.h"

/// \file
/// Palettes: counting the colours of an image, one palette for several images, gray ramps, nearest colours
/// and the threshold between dark and light.
///
/// A colour map holds a palette under construction: colour key to index, indexes in order of first
/// appearance, so that entry number `value` of the palette is the colour `key`. Two kinds of key are in use:
/// the four bytes of an RGBQUAD read as a little-endian number (blue lowest), and a COLORREF (red lowest).
/// Images are looked through in reading order. Null and unusable images are harmless: 0, FALSE or null.

/// Operations on palettes and on images with palettes. None of them reports progress.
class DIBKIT_API CPaletteFuns {
 public:
  CPaletteFuns() {}
  CPaletteFuns& operator=(const CPaletteFuns&) { return *this; }

  /// Number of distinct colours, or 257 for more than 256. The rows are read as 24-bit ones whatever the
  /// header says.
  static int GetColorsNumFrom24BitsDib(BITMAPINFOHEADER* dib);

  /// Enters the colours of a 24- or 32-bit image, whose fourth byte does not count, under COLORREF keys.
  /// Indexes start at 0 whatever the map holds, so a palette needs an empty map.
  /// \return the number of colours entered, or -1 when a 257th would be needed; the 256 before it stay
  /// entered
  static int GetColorsNumFromTrueDib(BITMAPINFOHEADER* dib, CMap<DWORD, DWORD&, int, int&>* colours);

  /// Enters the palette indexes that an image of 1, 4 or 8 bits uses, each with the number of indexes
  /// entered before it. Images of other depths count as index 0 all over.
  /// \return the number of indexes entered
  static int GetColorsNumFromPaletteDib(BITMAPINFOHEADER* dib, CMap<int, int&, int, int&>* indexes);

  /// Adds a palette to a shared one: each entry that the map lacks gets the next index, under the key of its
  /// four bytes.
  /// \return FALSE at the first new entry beyond 256; the entries before it stay added
  static int SumDibImagePalEntries(CMap<DWORD, DWORD&, int, int&>& colours, RGBQUAD* palette, int count);

  /// The same picture on the map's palette, at the same depth; the map must hold no more colours than that
  /// depth can index. A colour that the map lacks becomes index 0, an index beyond the image's own palette
  /// what the pixel before it became.
  /// \return a new image that the caller owns; null for a null image, one of more than 8 bits, or when memory
  /// runs out
  static BITMAPINFOHEADER* ChangeDibBitsPalette(BITMAPINFOHEADER* dib,
                                                CMap<DWORD, DWORD&, int, int&>* colours);

  /// Whether the image's palette is the map's, as far as two loose passes tell: an entry that the map lacks
  /// passes for the one before it, and only a palette of a single colour fails for what the map has besides.
  static int IsPaletteEqual(BITMAPINFOHEADER* dib, CMap<DWORD, DWORD&, int, int&>* colours);

  /// TRUE when entry i of the palette, read at 40 bytes from the start of the block, is gray i for every i.
  static int IsGrayScaleImage(BITMAPINFOHEADER* dib);

  /// Turns colours into grays, 0.3 red + 0.59 green + 0.11 blue truncated; rgbReserved stays.
  static void GrayPalette(RGBQUAD* palette, int count);

  /// Writes an even ramp in steps of 255 / (count - 1) truncated, from black on; rgbReserved stays.
  /// \param count 2 or more; fewer entries are left alone
  static void MakeGrayPalette(RGBQUAD* palette, int count);

  /// Index of the entry nearest to a COLORREF by the sum of squared differences; the highest one of equals,
  /// 0 without entries.
  static BYTE GetNearestPaletteIndex(RGBQUAD* palette, int count, DWORD colour);

  /// Index of the entry farthest from a colour by the same measure; the lowest one of equals, 0 without
  /// entries.
  static int GetMaxDifferenceColor(RGBQUAD* palette, int count, BYTE red, BYTE green, BYTE blue);

  /// The gray value that parts dark from light best: Otsu's method (N. Otsu, A threshold selection method
  /// from gray-level histograms, 1979) on a smoothed histogram of the raw pixel bytes of an 8-bit image.
  /// \return 0 to 254, the lowest of equally good ones; 1 for a picture without pixels, 0 for no 8-bit image
  static int GetThreshValueForm8BitsGrayDib(BITMAPINFOHEADER* dib);
};
