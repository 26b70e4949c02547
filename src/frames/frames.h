#pragma once

#include "dib/dib.h"
#include "platform/export.h"

/// \file
/// Operations on the frames of an animation: compare, crop, magic wand, remove noise, pixelate, blend, merge,
/// fill, draw lines and shapes. (32-bit images with alpha: dib32/dib32.h. What changed between two frames:
/// split/split.h.)
///
/// \code
/// const OwnedRegion selected(MagicWandRegion(frame, nullptr, {0, 0}, seed, tolerance, canvas));
/// OwnedDib piece, mask;
/// if (CropFrame(frame, nullptr, selected.get(), out(piece), out(mask)) == 0) return nullptr;
/// return piece;
/// \endcode
///
/// A frame is a packed DIB of 1, 4, 8, 16, 24 or 32 bits. Its mask is a 1-bit packed DIB of the same size in
/// which bit 1 marks a transparent pixel; a null mask means an opaque frame. Coordinates count from the
/// top-left pixel.
///
/// Returned images and regions are new and belong to the caller (dibkit::OwnedDib, dibkit::OwnedRegion;
/// dibkit::out for the out-parameters).
///
/// Threads: any calls may run at once, as no argument is written but by ExclusiveWhiteFill2BitsDib. Aliasing:
/// frames and masks may be the same image. Sizes: as in dibkit.h. Cost: one or two passes over the pixels,
/// whatever the tolerance, block size or shape of the region.

/// \name Read, compare and crop
/// @{

/// Reads the colour of pixel x of a row of any depth. A 16-bit pixel is always read as 5-5-5, also in an
/// image with bit fields, and its low three bits are 0.
/// \param row first byte of the row; null reads palette entry 0 at up to 8 bits, and nothing above
/// \param x 0 or more; below 0 nothing is read
/// \param bitCount bits per pixel; one up to 8 that is not 1, 4 or 8 reads palette entry 0
/// \param palette entries of an image of at most 8 bits; null reads nothing; not used above 8 bits
/// \param red,green,blue receive the colour; unchanged if nothing is read, and if any of them is null
DIBKIT_API void GetPixelRGB(BYTE* row, int x, int bitCount, RGBQUAD* palette, BYTE* red, BYTE* green,
                            BYTE* blue);

/// Whether two frames show the same picture: the same size, the same transparent pixels, and the same colours
/// elsewhere. Depths may differ; there is no tolerance. Stops at the first line that differs.
/// \param maskA,maskB may be null
/// \return 1 if they do; 0 if not, and for unusable images
DIBKIT_API int CompareFrame(BITMAPINFOHEADER* frameA, BITMAPINFOHEADER* maskA, BITMAPINFOHEADER* frameB,
                            BITMAPINFOHEADER* maskB);

/// Crops a frame to the bounding box of a region, raw pixels and palette unchanged.
/// \param mask may be null
/// \param region in the frame's coordinates, not null; the part of its box outside the frame is 0 and
///     transparent
/// \param outImage receives the piece: of the frame's depth, uncompressed; 0 x 0 for an empty region
/// \param outMask receives the piece's mask, in which pixels outside the region are transparent too; null if
///     no pixel is transparent
/// \return 1; 0 with neither pointer written for an unusable argument or when memory runs out
DIBKIT_API int CropFrame(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, HRGN region,
                         BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask);

/// Crops a 32-bit image to the bounding box of a region. Pixels outside the region keep their colour and get
/// alpha 0.
/// \param image read as 32 bits a pixel
/// \param region in the image's coordinates, not null; the part of its box outside the image is 0
/// \return the piece, 0 x 0 for an empty region; null for an unusable argument or when memory runs out
DIBKIT_API BITMAPINFOHEADER* Crop32BitsDIB(BITMAPINFOHEADER* image, HRGN region);
/// @}

/// \name Select, measure and filter
/// @{

