#pragma once

#include "dib/dib.h"

/// \file
/// Operations on animation frames. A frame is a packed DIB of 1, 4, 8, 16, 24 or 32 bits; its mask is a 1-bit
/// packed DIB of the same size in which bit 1 marks a transparent pixel, and a null mask means a wholly
/// opaque frame. Coordinates count from the top-left pixel. Images handed back belong to the caller, who
/// releases them with `delete[] reinterpret_cast<BYTE*>(image)`, and regions with DeleteObject.

/// \name Reading, comparing and cutting
/// @{

/// Reads the colour of pixel x of a row of any depth. A 16-bit pixel is always read as 5-5-5, whatever the
/// image's masks say, and its low three bits are 0.
/// \param row first byte of the row
/// \param bitCount bits a pixel; one up to 8 without a format of its own gives palette entry 0, one above 8
///        leaves the out bytes alone
/// \param palette the entries of an image of at most 8 bits; not used above
DIBKIT_API void GetPixelRGB(BYTE* row, int x, int bitCount, RGBQUAD* palette, BYTE* red, BYTE* green,
                            BYTE* blue);

/// Tells whether two frames show the same picture: the same size, the same pixels transparent, and the same
/// colours elsewhere. Depths may differ; there is no tolerance.
/// \param maskA,maskB may be null
/// \return 1 when they do, 0 otherwise and for unusable images
DIBKIT_API int CompareFrame(BITMAPINFOHEADER* frameA, BITMAPINFOHEADER* maskA, BITMAPINFOHEADER* frameB,
                            BITMAPINFOHEADER* maskB);

/// Cuts the bounding box of a region out of a frame, raw pixels and palette unchanged.
/// \param mask may be null
/// \param region in the frame's coordinates; what of its box lies outside the frame comes out as 0 and
///        transparent
/// \param outImage receives the piece: of the frame's depth, uncompressed; 0 x 0 for an empty region
/// \param outMask receives the piece's mask, in which pixels outside the region are transparent too, or null
///        when no pixel is transparent
/// \return 1, or 0 with neither pointer written when memory runs out or an argument is unusable
DIBKIT_API int CropFrame(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, HRGN region,
                         BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask);

/// Cuts the bounding box of a region out of a 32-bit image. Pixels outside the region keep their colour and
/// get opacity 0. \param image read as 32 bits a pixel \param region in the image's coordinates; what of its
/// box lies outside the image comes out as 0 \return the piece, 0 x 0 for an empty region; null when memory
/// runs out or an argument is unusable
DIBKIT_API BITMAPINFOHEADER* Crop32BitsDIB(BITMAPINFOHEADER* image, HRGN region);
/// @}

/// \name Selecting and cleaning
/// @{

/// Selects, on the animation's canvas, the four-connected area around a point whose pixels share the point's
/// transparency and, where that is opaque, lie within a tolerance of its colour. Canvas outside the frame
/// counts as transparent.
/// \param mask may be null
/// \param position canvas coordinates of the frame's top-left pixel
/// \param seed in canvas coordinates, inside the canvas; selected whatever the tolerance
/// \param tolerance largest difference of each channel, 0 to 255; below 0 only the seed is selected. The blue
/// of
///        16-bit frames is compared unscaled, 0 to 31, so that it tolerates eight times as much
/// \param canvas size of the canvas in pixels
/// \return the region in canvas coordinates, or null when memory runs out or an argument is unusable
DIBKIT_API HRGN MagicWandRegion(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, const POINT& position,
                                const POINT& seed, int tolerance, const SIZE& canvas);

/// The opaque pixels of a frame mask as a region.
/// \return the region; null for a mask without opaque pixels, an unusable one, or when memory runs out
DIBKIT_API HRGN CalcOpacityAreaRgn(BITMAPINFOHEADER* mask);

/// Counts the wholly transparent lines of a frame mask at its four edges, in the order top, left, right,
/// bottom, each count restricted to what the ones before leave. A wholly transparent mask gives its width for
/// left and right and its height for top and bottom. An unusable mask leaves the counts alone.
DIBKIT_API void CaclOpaqueBoundary(BITMAPINFOHEADER* mask, int* left, int* top, int* right, int* bottom);

/// Removes single stray pixels: every pixel becomes the median of its 3 x 3 neighbourhood, each channel for
/// itself. Transparent pixels neither change nor count; of an even number of samples the upper middle one is
/// taken; a pixel without any other sample stays.
/// \param frame read as 24 bits a pixel
/// \param mask may be null
/// \param progress told the percentage of lines done, asked whether to cancel; may be null
/// \return the new frame; null when cancelled, when memory runs out or an argument is unusable
DIBKIT_API BITMAPINFOHEADER* RemoveNoiseDIB(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask,
                                            CQorCommonProgress* progress);

/// Pixelates a 32-bit image: every block shows the average colour of the block and of the column and row that
/// follow it. The result is opaque; the source's opacity is not looked at.
/// \param image read as 32 bits a pixel
/// \param blockSize edge of a block in pixels, at least 1; lowered to the image's size
/// \return the new image; null for a block size below 1, an image without pixels, or when memory runs out
DIBKIT_API BITMAPINFOHEADER* Mosaic32BitsDIB(BITMAPINFOHEADER* image, int blockSize);
/// @}
