#pragma once

#include "dib/dib.h"

/// Preparation of frames for a GIF, which stores a palette image and a mask. A mask is a 1-bit image in which
/// bit 1 marks a transparent pixel; those made here have palette entry 0 black and entry 1 white. Mask and
/// image are aligned at their top-left corners; where their sizes differ, only the common part is processed.
/// Colours are COLORREFs whose top byte is ignored. The caller owns the results and releases them with
/// `delete[] reinterpret_cast<BYTE*>(image)`; FillMask is an exception. Null or otherwise unusable images
/// give the failure result.
class DIBKIT_API CMaskedBitmapTransform {
 public:
  CMaskedBitmapTransform() {}
  CMaskedBitmapTransform& operator=(const CMaskedBitmapTransform&) { return *this; }

  /// Splits a 32-bit image with alpha into a 24-bit image and a mask. Pixels of alpha 0 are transparent and
  /// get the transparent colour; all others are composited over the background, each channel being (channel x
  /// alpha + background x (255 - alpha)) / 255. \param source the signs of its width and height are ignored;
  /// its rows are always read bottom-up \param outImage receives the 24-bit image \param outMask receives the
  /// mask, or null when no pixel has alpha 0 \return 1; 0 with nothing written when memory runs out or an
  /// argument is unusable
  static int Spilt32BitsDIBForGIF(BITMAPINFOHEADER* source, DWORD background, DWORD transparent,
                                  BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask);

  /// Pads a frame with transparent margins. Pixels in the margins and those that the mask marks become 0.
  /// \param sourceMask may be null
  /// \param outImage receives the image, of the source's depth and palette
  /// \param outMask receives its mask
  /// \param left,top,right,bottom margins in pixels; negative ones cut
  /// \return 1; 0 with nothing written when memory runs out or an argument is unusable
  static int ExpandDIB(BITMAPINFOHEADER* source, BITMAPINFOHEADER* sourceMask, BITMAPINFOHEADER** outImage,
                       BITMAPINFOHEADER** outMask, int left, int top, int right, int bottom);

  /// Gives the pixels that a mask marks the transparent colour. A palette without that colour gets one entry
  /// more; a full palette also a greater depth: 1 becomes 4, 4 becomes 8, 8 becomes 24 bits. The unused bit
  /// of 16-bit pixels and the fourth byte of 32-bit ones become 0. \return the new image, or null when memory
  /// runs out
  static BITMAPINFOHEADER* OutputDIBStream(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask,
                                           DWORD transparent);

  /// Marks the pixels of a region transparent.
  /// \return a new mask; or, on purpose, the argument itself when it marks all of them already, so the caller
  ///         has to compare the two before releasing either; null when memory runs out
  static BITMAPINFOHEADER* FillMask(BITMAPINFOHEADER* mask, HRGN region);

  /// Sets the bits of a rectangle, clipped to the mask, to a value, in place.
  static void FillMaskDIBBits(BITMAPINFOHEADER* mask, const RECT& rect, bool value);

  /// A copy of a mask with the bits of a second one copied over it; null when memory runs out, which holds
  /// for the functions below too.
  static BITMAPINFOHEADER* MarkedMaskDIB(BITMAPINFOHEADER* mask, BITMAPINFOHEADER* second);

  /// A copy of an image of any depth in which all pixels of the part that it has in common with the mask have
  /// the value of its top-left pixel. The mask's bits are ignored, on purpose.
  static BITMAPINFOHEADER* MarkedBmpDIB(BITMAPINFOHEADER* image, BITMAPINFOHEADER* mask);

  /// A picture of a mask in two colours: that of the image's top-left pixel where the mask is transparent and
  /// its complement where it is opaque. \param image 16, 24 or 32 bits; painted pixels of 32 bits get alpha
  /// 255
  static BITMAPINFOHEADER* MarkHighBitsDIB(BITMAPINFOHEADER* image, BITMAPINFOHEADER* mask);

  /// The same for an image with a palette: the index of the top-left pixel, and that of the entry with the
  /// maximum difference from it.
  /// \param image 1, 4 or 8 bits
  static BITMAPINFOHEADER* MarkLowBitsDIB(BITMAPINFOHEADER* image, BITMAPINFOHEADER* mask);
};
