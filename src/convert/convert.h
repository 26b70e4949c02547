#pragma once

#include "dib/dib.h"

/// \file
/// Changes of depth and kind of image. Every operation leaves its source alone and gives a new image of the
/// same size, which the caller owns; null when memory runs out, when the source is null or unusable or not of
/// the depth in the operation's name, or when the user cancelled. `progress` may be null; it is told the
/// percentage after every line, and a cancel counts even during the last line.

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
};

/// A 24-bit image onto the palette of a colour map, at the smallest depth that holds the map: 1 bit below 3
/// colours, 4 bits below 17, else 8. Entry number `value` becomes the colour of its key; a pixel whose colour
/// the map lacks becomes index 0. The rows are read as 24-bit ones whatever the header says.
/// \param map red in bits 16 to 23, green in 8 to 15, blue in 0 to 7, to 0 ... count - 1; only read
/// \return the new image, owned by the caller, with biClrUsed = the map's count; null as told above
DIBKIT_API BITMAPINFOHEADER* Convert24BitsDIBToLowerBitsDIB(BITMAPINFOHEADER* source,
                                                            CMap<DWORD, DWORD&, int, int&>& map);
