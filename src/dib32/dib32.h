#pragma once

#include "dib/framework.h"

/// The toolkit for 32-bit images: packed DIBs of 32 bits without palette or masks, whose pixels hold blue,
/// green, red and opacity in this order. Opacity 0 is transparent, 255 opaque; colour is straight, never
/// multiplied by opacity, so a transparent pixel may have any colour. Points count from the top-left pixel.
///
/// Unless an operation says otherwise, images that it returns are new and belong to the caller, who releases
/// them with `delete[] reinterpret_cast<BYTE*>(image)`; a null image, one of another depth or one with an
/// unusable header gets a null result, FALSE or nothing done, and so does memory that ran out.
class DIBKIT_API CDIB32 {
 public:
  CDIB32() {}
  CDIB32(const CDIB32&) {}
  CDIB32& operator=(const CDIB32&) { return *this; }
  virtual ~CDIB32();

  /// \name Images
  /// @{

  /// A new image with all bytes 0: transparent black.
  /// \param width,height in pixels, 0 or more
  static BITMAPINFOHEADER* CreateBlank32BitsDIB(int width, int height);

  /// A new image with every pixel the colour at the given opacity.
  static BITMAPINFOHEADER* CreateSimple32BitsDIB(int width, int height, COLORREF colour, BYTE alpha);

  /// A 32-bit image of a picture of 1, 4, 8, 16, 24 or 32 bits. 16 bits are 5-5-5 (full white becomes 248);
  /// the fourth byte of a 32-bit picture is ignored.
  /// \param mask 1-bit image, paired with the picture from the top-left pixel of both, or null for none;
  /// pixels that it does not cover count as clear
  /// \param normalAlpha opacity of pixels whose mask bit is clear
  /// \param maskedAlpha opacity of pixels whose mask bit is set
  /// \note a 16-bit picture with bit fields goes to ConvertBitField16BitsDIBTo32BitsDIB, both opacities
  /// unused
  static BITMAPINFOHEADER* ConvertTo32BitsDIB(BITMAPINFOHEADER* source, BITMAPINFOHEADER* mask,
                                              BYTE normalAlpha, BYTE maskedAlpha);

  /// A 32-bit image of a 16-bit BI_BITFIELDS picture; red must lie right above green and green right above
  /// blue, as in 5-6-5 and 5-5-5. A field of more than 8 bits reads as 0.
  /// \param mask as in ConvertTo32BitsDIB: opacity 0 where its bit is set, 255 elsewhere
  static BITMAPINFOHEADER* ConvertBitField16BitsDIBTo32BitsDIB(BITMAPINFOHEADER* source,
                                                               BITMAPINFOHEADER* mask);

  /// Where the lowest run of set bits in a colour mask lies; both results are 0 for a mask of 0.
  /// \param[out] shift number of clear bits below the run
  /// \param[out] length number of bits in the run
  static void CalcuMaskShift(DWORD mask, int& shift, int& length);

  /// Gives every pixel the colour and leaves it its opacity.
  static void Make32BitsSimpleColorDIB(BITMAPINFOHEADER* image, COLORREF colour);

  /// Gives every pixel the opacity and leaves it its colour.
  static void MakeAllPixelsSameOpacity(BITMAPINFOHEADER* image, BYTE alpha);

  /// Scales every opacity by (255 - reduction) / 255, truncated.
  static void Reduce32BitsDIBOpacity(BITMAPINFOHEADER* image, BYTE reduction);

  /// Makes every pixel the opaque colour.
  static void Fill32DIBBackground(BITMAPINFOHEADER* image, BYTE red, BYTE green, BYTE blue);

  /// TRUE when no pixel has an opacity below 255.
  static BOOL IsFullOpacity32BitsImage(BITMAPINFOHEADER* const image);

  /// TRUE when some pixel has an opacity of 1 to 254.
  static BOOL IsTranslucence32BitsImage(BITMAPINFOHEADER* const image);

  /// TRUE when the point lies in the image and its pixel is not transparent.
  static BOOL IsIn32BitsDIB(BITMAPINFOHEADER* image, const POINT& point);

  /// Luminance of pixel a less that of pixel b, a comparator from dark to bright. The luminance of a pixel is
  /// (117 blue + 601 green + 306 red) / 1024, truncated.
  /// \param a,b each point to a pixel's bytes, of which the first three are read
  static int CompareColors(const void* a, const void* b);
  /// @}

  /// \name Opacity and blitting
  /// Block operations lay a source over a destination, each with the point where its top-left pixel lies in a
  /// common space, and touch the pixels that both cover.
  /// @{

  /// Opacity of a layer laid over another: 255 - (255 - a)(255 - b) / 255, truncated.
  static BYTE CalcuOpacity(BYTE a, BYTE b);

  /// One colour channel of a layer laid over another, as straight colour.
  /// \param dstAlpha,srcAlpha opacities of the lower and the upper layer
  /// \param dstColour,srcColour their channels
  /// \param outAlpha opacity of the result, from CalcuOpacity; 0 leaves the sum undivided
  /// \return ((dstColour dstAlpha (255 - srcAlpha)) / 255 + srcColour srcAlpha) / outAlpha, at most 255
  static BYTE CalcuRGBValue(BYTE dstAlpha, BYTE srcAlpha, BYTE dstColour, BYTE srcColour, BYTE outAlpha);

  /// Composes the source over the destination, exactly: opacity by CalcuOpacity, colours by CalcuRGBValue.
  /// Where both opacities are 0 the destination becomes transparent black.
  /// \param reduction taken off every source opacity, down to 0
  static void CombineBlock(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                           BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE reduction);
  /// @}

  /// \name Merging
  /// @{
  /// @}

  /// \name Fills
  /// @{
  /// @}

  /// \name Selection
  /// @{
  /// @}

  /// \name Scaling
  /// @{
  /// @}

  /// \name Filters
  /// @{
  /// @}

  /// \name Borders, trimming and masks
  /// @{
  /// @}

  /// \name Editor overlays
  /// @{
  /// @}
};
