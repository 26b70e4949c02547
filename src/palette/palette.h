#pragma once

#include "dib/dib.h"

/// \file
/// Palettes: count the colours of an image, build one palette for several images, find the nearest colour,
/// make grays, find the threshold between dark and light. (Reduction of an image to a palette is in
/// convert/convert.h.)
///
/// \code
/// const int threshold = CPaletteFuns::GetThreshValueForm8BitsGrayDib(gray.get());
/// return OwnedDib(CBitmapConverter::Convert8BitsGrayDibTo1BitsDib(gray.get(), threshold, nullptr));
/// \endcode
///
/// A colour map is a palette under construction: entry number `value` of the palette has the colour `key`,
/// and values are in order of first appearance. There are two kinds of key: an RGBQUAD as a little-endian
/// number (0x00RRGGBB, dibkit::packRgb), and a COLORREF (0x00BBGGRR). Each operation says which it takes.
///
/// Threads: a map or palette that an operation writes belongs to one call at a time. Aliasing: nothing else
/// is written. Sizes: at most 256 colours are counted. Cost: one pass over the image, in reading order, which
/// ends at the 257th colour; operations on palettes alone, one pass over the entries.

/// Operations on palettes and on images with palettes. Null and unusable images give 0, FALSE or null.
class DIBKIT_API CPaletteFuns {
 public:
  CPaletteFuns() {}
  CPaletteFuns& operator=(const CPaletteFuns&) { return *this; }

  /// Counts the distinct colours of a 24-bit image.
  /// \param dib its rows are read as 24-bit ones, also if the header has another depth
  /// \return the number of colours, 257 for more than 256
  static int GetColorsNumFrom24BitsDib(BITMAPINFOHEADER* dib);

  /// Enters the colours of a 24- or 32-bit image in a map, under COLORREF keys. Alpha does not count.
  /// \param colours usually empty: indexes start at 0 also if it is not
  /// \return the number of colours entered; -1 if there is a 257th, with the 256 before it entered
  static int GetColorsNumFromTrueDib(BITMAPINFOHEADER* dib, CMap<DWORD, DWORD&, int, int&>* colours);

  /// Enters the palette indexes that an image of 1, 4 or 8 bits uses in a map, each with the number of
  /// indexes entered before it. An image of another depth counts as index 0 everywhere.
  /// \return the number of indexes entered
  static int GetColorsNumFromPaletteDib(BITMAPINFOHEADER* dib, CMap<int, int&, int, int&>* indexes);

  /// Adds a palette to a shared one: each entry that the map lacks gets the next index.
  /// \param colours keys are the four bytes of an RGBQUAD
  /// \param count entries of the palette
  /// \return FALSE at the first new entry beyond 256, with the entries before it added; else TRUE
  static int SumDibImagePalEntries(CMap<DWORD, DWORD&, int, int&>& colours, RGBQUAD* palette, int count);

  /// The same picture with the palette of a map, at the same depth. A colour that the map lacks becomes index
  /// 0. An index beyond the image's own palette becomes what the pixel before it became.
  /// \param colours keys are the four bytes of an RGBQUAD; not more of them than the depth can index
  /// \return a new image, owned by the caller; null for an unusable image, one of more than 8 bits, or when
  ///     memory runs out
  static BITMAPINFOHEADER* ChangeDibBitsPalette(BITMAPINFOHEADER* dib,
                                                CMap<DWORD, DWORD&, int, int&>* colours);

  /// Whether the palette of an image is that of a map. Deliberately loose: an entry that the map lacks counts
  /// as the one before it, and colours that only the map has do not count, except against a palette of one
  /// colour.
  /// \param colours keys are the four bytes of an RGBQUAD
  static int IsPaletteEqual(BITMAPINFOHEADER* dib, CMap<DWORD, DWORD&, int, int&>* colours);

  /// TRUE if entry i of the palette is gray i for every i. The palette is read 40 bytes from the start of the
  /// block.
  static int IsGrayScaleImage(BITMAPINFOHEADER* dib);

  /// Turns colours into grays, in place: 0.3 red + 0.59 green + 0.11 blue, truncated. rgbReserved is
  /// unchanged.
  static void GrayPalette(RGBQUAD* palette, int count);

  /// Writes an even ramp from black, in steps of 255 / (count - 1), truncated. rgbReserved is unchanged.
  /// \param count entries, 2 or more; fewer are left alone
  static void MakeGrayPalette(RGBQUAD* palette, int count);

  /// Index of the entry nearest to a colour: the least sum of squared differences of the channels, the
  /// highest index of equals. 0 without entries.
  /// \param count entries of the palette, up to 256
  /// \param colour a COLORREF
  static BYTE GetNearestPaletteIndex(RGBQUAD* palette, int count, DWORD colour);

  /// Index of the entry farthest from a colour by the same measure, the lowest of equals. 0 without entries.
  static int GetMaxDifferenceColor(RGBQUAD* palette, int count, BYTE red, BYTE green, BYTE blue);

  /// The gray that parts dark from light best: Otsu's method (N. Otsu, "A threshold selection method from
  /// gray-level histograms", 1979) on a smoothed histogram of the raw bytes of an 8-bit image.
  /// \return 0 to 254, the lowest of equally good ones; 1 for an image without pixels; 0 for one that is not
  ///     an 8-bit image
  static int GetThreshValueForm8BitsGrayDib(BITMAPINFOHEADER* dib);
};
