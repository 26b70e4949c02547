#pragma once

#include "dib/dib.h"
#include "platform/export.h"

/// \file
/// Operations on animation frames. A frame is a packed DIB of 1, 4, 8, 16, 24 or 32 bits; its mask is a 1-bit
/// packed DIB of the same size in which bit 1 marks a transparent pixel, and a null mask means a wholly
/// opaque frame. Coordinates count from the top-left pixel. The caller owns the results: images are released
/// with `delete[] reinterpret_cast<BYTE*>(image)`, regions with DeleteObject.

/// \name Reading, comparing and cutting
/// @{

/// Reads the colour of pixel x of a row of any depth. A 16-bit pixel is always read as 5-5-5, even if
/// the image's masks differ; the low three bits of its channels are 0.
/// \param row first byte of the row
/// \param bitCount bits a pixel. Of the depths that no DIB has, those up to 8 give palette entry 0 and those
///        above leave the out bytes alone
/// \param palette the entries of an image of at most 8 bits; not used above
DIBKIT_API void GetPixelRGB(BYTE* row, int x, int bitCount, RGBQUAD* palette, BYTE* red, BYTE* green,
                            BYTE* blue);

/// Compares two frames: size, transparent pixels and the colours of all others. Depths may differ; there is
/// no tolerance. \param maskA,maskB may be null \return 1 for frames that show the same picture, else 0, also
/// for unusable images
DIBKIT_API int CompareFrame(BITMAPINFOHEADER* frameA, BITMAPINFOHEADER* maskA, BITMAPINFOHEADER* frameB,
                            BITMAPINFOHEADER* maskB);

/// Cuts the bounding box of a region out of a frame, raw pixels and palette unchanged.
/// \param mask may be null
/// \param region in the frame's coordinates; pixels of its box outside the frame become 0 and transparent
/// \param outImage receives the piece: of the frame's depth, uncompressed; 0 x 0 for an empty region
/// \param outMask receives the piece's mask, in which pixels outside the region are transparent too, or null
///        when no pixel is transparent
/// \return 1, or 0 with neither pointer written when memory runs out or an argument is unusable
DIBKIT_API int CropFrame(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, HRGN region,
                         BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask);

/// Cuts the bounding box of a region out of a 32-bit image. Pixels outside the region keep their colour and
/// get alpha 0.
/// \param image read as 32 bits a pixel
/// \param region in the image's coordinates; pixels of its box outside the image become 0
/// \return the piece, 0 x 0 for an empty region; null when memory runs out or an argument is unusable
DIBKIT_API BITMAPINFOHEADER* Crop32BitsDIB(BITMAPINFOHEADER* image, HRGN region);
/// @}

/// \name Selecting and cleaning
/// @{

/// Selects, on the animation's canvas, the four-connected area around a point. From a transparent point it
/// spreads over transparent pixels, from an opaque one over opaque pixels within a tolerance of its colour.
/// Canvas outside the frame is transparent.
/// \param mask may be null
/// \param position canvas coordinates of the frame's top-left pixel
/// \param seed in canvas coordinates, inside the canvas; selected with any tolerance
/// \param tolerance maximum difference of each channel, 0 to 255; below 0 only the seed is selected. The
///        blue of 16-bit frames is compared unscaled, 0 to 31, so the tolerance covers eight times as much
/// \param canvas size of the canvas in pixels
/// \return the region in canvas coordinates, or null when memory runs out or an argument is unusable
DIBKIT_API HRGN MagicWandRegion(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, const POINT& position,
                                const POINT& seed, int tolerance, const SIZE& canvas);

/// The opaque pixels of a frame mask as a region.
/// \return the region; null for a mask without opaque pixels, an unusable one, or when memory runs out
DIBKIT_API HRGN CalcOpacityAreaRgn(BITMAPINFOHEADER* mask);

/// Counts the wholly transparent rows and columns at the four edges of a frame mask. A wholly transparent
/// mask gives its width for left and right and its height for top and bottom. An unusable mask leaves the
/// counts alone.
DIBKIT_API void CaclOpaqueBoundary(BITMAPINFOHEADER* mask, int* left, int* top, int* right, int* bottom);

/// Removes single stray pixels: every pixel becomes the median of its 3 x 3 neighbourhood, channel by
/// channel. Transparent pixels are unchanged and are no samples. Of an even number of samples the upper of
/// the two in the middle is used; a pixel without another sample is unchanged. \param frame read as 24 bits a
/// pixel \param mask may be null \param progress receives the percentage of finished lines and may cancel;
/// may be null \return the new frame; null when cancelled, when memory runs out or an argument is unusable
DIBKIT_API BITMAPINFOHEADER* RemoveNoiseDIB(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask,
                                            CQorCommonProgress* progress);

/// Pixelates a 32-bit image: every block shows the average colour of the block and of the column and row that
/// follow it. The result is opaque; the source's alpha is ignored.
/// \param image read as 32 bits a pixel
/// \param blockSize side of a block in pixels, at least 1; limited to the image's width and height
/// \return the new image; null for a block size below 1, an image without pixels, or when memory runs out
DIBKIT_API BITMAPINFOHEADER* Mosaic32BitsDIB(BITMAPINFOHEADER* image, int blockSize);
/// @}

