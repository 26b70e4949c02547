#pragma once

#include "dib/framework.h"
#include "platform/export.h"

/// \file
/// 32-bit images with alpha: create, composite, merge, fill, magic wand, scale, median, sharpen, soft
/// brushes, trim, editor overlays (checkerboard, marching ants). No blur, gradient or averaging scaler.
///
/// \code
/// const OwnedRegion selected(CDIB32::MagicWandRegion(picture, seed, tolerance));
/// CDIB32::Fill32DIBOpacityArea(picture, selected.get(), 0);
/// \endcode

/// Operations on 32-bit images: packed DIBs without palette or masks, bytes blue, green, red, alpha (0
/// transparent, 255 opaque). Colour is straight, not premultiplied. Points count from the top-left pixel.
/// Unless an operation says otherwise, a returned image is new and belongs to the caller, and an image that
/// is null, of another depth or with an unusable header gives null, FALSE or no change, as does a lack of
/// memory.
///
/// Threads: an image that a call writes (the first argument, and the source of BitBlt32DIB, Stretch32DIB,
/// ZoomIn32DIB and ZoomOut32DIB) must not be used by another. Aliasing: source and destination may be one
/// image; drawn pixels are then read again. Sizes: as in dibkit.h. Cost: one pass over the pixels, if not
/// given.
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

  /// A new image of one colour.
  /// \param width,height in pixels, 0 or more
  static BITMAPINFOHEADER* CreateSimple32BitsDIB(int width, int height, COLORREF colour, BYTE alpha);

  /// A 32-bit image of a picture of 1, 4, 8, 16, 24 or 32 bits. 16 bits are 5-5-5 (full white becomes 248);
  /// the fourth byte of a 32-bit picture is ignored.
  /// \param mask 1-bit image with the same top-left pixel; pixels beside it are clear; null for none
  /// \param normalAlpha,maskedAlpha alpha of pixels whose mask bit is clear, and set
  /// \note converts a 16-bit picture with bit fields by ConvertBitField16BitsDIBTo32BitsDIB: alpha 255 and 0
  static BITMAPINFOHEADER* ConvertTo32BitsDIB(BITMAPINFOHEADER* source, BITMAPINFOHEADER* mask,
                                              BYTE normalAlpha, BYTE maskedAlpha);

  /// A 32-bit image of a 16-bit BI_BITFIELDS picture with adjacent fields, red above green above blue, as in
  /// 5-6-5 and 5-5-5. A field of more than 8 bits reads as 0.
  /// \param mask as in ConvertTo32BitsDIB: alpha 0 where its bit is set, 255 elsewhere
  static BITMAPINFOHEADER* ConvertBitField16BitsDIBTo32BitsDIB(BITMAPINFOHEADER* source,
                                                               BITMAPINFOHEADER* mask);

  /// The lowest run of set bits in a colour mask; both results are 0 for a mask of 0.
  /// \param[out] shift number of clear bits below the run
  /// \param[out] length number of bits in the run
  static void CalcuMaskShift(DWORD mask, int& shift, int& length);

  /// Sets the colour of every pixel; alpha is unchanged.
  static void Make32BitsSimpleColorDIB(BITMAPINFOHEADER* image, COLORREF colour);

  /// Sets the alpha of every pixel; colours are unchanged.
  static void MakeAllPixelsSameOpacity(BITMAPINFOHEADER* image, BYTE alpha);

  /// Scales the alpha of every pixel by (255 - reduction) / 255, truncated.
  static void Reduce32BitsDIBOpacity(BITMAPINFOHEADER* image, BYTE reduction);

  /// Sets every pixel to the colour, opaque.
  static void Fill32DIBBackground(BITMAPINFOHEADER* image, BYTE red, BYTE green, BYTE blue);

  /// TRUE if every pixel is opaque.
  static BOOL IsFullOpacity32BitsImage(BITMAPINFOHEADER* const image);

  /// TRUE if some pixel is translucent: alpha 1 to 254.
  static BOOL IsTranslucence32BitsImage(BITMAPINFOHEADER* const image);

  /// TRUE if the point is inside the image and its pixel is not transparent.
  static BOOL IsIn32BitsDIB(BITMAPINFOHEADER* image, const POINT& point);

  /// Luminance of pixel a less that of pixel b, a comparator from dark to bright. The luminance of a pixel is
  /// (117 blue + 601 green + 306 red) / 1024, truncated.
  /// \param a,b each point to a pixel's bytes, of which the first three are read
  static int CompareColors(const void* a, const void* b);
  /// @}

  /// \name Composite and copy
  /// A source is combined with a destination. The origins are the places of their top-left pixels in a common
  /// space; the pixels that both cover are processed from the top row, each row from the left. Source and
  /// destination may be one image. A mask is an 8-bit image in the same space: only pixels under its non-zero
  /// bytes are processed.
  ///
  /// The last byte has one of three meanings. A reduction is subtracted from every source alpha, down to 0; 0
  /// is full strength. A transparency t scales source alpha by (255 - t) / 255; 0 is full strength. A
  /// strength s scales it by s / 255; 0 does nothing. All divisions truncate.
  /// @{

  /// Alpha of one layer over another: 255 - (255 - a)(255 - b) / 255.
  static BYTE CalcuOpacity(BYTE a, BYTE b);

  /// One channel of a layer over another, straight colour.
  /// \param dstAlpha,srcAlpha alpha of the lower and the upper layer; dstColour,srcColour their channels
  /// \param outAlpha alpha of the result, from CalcuOpacity; 0 leaves the sum undivided
  /// \return ((dstColour dstAlpha (255 - srcAlpha)) / 255 + srcColour srcAlpha) / outAlpha, at most 255
  static BYTE CalcuRGBValue(BYTE dstAlpha, BYTE srcAlpha, BYTE dstColour, BYTE srcColour, BYTE outAlpha);

  /// Composites the source over the destination (straight alpha "over"), exactly: alpha by CalcuOpacity,
  /// colours by CalcuRGBValue. Where both are transparent, the result is transparent black.
  static void CombineBlock(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                           BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE reduction);

  /// Composites the source over the destination in steps of 1/256. With d and a the alpha of destination and
  /// source and A = 256 (d + a) - d a, alpha becomes A / 256 and each channel c under a source channel s
  /// becomes (256 c d + (256 s - c d) a) / A. Pixels with a = 0 are unchanged.
  static void BitBlt32DIBPlain(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                               BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE reduction);

  /// Mixes all four bytes with the reduced source alpha a as weight: (byte (256 - a) + source byte a) / 256,
  /// the source byte for a = 255. The alpha byte that is mixed in is the source's own, not the reduced one.
  static void BitBlt32DIBMMX(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                             BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE reduction);

  /// Copies the pixels whose reduced alpha is 255. Translucent ones change the source, not the destination:
  /// with f = 256 a / 255 each of their channels becomes (256 s + (d - s) f) / 256.
  static void BitBlt32DIB(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                          BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE reduction);

  /// Mixes all four bytes in steps of 1/32768: with f = 32768 a / 255, a byte d under a source byte s becomes
  /// 2 (d (32768 - f) / 65536 + s f / 65536), which is always even. a = 255 copies, a = 0 does nothing.
  static void Mix32BitsDIBMMX(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                              BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE transparency);

  /// Mix32BitsDIBMMX with alpha, after the transparency, scaled by mask byte / 255.
  static void Mix32BitsDIBMMX_Mask(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                                   BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE transparency,
                                   BITMAPINFOHEADER* mask, const CPoint& maskOrigin);

  /// Composites alpha alone: with a the reduced source alpha, the last byte d of a destination pixel becomes
  /// (256 (a + d) - d a) / 256.
  /// \param destination of 8, 16, 24 or 32 bits
  static void BitBltDIBAlphaChannelPlain(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                                         BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE reduction);

  /// Eraser: subtracts the scaled source alpha from the destination's, down to 0. Colours are unchanged.
  static void Erase32BitsBlock(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                               BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE strength);

  /// Erase32BitsBlock where the mask is not 0; the mask's value does not scale the effect.
  static void Erase32BitsBlock(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                               BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE strength,
                               BITMAPINFOHEADER* mask, const CPoint& maskOrigin);

  /// Copies colours, and alpha less the reduction.
  static void CopyBlock(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                        BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE reduction);

  /// Copies whole pixels.
  static void TransformBlock(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                             BITMAPINFOHEADER* source, const POINT& sourceOrigin);

  /// Copies alpha alone.
  static void TransformAlphaChannelBlock(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                                         BITMAPINFOHEADER* source, const POINT& sourceOrigin);
  /// @}

  /// \name Merge
  /// Each makes a new image, the bounding box of its inputs: result pixel (i, j) is at (outOrigin->x + i,
  /// outOrigin->y + j) of the common space. The inputs are unchanged.
  /// \return TRUE if the image was made
  /// @{

  /// Composites `top` over `bottom` as CombineBlock does, after the subtraction of its reduction from the
  /// alpha of each. What neither covers is transparent black. On failure the out parameters are unchanged.
  static BOOL CombineDIBs(BITMAPINFOHEADER* bottom, const POINT& bottomOrigin, BYTE bottomReduction,
                          BITMAPINFOHEADER* top, const POINT& topOrigin, BYTE topReduction,
                          BITMAPINFOHEADER** out, POINT* outOrigin);

  /// Colours of `second` where it is visible, of `first` where only that is; every alpha is 0. In each row
  /// with a visible pixel, byte 12 (blue of the fourth pixel) is 255; in a row of fewer than four pixels that
  /// is a byte of a row further up, none above the top. On failure the out parameters are unchanged.
  static BOOL Merge32DIBs(BITMAPINFOHEADER* first, const POINT& firstOrigin, BITMAPINFOHEADER* second,
                          const POINT& secondOrigin, BITMAPINFOHEADER** out, POINT* outOrigin);

  /// The pixels of `top` that are not transparent, elsewhere those of `bottom`, without blending. On failure,
  /// and for an empty result, the image is null and outOrigin is written too.
  static BOOL Merge32BitsDIB(BITMAPINFOHEADER* bottom, POINT& bottomOrigin, BITMAPINFOHEADER* top,
                             POINT& topOrigin, BITMAPINFOHEADER** out, POINT* outOrigin);

  /// The image with a hole: transparent black inside `rect`. Failure as for two images.
  static BOOL Merge32BitsDIB(BITMAPINFOHEADER* image, POINT& origin, const RECT& rect, BITMAPINFOHEADER** out,
                             POINT* outOrigin);

  /// The image on a background: the opaque colour as far as `rect` reaches. The image's transparent pixels
  /// replace it, so the colour does not show through them. Failure as for two images.
  static BOOL Merge32BitsDIB(BITMAPINFOHEADER* image, POINT& origin, COLORREF colour, const RECT& rect,
                             BITMAPINFOHEADER** out, POINT* outOrigin);
  /// @}

  /// \name Fill
  /// A pixel matches a target if its alpha is the target's and each colour channel differs by at most
  /// `tolerance`; none matches if that is negative. The target is a pixel value, 0xAARRGGBB; the fill is a
  /// COLORREF, composited as by CombineBlock. Of its opacity or alpha the low byte counts.
  ///
  /// The variants for transparent pixels match alpha 0 and replace the pixels. The connected fills (flood
  /// fill) start at a seed, which is always filled, and spread to pixels left, right, above and below.
  ///
  /// The mask of a `_Mask` variant is an 8-bit image with its top-left pixel at `maskOrigin` in the image.
  /// Only pixels under its non-zero bytes match, and the byte scales the opacity: opacity x byte / 255,
  /// truncated. (For a seed beside the mask: the byte at that address, 0 outside the mask's block.)
  ///
  /// Cost: the pixels reached and their neighbours; up to a bit of memory per pixel.
  /// \return TRUE; FALSE for a null or unfit image or mask, a seed outside the image, and when memory runs
  ///     out, which may leave the fill half done
  /// @{

  /// Flood fill: fills the matching area connected with the seed.
  /// \param erase not 0: the pixels become transparent and keep their colour; `fill` and `opacity` are unused
  /// \param bounds receives the bounding rectangle of the filled pixels; may be null
  static BOOL ExtFillConnectedPixels(BITMAPINFOHEADER* image, DWORD target, COLORREF fill, int erase,
                                     int opacity, int tolerance, const POINT& seed, RECT* bounds);
  /// The same under a mask. A seed whose mask byte is 0 is composited at opacity 0: black if transparent.
  static BOOL ExtFillConnectedPixels_Mask(BITMAPINFOHEADER* image, DWORD target, COLORREF fill, int opacity,
                                          int tolerance, const POINT& seed, BITMAPINFOHEADER* mask,
                                          const CPoint& maskOrigin);

  /// Fills all matching pixels, connected or not (replace colour).
  static BOOL ExtFill32BitsDIB(BITMAPINFOHEADER* image, DWORD target, COLORREF fill, int opacity,
                               int tolerance);
  /// The same under a mask.
  static BOOL ExtFill32BitsDIB_Mask(BITMAPINFOHEADER* image, DWORD target, COLORREF fill, int opacity,
                                    int tolerance, BITMAPINFOHEADER* mask, const CPoint& maskOrigin);

  /// Fills the transparent area connected with the seed.
  static BOOL ExtFillConnectedTransPixels(BITMAPINFOHEADER* image, COLORREF colour, int alpha,
                                          const POINT& seed);
  /// The same under a mask. A seed whose mask byte is 0 is unchanged.
  static BOOL ExtFillConnectedTransPixels_Mask(BITMAPINFOHEADER* image, COLORREF colour, int alpha,
                                               const POINT& seed, BITMAPINFOHEADER* mask,
                                               const CPoint& maskOrigin);

  /// Fills all transparent pixels.
  static BOOL ExtFillTransBlock(BITMAPINFOHEADER* image, COLORREF colour, int alpha);
  /// Fills all transparent pixels under a mask.
  static BOOL ExtFillTransBlock_Mask(BITMAPINFOHEADER* image, COLORREF colour, int alpha,
                                     BITMAPINFOHEADER* mask, const CPoint& maskOrigin);

  /// Sets the alpha of a rectangle, as far as it is inside the image; colours are unchanged.
  static BOOL Fill32DIBOpacityArea(BITMAPINFOHEADER* image, const RECT& area, BYTE alpha);
  /// Sets the alpha of a region, as far as it is inside the image; colours are unchanged.
  /// \return FALSE also for a null region
  static BOOL Fill32DIBOpacityArea(BITMAPINFOHEADER* image, HRGN region, BYTE alpha);
  /// @}

  /// \name Select
  /// The magic wand selects the pixels similar to a seed: each colour channel differs by at most `tolerance`,
  /// and both are opaque (alpha 128 and above) or both transparent. A seed outside the image moves to the
  /// nearest edge. The region belongs to the caller (dibkit::OwnedRegion); it is null for an unfit image and
  /// when memory runs out.
  /// @{

  /// The similar pixels connected with the seed from left, right, above and below.
  static HRGN MagicWandRegion(BITMAPINFOHEADER* image, POINT seed, int tolerance);
  /// All similar pixels, connected or not; null for a negative tolerance. Each call keeps 1632 bytes for
  /// good.
  static HRGN MagicWandRegion2(BITMAPINFOHEADER* image, POINT seed, int tolerance);

  /// Adds a rectangle to a list of disjoint ones. If it shares a whole edge with one of the list, the two are
  /// merged, and the result again. Cost: one pass over the list for each merge.
  /// \param list room for count + 1 rectangles
  /// \return the new number of rectangles; 0 for a null list or a negative count
  static int AddRect(RECT* list, int count, const RECT& rect);
  /// @}

  /// \name Scale
  /// Draws a source over a destination, enlarged or reduced by the nearest pixel (no averaging). The
  /// operations that end in MMX draw as Mix32BitsDIBMMX. The others draw as BitBlt32DIB: opaque pixels are
  /// copied, translucent ones change the source, so an enlarged pixel shows its own earlier changes. A
  /// reduction is subtracted from the source alpha as a weight only: the alpha byte that is copied or mixed
  /// in is the source's own. Cost: the pixels drawn.
  /// @{

  /// Stretches to scale / 32768 of the size; the destination is at (0, 0).
  /// \param sourceOrigin place of the source's top-left pixel before scaling; it is scaled too
  /// \param scale 32768 is the same size; 0 does nothing
  /// \note the edges of the area are products of 32 bits, which wrap; a position exactly between two source
  ///     pixels takes the left or upper one
  static void Stretch32DIB(BITMAPINFOHEADER* destination, BITMAPINFOHEADER* source, const POINT& sourceOrigin,
                           DWORD scale);
  static void Stretch32DIB(BITMAPINFOHEADER* destination, BITMAPINFOHEADER* source, const POINT& sourceOrigin,
                           DWORD scale, BYTE reduction);
  static void Stretch32DIBMMX(BITMAPINFOHEADER* destination, BITMAPINFOHEADER* source,
                              const POINT& sourceOrigin, DWORD scale);
  static void Stretch32DIBMMX(BITMAPINFOHEADER* destination, BITMAPINFOHEADER* source,
                              const POINT& sourceOrigin, DWORD scale, BYTE reduction);

  /// Draws each source pixel as a block of factor x factor; the source's origin is multiplied as well.
  /// \param factor 1 or more; anything else does nothing
  static void ZoomIn32DIB(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                          BITMAPINFOHEADER* source, const POINT& sourceOrigin, int factor, BYTE reduction);
  static void ZoomIn32DIBMMX(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                             BITMAPINFOHEADER* source, const POINT& sourceOrigin, int factor, BYTE reduction);

  /// Draws the top-left pixel of each block of factor x factor source pixels. The source's placed rectangle
  /// is divided, towards zero.
  /// \param factor 1 or more; anything else does nothing
  /// \note ZoomOut32DIB takes the destination's width and height for its right and bottom edge, also at
  ///     another origin than (0, 0), so it draws on less of a destination at a positive one
  static void ZoomOut32DIB(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                           BITMAPINFOHEADER* source, const POINT& sourceOrigin, int factor, BYTE reduction);
  static void ZoomOut32DIBMMX(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                              BITMAPINFOHEADER* source, const POINT& sourceOrigin, int factor,
                              BYTE reduction);

  /// Draws the colours of an 8-bit picture on a 32-bit destination, whose alpha is unchanged.
  /// \param mask 1-bit image of the source's size whose set bits hide pixels, or null; bits that it lacks are
  ///     clear
  static void BitBlt8BitsDIB(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                             BITMAPINFOHEADER* source, BITMAPINFOHEADER* mask, const POINT& sourceOrigin);

  /// BitBlt8BitsDIB placed as ZoomIn32DIB.
  static void ZoomIn8BitsDIB(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                             BITMAPINFOHEADER* source, BITMAPINFOHEADER* mask, const POINT& sourceOrigin,
                             int factor);

  /// BitBlt8BitsDIB placed as ZoomOut32DIBMMX.
  static void ZoomOut8BitsDIB(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                              BITMAPINFOHEADER* source, BITMAPINFOHEADER* mask, const POINT& sourceOrigin,
                              int factor);
  /// @}

  /// \name Filters and soft brushes
  /// @{

  /// Median filter: each pixel becomes the median of its n x n neighbourhood by the luminance of
  /// CompareColors: of count pixels, from dark to bright, the one at index count / 2, with its alpha. The
  /// neighbourhood starts n / 2 to the left of and above the pixel and ends at the edges of the image. Of
  /// pixels of one luminance any may be taken. Cost: about the same for each pixel from n = 12 on; a copy of
  /// the image.
  /// \param n side of the neighbourhood in pixels; up to 1 nothing is done
  static void MedianFilter32BitsImage(BITMAPINFOHEADER* image, int n);

  /// Sharpens the colours by a 3 x 3 kernel with -1 around a centre of k + 8, divided by k, towards zero.
  /// Edge pixels repeat outside the image; alpha is unchanged.
  /// \param k 1 sharpens most, larger values less; below 1 there is no division, which finds edges
  static void Sharpen32BitsImage(BITMAPINFOHEADER* image, int k);

  /// A soft eraser: subtracts amount x c / n^2 from the alpha of each pixel under the brush, down to 0. n is
  /// the least of `size` and the brush's width and height, so at most 46,340, and n^2 fits 32 bits. c counts
  /// the brush's non-zero bytes in the box of n x n that starts n / 2 to the left of and above the pixel (a
  /// box blur). Cost: one pass over the brush, whatever n.
  /// \param brush an 8-bit image
  /// \param position place of the brush's top-left pixel in the destination
  /// \param amount 0 to 255; other values follow the formula in 32-bit arithmetic that wraps
  /// \param size width of the feathered edge in pixels; below 1 nothing is done
  /// \param clip pixels outside this region are unchanged; null for no limit
  static void SmoothBlock(BITMAPINFOHEADER* destination, BITMAPINFOHEADER* brush, const POINT& position,
                          int amount, int size, HRGN clip);
  /// A soft brush: adds (255 - amount) x c / n^2 to the alpha of each pixel under the brush, up to 255;
  /// amount 0 is the strongest. Everything else is as in SmoothBlock.
  static void SmoothFillBlock(BITMAPINFOHEADER* destination, BITMAPINFOHEADER* brush, const POINT& position,
                              int amount, int size, HRGN clip);
  /// The soft brush where the pixel of `reference` at the same place is not transparent.
  /// \param reference a 32-bit image as wide as the destination, which it may be; rows that it lacks are
  ///     unchanged
  static void SmoothFillBlock(BITMAPINFOHEADER* destination, BITMAPINFOHEADER* brush,
                              BITMAPINFOHEADER* reference, const POINT& position, int amount, int size,
                              HRGN clip);
  /// @}

  /// \name Trim and mask
  /// @{

  /// Measures the transparent margins, in pixels. An image without a visible pixel sets `top` to its height
  /// and leaves the other three unchanged.
  static void CheckBlankBorder(BITMAPINFOHEADER* image, int* left, int* top, int* right, int* bottom);

  /// A new image without the given margins.
  /// \return null also for a margin below 0 and for margins that overlap
  static BITMAPINFOHEADER* Trim32BitsDIB(BITMAPINFOHEADER* image, int left, int top, int right, int bottom);

  /// A new 1-bit image of the same size whose bits are 1 where the image is transparent, as an icon's mask.
  /// Both palette entries are black.
  static BITMAPINFOHEADER* CreateIconMaskFromAlphaChannel(BITMAPINFOHEADER* image);

  /// A new image of one colour with the image's own alpha: its silhouette, for a shadow.
  static BITMAPINFOHEADER* CreateParaShadowDIB(BITMAPINFOHEADER* const image, COLORREF colour);
  /// @}

  /// \name Editor overlays
  /// What an editor draws on its canvas, a 32-bit image: transparency and the outline of a selection. Colours
  /// change, alpha never does.
  /// @{

  /// Draws a checkerboard of squares of 8 x 8 pixels, the first of colour 1.
  /// \param xOffset,yOffset place of the canvas's top-left pixel in the pattern, 0 or more. (Below 0 the
  ///     squares next to the origin are joined and colour 2 prevails.)
  static void Init32DIBBackground(BITMAPINFOHEADER* canvas, BYTE red1, BYTE green1, BYTE blue1, BYTE red2,
                                  BYTE green2, BYTE blue2, int xOffset, int yOffset);

  /// Hatches with both diagonals, every 8 pixels; pixels between the lines are unchanged.
  /// \param offset place of the canvas's top-left pixel in the pattern
  static void Init32DIBWithHatedLines(BITMAPINFOHEADER* canvas, const CPoint& offset, COLORREF colour);

  /// One side of a dashed outline: three pixels of colour 2, three of colour 1 and so on. Draw the sides in
  /// the order top, right, bottom, left: each starts at the corner that the one before has drawn.
  /// \param canvasOrigin place of the canvas's top-left pixel in the space of the coordinates
  /// \param a,b left and right of the rectangle for top and bottom sides, else its top and bottom; inclusive
  /// \param fixed the row or column of the side
  /// \param phase 0 to 5 where the dashes begin, or what the side before returned; a negative one gives
  ///     colour 2 for the pixels before its zero
  /// \return the phase for the next side: the pattern position of the last pixel drawn; the position before
  ///     `phase` if the side is outside the canvas, 0 if the canvas cuts off all of it
  /// @{
  static int DrawTopHatchedLine(BITMAPINFOHEADER* canvas, const POINT& canvasOrigin, int a, int b, int fixed,
                                BYTE red1, BYTE green1, BYTE blue1, BYTE red2, BYTE green2, BYTE blue2,
                                int phase);
  static int DrawRightHatchedLine(BITMAPINFOHEADER* canvas, const POINT& canvasOrigin, int a, int b,
                                  int fixed, BYTE red1, BYTE green1, BYTE blue1, BYTE red2, BYTE green2,
                                  BYTE blue2, int phase);
  static int DrawBottomHatchedLine(BITMAPINFOHEADER* canvas, const POINT& canvasOrigin, int a, int b,
                                   int fixed, BYTE red1, BYTE green1, BYTE blue1, BYTE red2, BYTE green2,
                                   BYTE blue2, int phase);
  static int DrawLeftHatchedLine(BITMAPINFOHEADER* canvas, const POINT& canvasOrigin, int a, int b, int fixed,
                                 BYTE red1, BYTE green1, BYTE blue1, BYTE red2, BYTE green2, BYTE blue2,
                                 int phase);
  /// @}

  /// Outlines a selection with black and white dashes (marching ants, with phases 0 to 5 one after the
  /// other).
  /// \param canvasOrigin place of the canvas's top-left pixel in the space of the selection
  static void DrawSelectedFlag(BITMAPINFOHEADER* canvas, const POINT& canvasOrigin, const RECT& selection,
                               int phase);

  /// The stroke of a line tool, as coverage: 0 or 255, not anti-aliased.
  /// \param area what the result is cut to; its corner is the origin of the out point
  /// \param from,to ends, in the space of the area
  /// \param penWidth in pixels; up to 1 a line of single pixels
  /// \param margin pixels around the stroke, at least 2 on each side
  /// \param roundedCaps 0 for square ends
  /// \param clip pixels outside this region are 0; in the space of the area; null for no limit
  /// \param[out] origin place of the result's top-left pixel, from the area's corner; (0, 0) with a null
  ///     result
  /// \return a new 8-bit gray image, all 0 if its box misses the line; null if the box has no pixel in the
  ///     area and the clip region's box
  static BITMAPINFOHEADER* GenerateLine(const RECT& area, const POINT& from, const POINT& to, int penWidth,
                                        int margin, int roundedCaps, HRGN clip, POINT* origin);
  /// @}
};