/// The magic wand on the animation's canvas: selects the four-connected area around a seed whose pixels are
/// transparent as the seed is, or are opaque as the seed is and within a tolerance of its colour. Canvas
/// outside the frame is transparent. Needs memory for a bit per pixel of the canvas.
/// \param mask may be null
/// \param position canvas coordinates of the frame's top-left pixel
/// \param seed in canvas coordinates, inside the canvas; always selected
/// \param tolerance largest difference of each channel, 0 to 255; below 0 only the seed is selected. The blue
///     of 16-bit frames is compared unscaled, 0 to 31, so that it tolerates eight times as much
/// \param canvas size of the canvas in pixels
/// \return the region in canvas coordinates; null for an unusable argument or when memory runs out
DIBKIT_API HRGN MagicWandRegion(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, const POINT& position,
                                const POINT& seed, int tolerance, const SIZE& canvas);

/// The opaque pixels of a mask as a region.
/// \return the region; null for a mask without opaque pixels, an unusable mask, or when memory runs out
DIBKIT_API HRGN CalcOpacityAreaRgn(BITMAPINFOHEADER* mask);

/// Measures the transparent margins of a mask: the rows and columns at its edges without an opaque pixel, in
/// pixels. A mask without opaque pixels gives its width for left and right and its height for top and bottom.
/// An unusable mask or a null pointer leaves all four alone.
DIBKIT_API void CaclOpaqueBoundary(BITMAPINFOHEADER* mask, int* left, int* top, int* right, int* bottom);

/// Removes single stray pixels by a median filter of 3 x 3: every channel becomes the median of its
/// neighbourhood. Transparent pixels neither change nor count. Of an even number of samples the upper middle
/// one is taken. (A median of any size: CDIB32::MedianFilter32BitsImage.)
/// \param frame read as 24 bits a pixel
/// \param mask may be null
/// \param progress may be null
/// \return the new frame; null for an unusable argument, after a cancel, and when memory runs out
DIBKIT_API BITMAPINFOHEADER* RemoveNoiseDIB(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask,
                                            CQorCommonProgress* progress);

/// Pixelates a 32-bit image (mosaic): every block shows the average colour of the block and of the column and
/// row that follow it. The result is opaque and has the image's size; alpha does not count.
/// \param image read as 32 bits a pixel
/// \param blockSize edge of a block in pixels, at least 1; at most the image's size is used
/// \return the new image; null for a block size below 1, an image without pixels, or when memory runs out
DIBKIT_API BITMAPINFOHEADER* Mosaic32BitsDIB(BITMAPINFOHEADER* image, int blockSize);
/// @}

/// \name Blend and merge
/// Frames are placed on the canvas, one over the other. Channels are mixed in 24 bits; a result of at most
/// 256 colours becomes a palette image of 1, 4 or 8 bits, with the colours in order of first appearance.
/// Transparent pixels are not in the palette; they are black, or index 0 if no other pixel is black. Masks
/// may be null.
///
/// \return 1; 0 with nothing written for an unusable argument or when memory runs out. If memory runs out at
///     the very end, 1 with a null image, or with a null copy of a mask.
/// @{

/// Fades a frame to a colour: (frame x opacity + colour x (255 - opacity)) / 255 in each channel.
/// \param colour a COLORREF; its top byte is ignored
/// \param opacity weight of the frame, 0 to 255
/// \param outImage receives the image, of the frame's size
/// \param outMask receives a copy of the mask, or null without one
DIBKIT_API int AlphaBlendByColor(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, DWORD colour, BYTE opacity,
                                 BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask);

/// Fades frame A to frame B (cross-fade), and to a colour where B does not show.
/// \param positionA,positionB canvas coordinates of the frames' top-left pixels
/// \param colour a COLORREF; its top byte is ignored
/// \param opacity weight of frame A, 0 to 255
/// \param outImage receives the image, of A's size
/// \param outMask receives a copy of A's mask, or null without one
DIBKIT_API int AlphaBlendByFrame(BITMAPINFOHEADER* frameA, BITMAPINFOHEADER* maskA, const POINT& positionA,
                                 BITMAPINFOHEADER* frameB, BITMAPINFOHEADER* maskB, const POINT& positionB,
                                 DWORD colour, BYTE opacity, BITMAPINFOHEADER** outImage,
                                 BITMAPINFOHEADER** outMask);