/// \name Blending
/// Frames at positions on the canvas composited over each other. The work is done in 24 bits; a result of at
/// most 256 colours is returned as a palette image of 1, 4 or 8 bits with the colours in order of first
/// appearance. Transparent pixels take no part in the palette and are black, or index 0 where no other pixel
/// is black. Masks may be null. All return 1; or 0, with nothing written, when memory runs out or an argument
/// is unusable. After a success a null image or copied mask means that memory ran out at the very end.
/// @{

/// Fades a frame towards a colour: (frame x opacity + colour x (255 - opacity)) / 255 for each channel.
/// \param colour a COLORREF; its top byte is ignored
/// \param opacity weight of the frame, 0 to 255
/// \param outImage receives the image, of the frame's size
/// \param outMask receives a copy of the mask, or null without one
DIBKIT_API int AlphaBlendByColor(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, DWORD colour, BYTE opacity,
                                 BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask);

/// Fades frame A towards frame B, and towards a colour where B is transparent or absent.
/// \param positionA,positionB canvas coordinates of the frames' top-left pixels
/// \param colour a COLORREF; its top byte is ignored
/// \param opacity weight of frame A, 0 to 255
/// \param outImage receives the image, of A's size
/// \param outMask receives a copy of A's mask, or null without one
DIBKIT_API int AlphaBlendByFrame(BITMAPINFOHEADER* frameA, BITMAPINFOHEADER* maskA, const POINT& positionA,
                                 BITMAPINFOHEADER* frameB, BITMAPINFOHEADER* maskB, const POINT& positionB,
                                 DWORD colour, BYTE opacity, BITMAPINFOHEADER** outImage,
                                 BITMAPINFOHEADER** outMask);

/// Composites frame A over frame B without blending.
/// \param positionA,positionB canvas coordinates of the frames' top-left pixels
/// \param outImage receives the smallest image that holds both
/// \param outMask receives the mask of the pixels where neither frame is opaque, or null without such a pixel
/// \param outPosition receives the canvas coordinates of the image's top-left pixel
DIBKIT_API int MergeFrames(BITMAPINFOHEADER* frameA, BITMAPINFOHEADER* maskA, const POINT& positionA,
                           BITMAPINFOHEADER* frameB, BITMAPINFOHEADER* maskB, const POINT& positionB,
                           BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask, POINT* outPosition);

/// Composites frame A over frame B. Where A is opaque each channel is
/// (A x opacity + backdrop x (256 - opacity)) / 256, the backdrop being B or, where B is not opaque, a
/// colour. Where only B is opaque its pixels are unchanged. \param positionA,positionB canvas coordinates of
/// the frames' top-left pixels \param colour a COLORREF; its top byte is ignored \param opacity weight of
/// frame A, 0 to 256; above 256 each channel is the low byte of its formula \param canvas size of the canvas
/// in pixels, to which the result is clipped \param outImage receives the smallest image that holds both
/// frames, clipped to the canvas, possibly 0 x 0 \param outMask receives the mask of the pixels where neither
/// frame is opaque, or null without such a pixel \param outPosition receives the canvas coordinates of the
/// image's top-left pixel
DIBKIT_API int AlphaBlendByFrame2(BITMAPINFOHEADER* frameA, BITMAPINFOHEADER* maskA, const POINT& positionA,
                                  BITMAPINFOHEADER* frameB, BITMAPINFOHEADER* maskB, const POINT& positionB,
                                  DWORD colour, WORD opacity, const SIZE& canvas, BITMAPINFOHEADER** outImage,
                                  BITMAPINFOHEADER** outMask, POINT* outPosition);
/// @}

/// \name Filling
/// Colours are COLORREFs whose top byte is ignored. `percent` is the strength of the fill, 0 to 100: each
/// channel becomes (old x 256 + (fill - old) x s) >> 8 with s = percent x 256 / 100. `tolerance` is the
/// maximum difference from the target colour in each channel; a negative one matches nothing. Results are
/// reduced to a palette as those of the blends are.
/// @{

/// Tints every opaque pixel within the tolerance of a target colour.
/// \param mask may be null
/// \param outImage receives the image, of the frame's size
/// \param outMask receives a copy of the mask, or null without one
/// \return 1; 0 with nothing written when memory runs out or an argument is unusable
DIBKIT_API int ExtFillFrame(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, DWORD target, DWORD fill,
                            int percent, int tolerance, BITMAPINFOHEADER** outImage,
                            BITMAPINFOHEADER** outMask);

