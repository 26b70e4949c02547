#pragma once

#include "dib/dib.h"
#include "platform/export.h"

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
/// get opacity 0.
/// \param image read as 32 bits a pixel
/// \param region in the image's coordinates; what of its box lies outside the image comes out as 0
/// \return the piece, 0 x 0 for an empty region; null when memory runs out or an argument is unusable
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
/// \param tolerance largest difference of each channel, 0 to 255; below 0 only the seed is selected. The
///        blue of 16-bit frames is compared unscaled, 0 to 31, so that it tolerates eight times as much
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

/// \name Blending
/// Frames at places on the canvas laid over each other. The work is done in 24 bits; a result of at most 256
/// colours comes back as a palette image with the colours in order of first appearance, 1, 4 or 8 bits deep.
/// Pixels left out are transparent in the out mask, take no part in the palette and hold black, or index 0
/// where no other pixel is black. Masks may be null. All give 1; or 0, with nothing written, when memory runs
/// out or an argument is unusable. After a success a null image or copied mask means that memory ran out at
/// the very end.
/// @{

/// Fades a frame towards a colour: (frame x opacity + colour x (255 - opacity)) / 255 for each channel.
/// \param colour a COLORREF; its top byte is ignored
/// \param opacity weight of the frame, 0 to 255
/// \param outImage receives the image, of the frame's size
/// \param outMask receives a copy of the mask, or null without one
DIBKIT_API int AlphaBlendByColor(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, DWORD colour, BYTE opacity,
                                 BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask);

/// Fades frame A towards frame B, and towards a colour where B does not show.
/// \param positionA,positionB canvas coordinates of the frames' top-left pixels
/// \param colour a COLORREF; its top byte is ignored
/// \param opacity weight of frame A, 0 to 255
/// \param outImage receives the image, of A's size
/// \param outMask receives a copy of A's mask, or null without one
DIBKIT_API int AlphaBlendByFrame(BITMAPINFOHEADER* frameA, BITMAPINFOHEADER* maskA, const POINT& positionA,
                                 BITMAPINFOHEADER* frameB, BITMAPINFOHEADER* maskB, const POINT& positionB,
                                 DWORD colour, BYTE opacity, BITMAPINFOHEADER** outImage,
                                 BITMAPINFOHEADER** outMask);

/// Lays frame A over frame B without blending.
/// \param positionA,positionB canvas coordinates of the frames' top-left pixels
/// \param outImage receives the smallest image that holds both
/// \param outMask receives the mask of what neither frame shows, or null when there is no such pixel
/// \param outPosition receives the image's place on the canvas
DIBKIT_API int MergeFrames(BITMAPINFOHEADER* frameA, BITMAPINFOHEADER* maskA, const POINT& positionA,
                           BITMAPINFOHEADER* frameB, BITMAPINFOHEADER* maskB, const POINT& positionB,
                           BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask, POINT* outPosition);

/// Lays frame A over frame B, blending A with what lies under it, B or a colour:
/// (A x opacity + under x (256 - opacity)) / 256 for each channel. Where only B shows it shows as it is.
/// \param positionA,positionB canvas coordinates of the frames' top-left pixels
/// \param colour a COLORREF; its top byte is ignored
/// \param opacity weight of frame A, 0 to 256; above 256 it is not clamped, the low byte of each channel
///        stands
/// \param canvas size of the canvas in pixels, to which the result is cut
/// \param outImage receives the smallest image that holds both frames, cut to the canvas, possibly 0 x 0
/// \param outMask receives the mask of what neither frame shows, or null when there is no such pixel
/// \param outPosition receives the image's place on the canvas
DIBKIT_API int AlphaBlendByFrame2(BITMAPINFOHEADER* frameA, BITMAPINFOHEADER* maskA, const POINT& positionA,
                                  BITMAPINFOHEADER* frameB, BITMAPINFOHEADER* maskB, const POINT& positionB,
                                  DWORD colour, WORD opacity, const SIZE& canvas, BITMAPINFOHEADER** outImage,
                                  BITMAPINFOHEADER** outMask, POINT* outPosition);
/// @}

/// \name Filling
/// Colours are COLORREFs whose top byte is ignored. `percent` is the strength of the fill, 0 to 100: each
/// channel becomes (old x 256 + (fill - old) x s) >> 8 with s = percent x 256 / 100. `tolerance` is the
/// largest difference from the target colour in each channel; a negative one matches nothing. Results are
/// reduced to a palette as those of the blends are.
/// @{

/// Tints every opaque pixel whose colour lies near a target colour.
/// \param mask may be null
/// \param outImage receives the image, of the frame's size
/// \param outMask receives a copy of the mask, or null without one
/// \return 1; 0 with nothing written when memory runs out or an argument is unusable
DIBKIT_API int ExtFillFrame(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, DWORD target, DWORD fill,
                            int percent, int tolerance, BITMAPINFOHEADER** outImage,
                            BITMAPINFOHEADER** outMask);