/// Merges frame A over frame B, without blending.
/// \param positionA,positionB canvas coordinates of the frames' top-left pixels
/// \param outImage receives the smallest image that holds both
/// \param outMask receives the mask of what neither frame shows; null if there is no such pixel
/// \param outPosition receives the canvas coordinates of the image's top-left pixel
DIBKIT_API int MergeFrames(BITMAPINFOHEADER* frameA, BITMAPINFOHEADER* maskA, const POINT& positionA,
                           BITMAPINFOHEADER* frameB, BITMAPINFOHEADER* maskB, const POINT& positionB,
                           BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask, POINT* outPosition);

/// Merges frame A over frame B and blends A with its backdrop, B or a colour:
/// (A x opacity + backdrop x (256 - opacity)) / 256 in each channel. Where only B shows, it is unchanged.
/// \param positionA,positionB canvas coordinates of the frames' top-left pixels
/// \param colour a COLORREF; its top byte is ignored
/// \param opacity weight of frame A, 0 to 256; not clamped: above 256 the low byte of each channel counts
/// \param canvas size of the canvas in pixels, to which the result is cut
/// \param outImage receives the smallest image that holds both frames, cut to the canvas, possibly 0 x 0
/// \param outMask receives the mask of what neither frame shows; null if there is no such pixel
/// \param outPosition receives the canvas coordinates of the image's top-left pixel
DIBKIT_API int AlphaBlendByFrame2(BITMAPINFOHEADER* frameA, BITMAPINFOHEADER* maskA, const POINT& positionA,
                                  BITMAPINFOHEADER* frameB, BITMAPINFOHEADER* maskB, const POINT& positionB,
                                  DWORD colour, WORD opacity, const SIZE& canvas, BITMAPINFOHEADER** outImage,
                                  BITMAPINFOHEADER** outMask, POINT* outPosition);
/// @}

/// \name Fill
/// Fills with one colour; there are no gradients or patterns. Colours are COLORREFs whose top byte is
/// ignored. `percent` is the strength of the fill, 0 to 100: each channel becomes (old x 256 + (fill - old) x
/// s) >> 8 with s = percent x 256 / 100. `tolerance` is the largest difference from the target colour in each
/// channel; a negative one matches nothing. Results become palette images as those of the blends do.
/// @{

/// Fills every opaque pixel near a target colour, connected or not.
/// \param mask may be null
/// \param outImage receives the image, of the frame's size
/// \param outMask receives a copy of the mask, or null without one
/// \return 1; 0 with nothing written for an unusable argument or when memory runs out
DIBKIT_API int ExtFillFrame(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, DWORD target, DWORD fill,
                            int percent, int tolerance, BITMAPINFOHEADER** outImage,
                            BITMAPINFOHEADER** outMask);

/// Flood fill: fills the four-connected area of opaque pixels near a target colour around a seed. The seed
/// itself is always filled, also if it is transparent or has another colour.
/// \param mask may be null
/// \param seed in the frame's coordinates, inside the frame
/// \param outImage receives the image, of the frame's size
/// \param outMask receives a copy of the mask, or null without one
/// \return 1; 0 for an unusable argument with nothing written, and when memory runs out, with both pointers
///     unchanged or null. If only the copy of the mask fails, 1 with both null
DIBKIT_API int ExtFillAdjacentArea(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, DWORD target, DWORD fill,
                                   int percent, int tolerance, const POINT& seed, BITMAPINFOHEADER** outImage,
                                   BITMAPINFOHEADER** outMask);

/// Flood fill of the background: extends a frame to its canvas, makes the transparent area around a seed
/// opaque, in the fill colour mixed with white, and trims the margins that are still transparent. Each call
/// that trims keeps one region of the platform for good; hosts have always seen that.
/// \param mask may be null; of the frame's size, with a white palette entry, which marks the canvas beside
///     the frame
/// \param position canvas coordinates of the frame's top-left pixel
/// \param canvas size of the canvas in pixels
/// \param percent share of the fill colour in the mixture: 0 fills with white, 100 with the fill colour
/// \param reserved ignored
/// \param seed in canvas coordinates, inside the canvas
/// \param outImage receives the image: what InflateDib makes of the frame, trimmed
/// \param outMask receives its mask; null only if something was trimmed and the rest is opaque
/// \param outPosition receives the canvas coordinates of the image's top-left pixel
/// \return 1; 0 for an unusable argument or when memory runs out. If that happens during the fill, null
///     images and the frame's position are written, else nothing
DIBKIT_API int ExtFillBkgnd(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, const POINT& position,
                            const SIZE& canvas, DWORD fill, int percent, int reserved, const POINT& seed,
                            BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask, POINT* outPosition);