/// Tints the four-connected area around a seed of opaque pixels within the tolerance of a target colour. The
/// seed itself is always tinted, even if it is transparent or has another colour.
/// \param mask may be null
/// \param seed in the frame's coordinates, inside the frame
/// \param outImage receives the image, of the frame's size
/// \param outMask receives a copy of the mask, or null without one
/// \return 1, also with both images null when memory ran out for the copy of the mask; 0 when it ran out
///         before, both pointers then left alone or null, or when an argument is unusable
DIBKIT_API int ExtFillAdjacentArea(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, DWORD target, DWORD fill,
                                   int percent, int tolerance, const POINT& seed, BITMAPINFOHEADER** outImage,
                                   BITMAPINFOHEADER** outMask);

/// Extends a frame to its canvas and makes the transparent area around a seed opaque, in the fill colour
/// mixed with white, then cuts off the edges that are still transparent. \param mask may be null; of the
/// frame's size. Its palette needs a white entry, usually entry 1, which the
///        mask of the result has on the canvas outside the frame
/// \param position canvas coordinates of the frame's top-left pixel
/// \param canvas size of the canvas in pixels
/// \param percent share of the fill colour in the mixture: 0 paints white, 100 the fill colour
/// \param reserved ignored
/// \param seed in canvas coordinates, inside the canvas
/// \param outImage receives the result of InflateDib without the transparent edges
/// \param outMask receives its mask; null only when edges were cut off and the rest is wholly opaque
/// \param outPosition receives the canvas coordinates of the image's top-left pixel
/// \return 1; 0 when an argument is unusable or memory runs out. If that happens during the fill, null images
///         and the frame's position have been written
DIBKIT_API int ExtFillBkgnd(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, const POINT& position,
                            const SIZE& canvas, DWORD fill, int percent, int reserved, const POINT& seed,
                            BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask, POINT* outPosition);

/// Extends a frame by margins of a colour, which also replaces its transparent pixels; the result is opaque.
/// A palette without the colour gets one entry more; a full palette also a greater depth: 1 becomes 4, 4
/// becomes 8, 8 becomes 24 bits. The unused bit of 16-bit pixels and the fourth byte of 32-bit ones become 0.
/// \param mask may be null
/// \param left,top,right,bottom margins in pixels; negative ones cut
/// \return the new image; null for a null frame, a negative size, or when memory runs out
DIBKIT_API BITMAPINFOHEADER* InflateDib(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, DWORD fill, int left,
                                        int top, int right, int bottom);

/// Sets every bit of a 1-bit image outside a rectangle; bits inside it are unchanged.
/// \param bits pixel rows, the bottom line of the picture first, each padded to 4 bytes
/// \param width,height of the image in pixels
/// \param rect right and bottom exclusive; an empty one sets all
DIBKIT_API void ExclusiveWhiteFill2BitsDib(BYTE* bits, int width, int height, RECT& rect);
/// @}

/// \name Painting
/// Strokes and shapes as small pictures. Coordinates are those of the canvas; the out position is that of the
/// picture's top-left pixel.
/// @{

/// Draws a thick line in 1 on a 1-bit picture.
/// \param picture 1-bit image of the box's size to draw on, read by its palette's colours; null to draw on 0
/// \param box the part of the canvas that the picture shows
/// \param penWidth in pixels; up to 1 a line of single pixels
/// \param roundEnds 0 for square ends
/// \return a new 1-bit image of the box's size, palette black and white; null for an empty box, a picture of
///         another depth, or when memory runs out
DIBKIT_API BITMAPINFOHEADER* PaintLineOnPic(BITMAPINFOHEADER* picture, const RECT& box, const POINT& from,
                                            const POINT& to, int penWidth, int roundEnds);

/// Draws a polyline in 0 on 1, the reverse of PaintLineOnPic: as a frame mask the stroke is opaque. The
/// picture is the line's bounding box, extended by half the pen and 10 pixels on every side.
/// \param bounds rectangle of the canvas to which the picture is clipped
/// \param points corners of the line; a single one draws nothing
/// \param[out] position may be null
/// \return a new 1-bit image, palette black and white; null when nothing is inside the bounds or memory
///         runs out
DIBKIT_API BITMAPINFOHEADER* PaintLineOnPic2(const RECT& bounds, POINT* points, int count, int penWidth,
                                             int roundEnds, POINT* position);

/// Draws an ellipse or a rounded rectangle: index 0 (black) is its outline, 1 (red) its interior, 2 (white)
/// the background, trimmed to what is drawn. \param shape bounding rectangle of the shape \param penWidth of
/// the outline in pixels, half inside and half outside the shape; below 1 there is none \param ellipse 0 for
/// the rounded rectangle \param filled 0 for no interior \param corner width and height of the ellipse that
/// rounds the corners \param[out] position may be null \return a new 4-bit image of three palette entries;
/// null when nothing is drawn or memory runs out
DIBKIT_API BITMAPINFOHEADER* PaintShapeOnPic(const RECT& shape, int penWidth, int ellipse, int filled,
                                             const POINT& corner, POINT* position);

/// Draws a closed polygon in the same way, filled by the even-odd rule.
DIBKIT_API BITMAPINFOHEADER* PaintPolygonOnPic(POINT* points, int count, int penWidth, int filled,
                                               POINT* position);
/// @}