/// Tints the four-connected area of opaque pixels near a target colour that touches a seed. The seed itself
/// is always tinted, whatever its colour or transparency.
/// \param mask may be null
/// \param seed in the frame's coordinates, inside the frame
/// \param outImage receives the image, of the frame's size
/// \param outMask receives a copy of the mask, or null without one
/// \return 1, also with both images null when only the copy of the mask could not be had; 0 when memory runs
///         out before, both pointers then left alone or null, or when an argument is unusable
DIBKIT_API int ExtFillAdjacentArea(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, DWORD target, DWORD fill,
                                   int percent, int tolerance, const POINT& seed, BITMAPINFOHEADER** outImage,
                                   BITMAPINFOHEADER** outMask);

/// Places a frame on its canvas and makes the transparent area around a seed opaque, in the fill colour mixed
/// with white, then cuts off what is still transparent at the edges.
/// \param mask may be null; of the frame's size, with a white palette entry, which marks the canvas beside
///        the frame
/// \param position canvas coordinates of the frame's top-left pixel
/// \param canvas size of the canvas in pixels
/// \param percent share of the fill colour in the mixture: 0 paints white, 100 the fill colour
/// \param reserved ignored
/// \param seed in canvas coordinates, inside the canvas
/// \param outImage receives the image: what InflateDib makes of the frame, cut
/// \param outMask receives its mask; null only when something was cut and the rest is wholly opaque
/// \param outPosition receives the image's place on the canvas
/// \return 1; 0 when an argument is unusable or memory runs out, in the middle of the fill with null images
/// and
///         the frame's position written
DIBKIT_API int ExtFillBkgnd(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, const POINT& position,
                            const SIZE& canvas, DWORD fill, int percent, int reserved, const POINT& seed,
                            BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask, POINT* outPosition);

/// Grows a frame by margins in a colour, which also replaces its transparent pixels; the result is opaque. A
/// palette without the colour gets one entry more, where it is full with a greater depth: 1 to 4, 4 to 8, 8
/// to 24 bits. 16-bit pixels lose their unused bit, 32-bit ones their fourth byte.
/// \param mask may be null
/// \param left,top,right,bottom margins in pixels; negative ones cut
/// \return the new image; null for a null frame, a negative size, or when memory runs out
DIBKIT_API BITMAPINFOHEADER* InflateDib(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, DWORD fill, int left,
                                        int top, int right, int bottom);

/// Sets every bit of a 1-bit image outside a rectangle; bits inside it stay.
/// \param bits pixel rows, the bottom line of the picture first, each padded to 4 bytes
/// \param width,height of the image in pixels
/// \param rect right and bottom exclusive; an empty one sets all
DIBKIT_API void ExclusiveWhiteFill2BitsDib(BYTE* bits, int width, int height, RECT& rect);
/// @}

/// \name Painting
/// Strokes and shapes as small pictures. Coordinates are the canvas's; the out position is where the
/// picture's top-left pixel belongs on it.
/// @{

/// Draws a thick line in 1 on a 1-bit picture.
/// \param picture 1-bit image of the box's size to start from, by its palette's colours; null to start from 0
/// \param box the part of the canvas that the picture shows
/// \param penWidth in pixels; up to 1 a line of single pixels
/// \param roundEnds 0 for square ends
/// \return a new 1-bit image of the box's size, palette black and white; null for an empty box, a picture of
///         another depth, or when memory runs out
DIBKIT_API BITMAPINFOHEADER* PaintLineOnPic(BITMAPINFOHEADER* picture, const RECT& box, const POINT& from,
                                            const POINT& to, int penWidth, int roundEnds);

/// Draws a polyline in 0 on 1, the reverse of PaintLineOnPic: as a frame mask the stroke is opaque. The
/// picture just covers the line, with half the pen and 10 pixels around it.
/// \param bounds what the picture is cut to
/// \param points corners of the line; a single one draws nothing
/// \param[out] position may be null
/// \return a new 1-bit image, palette black and white; null when nothing lies in the bounds or memory
///         runs out
DIBKIT_API BITMAPINFOHEADER* PaintLineOnPic2(const RECT& bounds, POINT* points, int count, int penWidth,
                                             int roundEnds, POINT* position);

/// Draws an ellipse or a rounded rectangle: index 0 (black) its outline, 1 (red) its interior, 2 (white) the
/// background, trimmed to what is drawn.
/// \param shape the rectangle that the shape fills
/// \param penWidth of the outline in pixels, which its middle follows; below 1 there is none
/// \param ellipse 0 for the rounded rectangle
/// \param filled 0 for no interior
/// \param corner width and height of the ellipse that rounds the corners
/// \param[out] position may be null
/// \return a new 4-bit image of three palette entries; null when nothing is drawn or memory runs out
DIBKIT_API BITMAPINFOHEADER* PaintShapeOnPic(const RECT& shape, int penWidth, int ellipse, int filled,
                                             const POINT& corner, POINT* position);

/// Draws a closed polygon in the same way, filled by the even-odd rule.
DIBKIT_API BITMAPINFOHEADER* PaintPolygonOnPic(POINT* points, int count, int penWidth, int filled,
                                               POINT* position);
/// @}