/// Adds margins in a colour, which also replaces transparent pixels (flattens): the result is opaque. A
/// palette without the colour gets one more entry; if it is full, the depth grows from 1 to 4, 4 to 8 or 8 to
/// 24 bits. 16-bit pixels lose their unused bit, 32-bit ones their fourth byte.
/// \param mask may be null
/// \param fill a COLORREF
/// \param left,top,right,bottom margins in pixels; negative ones cut
/// \return the new image; null for an unusable frame or mask, a negative size, or when memory runs out
DIBKIT_API BITMAPINFOHEADER* InflateDib(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, DWORD fill, int left,
                                        int top, int right, int bottom);

/// Sets every bit of a 1-bit image outside a rectangle, in place; bits inside it are unchanged.
/// \param bits pixel rows as in a packed DIB: the bottom line of the picture first, each padded to 4 bytes
/// \param width,height of the image in pixels; the caller vouches for the size of `bits`
/// \param rect right and bottom exclusive; an empty one sets all
DIBKIT_API void ExclusiveWhiteFill2BitsDib(BYTE* bits, int width, int height, RECT& rect);
/// @}

/// \name Draw lines and shapes
/// Each gives a new palette image just large enough, and the place of its top-left pixel, in the coordinates
/// of the canvas. Shapes are not anti-aliased. Cost: one pass over the picture; a surface of the platform
/// holds it meanwhile.
/// @{

/// Draws a thick line with bits 1 on a 1-bit picture.
/// \param picture 1-bit image of the box's size to start from, by the colours of its palette; null starts
///     from 0
/// \param box the part of the canvas that the picture shows; right and bottom exclusive
/// \param penWidth in pixels; up to 1 a line of single pixels
/// \param roundEnds 0 for square ends
/// \return a new 1-bit image of the box's size, palette black and white; null for an empty box, a picture of
///     another depth, or when memory runs out
DIBKIT_API BITMAPINFOHEADER* PaintLineOnPic(BITMAPINFOHEADER* picture, const RECT& box, const POINT& from,
                                            const POINT& to, int penWidth, int roundEnds);

/// Draws a polyline with bits 0 on 1, the reverse of PaintLineOnPic: as a mask, the stroke is opaque. The
/// picture covers the line with half the pen and 10 pixels around it.
/// \param bounds what the picture is cut to
/// \param points vertices of the line; a single one draws nothing
/// \param penWidth,roundEnds as in PaintLineOnPic
/// \param[out] position may be null
/// \return a new 1-bit image, palette black and white; null if nothing is inside the bounds or when memory
///     runs out
DIBKIT_API BITMAPINFOHEADER* PaintLineOnPic2(const RECT& bounds, POINT* points, int count, int penWidth,
                                             int roundEnds, POINT* position);

/// Draws an ellipse or a rounded rectangle: index 0 (black) is the outline, 1 (red) the interior, 2 (white)
/// the background. The image is trimmed to what is drawn. Each call that trims keeps one region of the
/// platform for good; hosts have always seen that.
/// \param shape bounding rectangle of the shape, right and bottom exclusive
/// \param penWidth width of the outline in pixels, centred on the edge of the shape; below 1 there is none
/// \param ellipse 0 for the rounded rectangle
/// \param filled 0 for no interior
/// \param corner width and height of the ellipse that rounds the corners, in pixels
/// \param[out] position may be null
/// \return a new 4-bit image with three palette entries; null if nothing is drawn or when memory runs out
DIBKIT_API BITMAPINFOHEADER* PaintShapeOnPic(const RECT& shape, int penWidth, int ellipse, int filled,
                                             const POINT& corner, POINT* position);

/// Draws a closed polygon in the same way, filled by the even-odd rule.
/// \param points,count vertices; the last is joined to the first
DIBKIT_API BITMAPINFOHEADER* PaintPolygonOnPic(POINT* points, int count, int penWidth, int filled,
                                               POINT* position);
/// @}
