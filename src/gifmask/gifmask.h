#pragma once

#include "dib/dib.h"

/// \file
/// What a GIF stores of a frame: a palette image and a mask. Split a 32-bit image into the two, add margins,
/// flatten onto a matte colour, edit masks.
///
/// \code
/// OwnedDib image, mask;
/// if (CMaskedBitmapTransform::Spilt32BitsDIBForGIF(layer, matte, matte, out(image), out(mask)) == 0)
///   return {};
/// \endcode

/// Operations on frames and masks. A mask is a 1-bit image in which bit 1 marks a transparent pixel; those
/// made here have palette entry 0 black and entry 1 white. Mask and image share their top-left corner, and
/// where their sizes differ only the common part is processed. Colours are COLORREFs whose top byte is
/// ignored.
///
/// Results are new and belong to the caller, with one exception at FillMask. Unusable images give the failure
/// result: 0 or null, with nothing written.
///
/// Threads: any calls may run at once; FillMaskDIBBits alone writes an argument. Aliasing: arguments may be
/// the same image. Sizes: as in dibkit.h. Cost: one pass over the pixels.
class DIBKIT_API CMaskedBitmapTransform {
 public:
  CMaskedBitmapTransform() {}
  CMaskedBitmapTransform& operator=(const CMaskedBitmapTransform&) { return *this; }

  /// Splits a 32-bit image with alpha into a 24-bit image and a mask. Pixels of alpha 0 are transparent and
  /// get the transparent colour. All others are blended with the background: (channel x alpha + background x
  /// (255 - alpha)) / 255.
  /// \param source the signs of its width and height are ignored; its rows are read bottom-up in any case
  /// \param outImage receives the 24-bit image
  /// \param outMask receives the mask, or null if no pixel has alpha 0
  /// \return 1; 0 with nothing written for an unusable argument or when memory runs out
  static int Spilt32BitsDIBForGIF(BITMAPINFOHEADER* source, DWORD background, DWORD transparent,
                                  BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask);

  /// Pads a frame of any depth with transparent margins. Pixels in the margins and transparent ones become 0.
  /// \param sourceMask null for an opaque frame
  /// \param outImage receives the image, of the source's depth and palette
  /// \param outMask receives its mask
  /// \param left,top,right,bottom margins in pixels; negative ones cut
  /// \return 1; 0 with nothing written for an unusable argument or when memory runs out
  static int ExpandDIB(BITMAPINFOHEADER* source, BITMAPINFOHEADER* sourceMask, BITMAPINFOHEADER** outImage,
                       BITMAPINFOHEADER** outMask, int left, int top, int right, int bottom);

  /// Flattens a frame: its transparent pixels get a colour. A palette without the colour gets one more entry;
  /// if it is full, the depth grows from 1 to 4, 4 to 8 or 8 to 24 bits. 16-bit pixels lose their unused bit,
  /// 32-bit ones their fourth byte. (InflateDib does the same with margins.)
  /// \param mask not null
  /// \return a new image; null for an unusable argument or when memory runs out
  static BITMAPINFOHEADER* OutputDIBStream(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask,
                                           DWORD transparent);

  /// Marks the pixels of a region transparent.
  /// \param region in the mask's coordinates; null marks nothing
  /// \return a new mask; deliberately the argument itself if it has all these pixels marked already, as for a
  ///     null or empty region, so compare the two before the release of either; null for an unusable mask or
  ///     when memory runs out
  static BITMAPINFOHEADER* FillMask(BITMAPINFOHEADER* mask, HRGN region);

  /// Sets the bits of a rectangle, as far as it is inside the mask, in place.
  /// \param rect right and bottom exclusive
  /// \param value true for transparent
  static void FillMaskDIBBits(BITMAPINFOHEADER* mask, const RECT& rect, bool value);

  /// A copy of a mask with the bits of a second one copied over it, from the top-left corner of both.
  /// \return a new mask; null for an unusable mask or when memory runs out
  static BITMAPINFOHEADER* MarkedMaskDIB(BITMAPINFOHEADER* mask, BITMAPINFOHEADER* second);

  /// A copy of an image of any depth with the value of its top-left pixel everywhere that the mask reaches.
  /// Deliberately, only the size of the mask counts, not its bits.
  /// \return a new image; null for an unusable argument or when memory runs out
  static BITMAPINFOHEADER* MarkedBmpDIB(BITMAPINFOHEADER* image, BITMAPINFOHEADER* mask);

  /// A picture of a mask in two colours: that of the image's top-left pixel where the mask is transparent,
  /// and its complement where it is opaque.
  /// \param image 16, 24 or 32 bits; painted pixels of 32 bits get alpha 255
  /// \return a new image; null for an unusable argument or when memory runs out
  static BITMAPINFOHEADER* MarkHighBitsDIB(BITMAPINFOHEADER* image, BITMAPINFOHEADER* mask);

  /// The same for an image with a palette: the index of the top-left pixel, and that of the entry that
  /// differs most from it.
  /// \param image 1, 4 or 8 bits
  /// \return a new image; null for an unusable argument or when memory runs out
  static BITMAPINFOHEADER* MarkLowBitsDIB(BITMAPINFOHEADER* image, BITMAPINFOHEADER* mask);
};
