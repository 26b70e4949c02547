#pragma once

#include "dib/dib.h"
#include "platform/export.h"

/// \file
/// Changes of depth and kind of image. Every operation leaves its source alone and gives a new image of the
/// same size, which the caller owns; null when memory runs out, when the source is null or unusable or not of
/// the depth in the operation's name, or when the user cancelled. `progress` may be null; it is told the
/// percentage after every line, and a cancel counts even during the last line; an image without width has no
/// lines.

/// Conversions between depths.
class DIBKIT_API CBitmapConverter {
 public:
  CBitmapConverter() {}
  CBitmapConverter& operator=(const CBitmapConverter&) { return *this; }

  /// \name To 24 bits
  /// Palette colours as they are, the palette being read at 40 bytes from the start of the block whatever
  /// biSize says; an index beyond the palette shows what lies there. 16-bit pixels are read as 5-5-5 with the
  /// low three bits 0; the fourth byte of 32-bit pixels is dropped.
  /// @{
  static BITMAPINFOHEADER* Convert1BitsTo24Bits(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  static BITMAPINFOHEADER* Convert4BitsTo24Bits(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  static BITMAPINFOHEADER* Convert8BitsTo24Bits(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  static BITMAPINFOHEADER* Convert16BitsTo24Bits(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  static BITMAPINFOHEADER* Convert32BitsTo24Bits(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  /// From any depth. A 24-bit source is cloned, header and all, without a report or a question.
  static BITMAPINFOHEADER* ConvertDIBTo24Bits(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  /// @}

  /// \name To 16 bits
  /// 5-5-5; the low three bits of each channel are dropped. Palettes are read at biSize.
  /// @{
  static BITMAPINFOHEADER* Convert1BitsTo16Bits(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  static BITMAPINFOHEADER* Convert4BitsTo16Bits(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  static BITMAPINFOHEADER* Convert8BitsTo16Bits(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  static BITMAPINFOHEADER* Convert24BitsTo16Bits(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  static BITMAPINFOHEADER* Convert32BitsTo16Bits(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  /// From any depth. A 16-bit source is cloned, header, masks and all, without a report or a question.
  static BITMAPINFOHEADER* ConvertDIBTo16Bits(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  /// @}

  /// To 32 bits with the channels in reverse: the bytes of a pixel are 0, red, green, blue.
  /// \param flip not 0 turns the picture upside down
  static BITMAPINFOHEADER* Convert24BitsTo32Bits(BITMAPINFOHEADER* source, int flip,
                                                 CQorCommonProgress* progress);

  /// \name Pictures of few colours, exactly
  /// The palette is made of the colours in order of first appearance in reading order; nothing is
  /// approximated. The rows are read as 24-bit ones whatever the header says.
  /// \param colourCount the result's biClrUsed, at least the number of colours, or 0 for a full palette.
  /// Colours beyond it are written past the palette, into the rows, as far as those go; with the 256th entry
  /// the palette is forgotten and written again from its start. Count the colours first, and give pictures of
  /// exactly 256 to Convert24BitsDIBToLowerBitsDIB with a map of them.
  /// @{
  static BITMAPINFOHEADER* ConvertTrueDibTo8BitsDib(BITMAPINFOHEADER* source, int colourCount,
                                                    CQorCommonProgress* progress);
  static BITMAPINFOHEADER* ConvertTrueDibTo4BitsDib(BITMAPINFOHEADER* source, int colourCount,
                                                    CQorCommonProgress* progress);
  static BITMAPINFOHEADER* ConvertTrueDibTo1BitsDib(BITMAPINFOHEADER* source, int colourCount,
                                                    CQorCommonProgress* progress);
  /// The smallest of the three that holds the picture's colours, with what is said above of 256; null for
  /// more of them.
  static BITMAPINFOHEADER* ConvertTrueDibToLowBitsDib(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  /// @}

  /// \name From one palette depth to another
  /// With a colour map (keys the four bytes of a palette entry, not more than the target can index) the
  /// result has the map's palette and its count as biClrUsed; a colour that the map lacks becomes index 0.
  /// Without one (null) the colours stay: to more bits every index keeps its number and the rest of the
  /// palette is black; to fewer bits equal entries are merged, of which the source may have as many distinct
  /// ones as the target can index. An index beyond the palette becomes what the pixel before it did.
  /// @{
  static BITMAPINFOHEADER* Convert1BitsDibTo4BitsDib(BITMAPINFOHEADER* source,
                                                     CMap<DWORD, DWORD&, int, int&>* map,
                                                     CQorCommonProgress* progress);
  static BITMAPINFOHEADER* Convert1BitsDibTo8BitsDib(BITMAPINFOHEADER* source,
                                                     CMap<DWORD, DWORD&, int, int&>* map,
                                                     CQorCommonProgress* progress);
  static BITMAPINFOHEADER* Convert4BitsDibTo8BitsDib(BITMAPINFOHEADER* source,
                                                     CMap<DWORD, DWORD&, int, int&>* map,
                                                     CQorCommonProgress* progress);
  static BITMAPINFOHEADER* Convert8BitsDibTo4BitsDib(BITMAPINFOHEADER* source,
                                                     CMap<DWORD, DWORD&, int, int&>* map,
                                                     CQorCommonProgress* progress);
  static BITMAPINFOHEADER* Convert8BitsDibTo1BitsDib(BITMAPINFOHEADER* source,
                                                     CMap<DWORD, DWORD&, int, int&>* map,
                                                     CQorCommonProgress* progress);
  static BITMAPINFOHEADER* Convert4BitsDibTo1BitsDib(BITMAPINFOHEADER* source,
                                                     CMap<DWORD, DWORD&, int, int&>* map,
                                                     CQorCommonProgress* progress);
  /// @}

  /// To 256 grays, 0.299 red + 0.587 green + 0.114 blue truncated, on a palette that is the gray ramp.
  static BITMAPINFOHEADER* Convert24BitsDIBTo256GraysDIB(BITMAPINFOHEADER* source,
                                                         CQorCommonProgress* progress);

  /// The same from any depth. Done in two stages, by way of 24 bits, each a sub-range of half the progress.
  static BITMAPINFOHEADER* ConvertDIBTo256Grays(BITMAPINFOHEADER* source, CQorCommonProgress* progress);

  /// To black (index 0) and white: white where the raw byte of an 8-bit image, whose palette does not count,
  /// is at least `threshold` (CPaletteFuns::GetThreshValueForm8BitsGrayDib gives a good one).
  static BITMAPINFOHEADER* Convert8BitsGrayDibTo1BitsDib(BITMAPINFOHEADER* source, int threshold,
                                                         CQorCommonProgress* progress);

  /// The packed DIB of a device-dependent bitmap or a section, at its own depth: pixels and colours
  /// unchanged, its palette full (biClrUsed 0), its biSizeImage filled in.
  /// \return null for a null handle, one of no bitmap, or when the platform fails
  static BITMAPINFOHEADER* ConvertDDBToDIB(HBITMAP bitmap);

  /// Puts an image on the clipboard, as CF_DIB, and before it the palette of an 8-bit one as CF_PALETTE. The
  /// clipboard owns both copies.
  /// \param owner window that the clipboard is opened for; may be null
  /// \return FALSE for a null or unusable image or when there is no memory for the copy, otherwise TRUE, also
  /// when the clipboard cannot be had
  static int CopyBitmapToClipboard(BITMAPINFOHEADER* dib, HWND owner);
};

/// A 24-bit image onto the palette of a colour map, at the smallest depth that holds the map: 1 bit below 3
/// colours, 4 bits below 17, else 8. Entry number `value` becomes the colour of its key; a pixel whose colour
/// the map lacks becomes index 0. The rows are read as 24-bit ones whatever the header says.
/// \param map red in bits 16 to 23, green in 8 to 15, blue in 0 to 7, to 0 ... count - 1; only read
/// \return the new image, owned by the caller, with biClrUsed = the map's count; null as told above
DIBKIT_API BITMAPINFOHEADER* Convert24BitsDIBToLowerBitsDIB(BITMAPINFOHEADER* source,
                                                            CMap<DWORD, DWORD&, int, int&>& map);

/// An image of any depth at another one, colours matched by the platform: onto 1, 4 or 8 bits each pixel
/// becomes the nearest colour of the palette, which is also the result's. To more bits the palette does not
/// count.
/// \param palette at most as many entries as the target can index; of a larger one only so many are used
/// \return a new image that the caller owns, with biSizeImage filled in; null for a null or unusable
///     image, a depth of no image, no palette where one is needed, or when the platform or memory fails
DIBKIT_API BITMAPINFOHEADER* ConvertDIBFormat(BITMAPINFOHEADER* source, UINT bitCount, HPALETTE palette);
