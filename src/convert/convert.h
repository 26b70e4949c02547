#pragma once

#include "dib/dib.h"
#include "platform/export.h"

/// \file
/// Changes of depth: true colour to a palette and back, grays, black and white, bitmaps of the platform, the
/// clipboard. (To 32 bits with alpha: CDIB32::ConvertTo32BitsDIB.)
///
/// \code
/// const OwnedDib trueColour(CBitmapConverter::ConvertDIBTo24Bits(picture, nullptr));
/// return OwnedDib(Convert24BitsDIBToLowerBitsDIB(trueColour.get(), palette));
/// \endcode
///
/// Every operation reads its source and gives a new image of the same size, which the caller owns. It gives
/// null for an unusable source, one of another depth than its name says, after a cancel, and when memory runs
/// out. `progress` may be null. A cancel during the last line counts. An image without width has no lines to
/// report.
///
/// Threads: any calls may run at once; a progress object serves one of them. Sizes: as in dibkit.h. Cost: one
/// pass over the pixels, with a table or a hash for the colours, so that their number does not count.

/// Conversions between depths.
class DIBKIT_API CBitmapConverter {
 public:
  CBitmapConverter() {}
  CBitmapConverter& operator=(const CBitmapConverter&) { return *this; }

  /// \name To 24 bits
  /// The palette is read 40 bytes from the start of the block, also if biSize is larger; an index beyond it
  /// gives the bytes there. 16-bit pixels are read as 5-5-5, with the low three bits 0. The fourth byte of
  /// 32-bit pixels is dropped.
  /// @{
  static BITMAPINFOHEADER* Convert1BitsTo24Bits(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  static BITMAPINFOHEADER* Convert4BitsTo24Bits(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  static BITMAPINFOHEADER* Convert8BitsTo24Bits(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  static BITMAPINFOHEADER* Convert16BitsTo24Bits(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  static BITMAPINFOHEADER* Convert32BitsTo24Bits(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  /// From any depth. A 24-bit source is cloned, header included, without progress.
  static BITMAPINFOHEADER* ConvertDIBTo24Bits(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  /// @}

  /// \name To 16 bits
  /// 5-5-5: the low three bits of each channel are dropped. Palettes are read at biSize.
  /// @{
  static BITMAPINFOHEADER* Convert1BitsTo16Bits(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  static BITMAPINFOHEADER* Convert4BitsTo16Bits(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  static BITMAPINFOHEADER* Convert8BitsTo16Bits(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  static BITMAPINFOHEADER* Convert24BitsTo16Bits(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  static BITMAPINFOHEADER* Convert32BitsTo16Bits(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  /// From any depth. A 16-bit source is cloned, header and masks included, without progress.
  static BITMAPINFOHEADER* ConvertDIBTo16Bits(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  /// @}

  /// To 32 bits with the bytes of a pixel in reverse: 0, red, green, blue. (Images for CDIB32 come from
  /// CDIB32::ConvertTo32BitsDIB.)
  /// \param flip not 0 turns the picture upside down
  static BITMAPINFOHEADER* Convert24BitsTo32Bits(BITMAPINFOHEADER* source, int flip,
                                                 CQorCommonProgress* progress);

  /// \name Pictures of few colours, exactly
  /// The palette has the colours of the picture in order of first appearance; none is approximated. The
  /// source's rows are read as 24-bit ones, also if its header has another depth.
  ///
  /// For pictures of fewer than 256 colours, and of no more than colourCount: a colour beyond colourCount is
  /// written past the palette, into the rows, and the 256th starts the palette anew. Count them first
  /// (CPaletteFuns::GetColorsNumFrom24BitsDib). Convert24BitsDIBToLowerBitsDIB takes 256.
  /// \param colourCount the result's biClrUsed, or 0 for a full palette
  /// @{
  static BITMAPINFOHEADER* ConvertTrueDibTo8BitsDib(BITMAPINFOHEADER* source, int colourCount,
                                                    CQorCommonProgress* progress);
  static BITMAPINFOHEADER* ConvertTrueDibTo4BitsDib(BITMAPINFOHEADER* source, int colourCount,
                                                    CQorCommonProgress* progress);
  static BITMAPINFOHEADER* ConvertTrueDibTo1BitsDib(BITMAPINFOHEADER* source, int colourCount,
                                                    CQorCommonProgress* progress);
  /// The smallest of the three depths that holds the picture's colours. Null for more than 256; exactly 256
  /// go wrong as above.
  static BITMAPINFOHEADER* ConvertTrueDibToLowBitsDib(BITMAPINFOHEADER* source, CQorCommonProgress* progress);
  /// @}

  /// \name From one palette depth to another
  /// With a colour map the result has the map's palette, and its count as biClrUsed. A colour that the map
  /// lacks becomes index 0. Without a map the colours are unchanged. To more bits, every index keeps its
  /// number and the rest of the palette is black. To fewer bits, equal entries are merged; the source may
  /// have as many distinct ones as the target can index. An index beyond the palette becomes what the pixel
  /// before it became.
  /// \param map keys are the four bytes of an RGBQUAD, not more than the target can index; or null
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

  /// To 8 bits of gray: 0.299 red + 0.587 green + 0.114 blue, truncated, with the gray ramp as palette.
  static BITMAPINFOHEADER* Convert24BitsDIBTo256GraysDIB(BITMAPINFOHEADER* source,
                                                         CQorCommonProgress* progress);

  /// The same from any depth, by way of 24 bits: two stages, each half of the progress.
  static BITMAPINFOHEADER* ConvertDIBTo256Grays(BITMAPINFOHEADER* source, CQorCommonProgress* progress);

  /// To black (index 0) and white (index 1): white where the raw byte of an 8-bit image is at least
  /// `threshold`. The palette does not count. CPaletteFuns::GetThreshValueForm8BitsGrayDib gives a good
  /// threshold.
  static BITMAPINFOHEADER* Convert8BitsGrayDibTo1BitsDib(BITMAPINFOHEADER* source, int threshold,
                                                         CQorCommonProgress* progress);

  /// The packed DIB of a device-dependent bitmap or a DIB section, at its own depth: pixels and colours
  /// unchanged, a full palette (biClrUsed 0), biSizeImage filled in.
  /// \param bitmap not selected in a device context
  /// \return null for a null handle, one that is not a bitmap, or when the platform fails
  static BITMAPINFOHEADER* ConvertDDBToDIB(HBITMAP bitmap);

  /// Puts a copy of an image on the clipboard as CF_DIB, and the palette of an 8-bit one as CF_PALETTE. The
  /// clipboard owns both. There is one clipboard for all threads: while another one has it open, nothing is
  /// put.
  /// \param owner window that the clipboard is opened for; may be null
  /// \return FALSE for an unusable image and when memory runs out; else TRUE, also if the clipboard could not
  ///     be opened
  static int CopyBitmapToClipboard(BITMAPINFOHEADER* dib, HWND owner);
};

/// Reduces a 24-bit image to the palette of a colour map, at the smallest depth that holds it: 1 bit for up
/// to 2 colours, 4 bits for up to 16, else 8. A pixel whose colour the map lacks becomes index 0: no nearest
/// colour is searched (ConvertDIBFormat does that).
/// \param source its rows are read as 24-bit ones, also if its header has another depth
/// \param map keys 0x00RRGGBB (dibkit::packRgb) to indexes 0 ... count - 1; only read
/// \return a new image, owned by the caller, with biClrUsed = the map's count; null for an unusable source or
///     when memory runs out
DIBKIT_API BITMAPINFOHEADER* Convert24BitsDIBToLowerBitsDIB(BITMAPINFOHEADER* source,
                                                            CMap<DWORD, DWORD&, int, int&>& map);

/// Converts an image of any depth to another one. The platform matches the colours: to 1, 4 or 8 bits, each
/// pixel becomes the nearest colour of a palette, which is also the result's. (Quantising to a given palette;
/// the library does not choose one for more than 256 colours.)
/// \param bitCount 1, 4, 8, 16, 24 or 32
/// \param palette a logical palette; entries beyond what bitCount can index are not used, and above 8 bits
///     none is
/// \return a new image, owned by the caller, with biSizeImage filled in; null for an unusable image, another
///     bitCount, a missing palette, or when the platform or memory fails
/// \note besides the result, needs memory for a surface of the source and one of the result
DIBKIT_API BITMAPINFOHEADER* ConvertDIBFormat(BITMAPINFOHEADER* source, UINT bitCount, HPALETTE palette);
