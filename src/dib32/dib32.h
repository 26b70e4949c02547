#pragma once

#include "dib/framework.h"
#include "platform/export.h"

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
  /// \param width,height in pixels, 0 or more
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
  /// common space, and touch the pixels that both cover, from the top row, each row from the left; source and
  /// destination may be one image. A mask is an 8-bit image placed in the same space, which limits the
  /// operation to the pixels that it covers with a byte other than 0.
  ///
  /// The last byte has one of three senses. A reduction is taken off every source opacity, down to 0, and 0
  /// means full strength. A transparency t scales source opacities by (255 - t) / 255, 0 again meaning full
  /// strength. A strength s scales them by s / 255, and 0 does nothing. All divisions truncate.
  /// @{

  /// Opacity of a layer laid over another: 255 - (255 - a)(255 - b) / 255.
  static BYTE CalcuOpacity(BYTE a, BYTE b);

  /// One colour channel of a layer laid over another, as straight colour.
  /// \param dstAlpha,srcAlpha opacities of the lower and the upper layer
  /// \param dstColour,srcColour their channels
  /// \param outAlpha opacity of the result, from CalcuOpacity; 0 leaves the sum undivided
  /// \return ((dstColour dstAlpha (255 - srcAlpha)) / 255 + srcColour srcAlpha) / outAlpha, at most 255
  static BYTE CalcuRGBValue(BYTE dstAlpha, BYTE srcAlpha, BYTE dstColour, BYTE srcColour, BYTE outAlpha);

  /// Composes the source over the destination, exactly: opacity by CalcuOpacity, colours by CalcuRGBValue.
  /// Where both opacities are 0 the destination becomes transparent black.
  static void CombineBlock(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                           BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE reduction);

  /// Composes the source over the destination in steps of 1/256. With d and a the two opacities and
  /// A = 256 (d + a) - d a, the opacity becomes A / 256 and each channel c under a source channel s
  /// (256 c d + (256 s - c d) a) / A. Pixels with a = 0 stay as they are.
  static void BitBlt32DIBPlain(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                               BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE reduction);

  /// Mixes all four bytes with the reduced source opacity a as weight: (byte (256 - a) + source byte a) /
  /// 256, the source byte for a = 255. The opacity byte that is mixed in is the source's own, not the reduced
  /// one.
  static void BitBlt32DIBMMX(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                             BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE reduction);

  /// Copies the pixels whose reduced opacity is 255. Translucent ones change the source, not the destination:
  /// with f = 256 a / 255 each of their channels becomes (256 s + (d - s) f) / 256. Callers that want to
  /// blend use one of the other operations.
  static void BitBlt32DIB(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                          BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE reduction);

  /// Mixes all four bytes in steps of 1/32768: with f = 32768 a / 255, a byte d under a source byte s becomes
  /// 2 (d (32768 - f) / 65536 + s f / 65536), which is always even. a = 255 copies, a = 0 does nothing.
  static void Mix32BitsDIBMMX(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                              BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE transparency);

  /// Mix32BitsDIBMMX with the opacities, after the transparency, scaled by mask byte / 255.
  static void Mix32BitsDIBMMX_Mask(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                                   BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE transparency,
                                   BITMAPINFOHEADER* mask, const CPoint& maskOrigin);

  /// Composes opacity alone: with a the reduced source opacity, the last byte d of a destination pixel
  /// becomes (256 (a + d) - d a) / 256.
  /// \param destination of 8, 16, 24 or 32 bits
  static void BitBltDIBAlphaChannelPlain(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                                         BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE reduction);

  /// Takes the scaled source opacity off the destination's opacity, down to 0. Colours stay.
  static void Erase32BitsBlock(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                               BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE strength);

  /// Erase32BitsBlock where the mask is not 0; the mask's value does not scale the effect.
  static void Erase32BitsBlock(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                               BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE strength,
                               BITMAPINFOHEADER* mask, const CPoint& maskOrigin);

  /// Copies colours, and opacities less the reduction.
  static void CopyBlock(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                        BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE reduction);

  /// Copies whole pixels.
  static void TransformBlock(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                             BITMAPINFOHEADER* source, const POINT& sourceOrigin);

  /// Copies opacities alone.
  static void TransformAlphaChannelBlock(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                                         BITMAPINFOHEADER* source, const POINT& sourceOrigin);
  /// @}

  /// \name Merging
  /// Each makes a new image that covers all placed images and rectangles given, rules over the empty space
  /// between them included: result pixel (i, j) lies at (outOrigin->x + i, outOrigin->y + j) of the common
  /// space. The new image belongs to the caller; the inputs stay as they are.
  /// \return TRUE when the image was made
  /// @{

  /// Composes `top` over `bottom` as CombineBlock does, after taking its reduction off each one's opacities.
  /// What neither covers is transparent black. On failure the out parameters are left alone.
  static BOOL CombineDIBs(BITMAPINFOHEADER* bottom, const POINT& bottomOrigin, BYTE bottomReduction,
                          BITMAPINFOHEADER* top, const POINT& topOrigin, BYTE topReduction,
                          BITMAPINFOHEADER** out, POINT* outOrigin);

  /// Colours of `second` where it is visible, of `first` where only that is; every opacity is 0. In each row
  /// with a visible pixel byte 12 (the blue byte of its fourth pixel) is 255; in a row of fewer than four
  /// pixels that is a byte of a row further up the picture, and nothing above the top. On failure the out
  /// parameters are left alone.
  static BOOL Merge32DIBs(BITMAPINFOHEADER* first, const POINT& firstOrigin, BITMAPINFOHEADER* second,
                          const POINT& secondOrigin, BITMAPINFOHEADER** out, POINT* outOrigin);

  /// The pixels of `top` that are not transparent, elsewhere those of `bottom`, without blending. Failure, an
  /// empty result among it, gives a null image; the out parameters are written in every case.
  static BOOL Merge32BitsDIB(BITMAPINFOHEADER* bottom, POINT& bottomOrigin, BITMAPINFOHEADER* top,
                             POINT& topOrigin, BITMAPINFOHEADER** out, POINT* outOrigin);

  /// The image with a hole: transparent black inside `rect`. Failure as for two images.
  static BOOL Merge32BitsDIB(BITMAPINFOHEADER* image, POINT& origin, const RECT& rect, BITMAPINFOHEADER** out,
                             POINT* outOrigin);

  /// The image, and around it the opaque colour as far as `rect` reaches. The image's transparent pixels are
  /// kept, so the colour never shows through them. Failure as for two images.
  static BOOL Merge32BitsDIB(BITMAPINFOHEADER* image, POINT& origin, COLORREF colour, const RECT& rect,
                             BITMAPINFOHEADER** out, POINT* outOrigin);
  /// @}

  /// \name Fills
  /// A fill takes pixels by a box around a target: their opacity is exactly the target's, and each colour
  /// channel lies at most `tolerance` away from the target's. A negative tolerance takes nothing. The target
  /// is a pixel value, 0xAARRGGBB; the colour laid down is a COLORREF. Opacities are given as int and count
  /// by their low byte. Laying a colour is composing it over the pixel as CombineBlock does.
  ///
  /// The variants for transparent pixels take pixels of opacity 0, and replace them. The connected fills
  /// start at a seed, which is filled whatever it holds, and spread to pixels left, right, above and below.
  ///
  /// The mask of a `_Mask` variant is an 8-bit image whose top-left pixel lies at `maskOrigin` in the image.
  /// Only pixels that it covers with a byte other than 0 are taken, and the byte scales the opacity: opacity
  /// byte / 255, truncated. (For a seed that the mask does not cover, the byte is whatever lies at its
  /// address in the mask's block, 0 outside of it.)
  ///
  /// The result is TRUE when the fill is complete and FALSE when memory ran out, which may leave it half
  /// done, for a null or unfit image or mask, and for a seed outside the image.
  /// @{

  /// Fills the area connected with the seed.
  /// \param erase other than 0: the pixels become transparent and keep their colour; `fill` and `opacity` are
  /// unused
  /// \param bounds receives the bounding rectangle of the filled pixels; may be null
  static BOOL ExtFillConnectedPixels(BITMAPINFOHEADER* image, DWORD target, COLORREF fill, int erase,
                                     int opacity, int tolerance, const POINT& seed, RECT* bounds);
  /// Fills the area connected with the seed, under a mask. A seed whose mask byte is 0 gets a layer of
  /// opacity 0, which turns it black if it is transparent.
  static BOOL ExtFillConnectedPixels_Mask(BITMAPINFOHEADER* image, DWORD target, COLORREF fill, int opacity,
                                          int tolerance, const POINT& seed, BITMAPINFOHEADER* mask,
                                          const CPoint& maskOrigin);

  /// Fills all pixels like the target, connected or not.
  static BOOL ExtFill32BitsDIB(BITMAPINFOHEADER* image, DWORD target, COLORREF fill, int opacity,
                               int tolerance);
  /// Fills all pixels like the target under a mask, connected or not.
  static BOOL ExtFill32BitsDIB_Mask(BITMAPINFOHEADER* image, DWORD target, COLORREF fill, int opacity,
                                    int tolerance, BITMAPINFOHEADER* mask, const CPoint& maskOrigin);

  /// Fills the transparent area connected with the seed.
  static BOOL ExtFillConnectedTransPixels(BITMAPINFOHEADER* image, COLORREF colour, int alpha,
                                          const POINT& seed);
  /// Fills the transparent area connected with the seed, under a mask. A seed whose mask byte is 0 stays.
  static BOOL ExtFillConnectedTransPixels_Mask(BITMAPINFOHEADER* image, COLORREF colour, int alpha,
                                               const POINT& seed, BITMAPINFOHEADER* mask,
                                               const CPoint& maskOrigin);

  /// Fills all transparent pixels.
  static BOOL ExtFillTransBlock(BITMAPINFOHEADER* image, COLORREF colour, int alpha);
  /// Fills all transparent pixels under a mask.
  static BOOL ExtFillTransBlock_Mask(BITMAPINFOHEADER* image, COLORREF colour, int alpha,
                                     BITMAPINFOHEADER* mask, const CPoint& maskOrigin);

  /// Sets the opacity of a rectangle, as far as it lies in the image; colours stay.
  static BOOL Fill32DIBOpacityArea(BITMAPINFOHEADER* image, const RECT& area, BYTE alpha);
  /// Sets the opacity of a region, as far as it lies in the image; colours stay.
  static BOOL Fill32DIBOpacityArea(BITMAPINFOHEADER* image, HRGN region, BYTE alpha);
  /// @}

  /// \name Selection
  /// A magic wand selects the pixels similar to a seed: each colour channel lies at most `tolerance` away
  /// from the seed's, and both are opaque (opacity 128 and above) or both transparent. A seed outside the
  /// image moves to the nearest edge. The region belongs to the caller, who releases it with DeleteObject; it
  /// is null for an unfit image and when memory runs out.
  /// @{

  /// The similar pixels that are connected with the seed from left, right, above and below.
  static HRGN MagicWandRegion(BITMAPINFOHEADER* image, POINT seed, int tolerance);
  /// All similar pixels, connected or not; null for a negative tolerance, to which nothing is similar. Each
  /// call keeps a working block of 1632 bytes for good.
  static HRGN MagicWandRegion2(BITMAPINFOHEADER* image, POINT seed, int tolerance);

  /// Adds a rectangle to a list of disjoint ones. A rectangle that shares a whole edge with one of the list
  /// is merged with it, and the result again, as long as there is something to merge.
  /// \param list room for count + 1 rectangles
  /// \return the new number of rectangles; 0 for a null list or a negative count
  static int AddRect(RECT* list, int count, const RECT& rect);
  /// @}

  /// \name Scaling
  /// Draws a source over a destination, enlarged or reduced by taking the nearest pixel. The two ways of
  /// drawing are those of BitBlt32DIB (opaque pixels are copied, translucent ones change the source, so an
  /// enlarged pixel sees its own earlier changes, from the top, each row from the left) and, in the
  /// operations that end in MMX, of Mix32BitsDIBMMX. A reduction is taken off the source opacities, as
  /// weights only: the opacity byte that is copied or mixed in is the source's own.
  /// @{

  /// Stretches to scale / 32768 of the size; the destination has no origin of its own.
  /// \param sourceOrigin where the source's top-left pixel lies before scaling, which scales it too
  /// \param scale 32768 is the size as it is; 0 does nothing
  /// \note the edges of the area are products of 32 bits, which wrap; positions that fall exactly between two
  /// source pixels take the left or upper one
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

  /// Draws the top-left pixel of each block of factor x factor source pixels; the source's placed rectangle
  /// is divided, towards zero.
  /// \param factor 1 or more; anything else does nothing
  /// \note ZoomOut32DIB takes the destination's width and height for its right and bottom edge wherever its
  /// origin lies, so it draws on less of a destination at a positive origin
  static void ZoomOut32DIB(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                           BITMAPINFOHEADER* source, const POINT& sourceOrigin, int factor, BYTE reduction);
  static void ZoomOut32DIBMMX(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                              BITMAPINFOHEADER* source, const POINT& sourceOrigin, int factor,
                              BYTE reduction);

  /// Draws the colours of an 8-bit picture on a 32-bit destination, which keeps its opacities.
  /// \param mask 1-bit image of the source's size whose set bits hide pixels, or null; bits that it lacks
  /// count as clear
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

  /// \name Filters
  /// @{

  /// Replaces each pixel by the median of its n x n neighbourhood, ordered by the luminance of
  /// CompareColors: of the pixels there, from dark to bright, the one at index count / 2, with its opacity.
  /// The neighbourhood starts n / 2 to the left of and above the pixel; what lies outside the image does not
  /// count. Among pixels of the median luminance any may be taken. (A histogram slides along the row, after
  /// T. S. Huang, G. J. Yang, G. Y. Tang, "A fast two-dimensional median filtering algorithm", 1979.)
  /// \param n side of the neighbourhood in pixels; below 1 nothing is done
  static void MedianFilter32BitsImage(BITMAPINFOHEADER* image, int n);

  /// Sharpens the colours by a 3 x 3 kernel with -1 around a centre of k + 8; edge pixels repeat outside the
  /// image, opacity stays. The sum is divided by k, towards zero.
  /// \param k 1 sharpens most, larger values less. Below 1 nothing is divided, which makes it find edges.
  static void Sharpen32BitsImage(BITMAPINFOHEADER* image, int k);

  /// A soft eraser: takes amount x c / n^2 off the opacity of each pixel under the brush, down to 0. n is the
  /// least of `size` and the brush's width and height; c counts the brush's non-zero bytes in the box of n x
  /// n that starts n / 2 to the left of and above the pixel. The box is cut off at the brush's edges, the
  /// divisor stays.
  /// \param brush an 8-bit image
  /// \param position where the brush's top-left pixel lies in the destination
  /// \param amount 0 to 255. Other values follow the formula in 32-bit arithmetic that wraps.
  /// \param size of the feathered edge in pixels; below 1 nothing is done
  /// \param clip pixels outside this region stay; null for no limit
  static void SmoothBlock(BITMAPINFOHEADER* destination, BITMAPINFOHEADER* brush, const POINT& position,
                          int amount, int size, HRGN clip);
  /// A soft brush: adds (255 - amount) x c / n^2 to the opacity of each pixel under the brush, up to 255.
  /// Everything else is as in SmoothBlock; amount 0 is the strongest.
  static void SmoothFillBlock(BITMAPINFOHEADER* destination, BITMAPINFOHEADER* brush, const POINT& position,
                              int amount, int size, HRGN clip);
  /// The soft brush, where the pixel of `reference` at the same place is not transparent.
  /// \param reference a 32-bit image as wide as the destination; where it has no row nothing is done
  static void SmoothFillBlock(BITMAPINFOHEADER* destination, BITMAPINFOHEADER* brush,
                              BITMAPINFOHEADER* reference, const POINT& position, int amount, int size,
                              HRGN clip);
  /// @}

  /// \name Borders, trimming and masks
  /// @{

  /// Measures the margins that are wholly transparent, in pixels. An image without a visible pixel sets `top`
  /// to its height and leaves the other three as they are.
  static void CheckBlankBorder(BITMAPINFOHEADER* image, int* left, int* top, int* right, int* bottom);

  /// A new image without the given margins.
  /// \return null also for a margin below 0 and for margins that overlap
  static BITMAPINFOHEADER* Trim32BitsDIB(BITMAPINFOHEADER* image, int left, int top, int right, int bottom);

  /// A new 1-bit image of the same size whose bits are 1 where the image is transparent, as an icon's mask.
  /// Both palette entries are black.
  static BITMAPINFOHEADER* CreateIconMaskFromAlphaChannel(BITMAPINFOHEADER* image);

  /// A new image with every pixel the colour, at the image's own opacity: its silhouette.
  static BITMAPINFOHEADER* CreateParaShadowDIB(BITMAPINFOHEADER* const image, COLORREF colour);
  /// @}

  /// \name Editor overlays
  /// What the editor draws on its canvas, a 32-bit image. Colours change, opacities never do.
  /// @{

  /// Shows transparency: a checkerboard of squares of 8 x 8 pixels, the first of colour 1.
  /// \param xOffset,yOffset where in the pattern the canvas's top-left pixel lies, 0 or more. Below 0 the
  /// squares next to the origin grow together and colour 2 prevails.
  static void Init32DIBBackground(BITMAPINFOHEADER* canvas, BYTE red1, BYTE green1, BYTE blue1, BYTE red2,
                                  BYTE green2, BYTE blue2, int xOffset, int yOffset);

  /// Hatches with both diagonals, every 8 pixels; pixels between the lines stay.
  /// \param offset where in the pattern the canvas's top-left pixel lies
  static void Init32DIBWithHatedLines(BITMAPINFOHEADER* canvas, const CPoint& offset, COLORREF colour);

  /// One side of a dashed outline: three pixels of colour 2, three of colour 1 and so on. The sides go round
  /// in the order top, right, bottom, left, each from the corner that the one before has drawn.
  /// \param canvasOrigin where the canvas's top-left pixel lies in the space of the coordinates
  /// \param a,b left and right of the outlined rectangle for the top and bottom sides, else its top and
  /// bottom; both inclusive
  /// \param fixed the row or column of the side
  /// \param phase 0 to 5 where the dashes begin, or what the side before returned; a negative one gives
  /// colour 2 for the pixels before its zero
  /// \return the phase for the next side: the pattern position of the last pixel drawn; the position before
  /// `phase` when the side lies outside the canvas, 0 when the canvas cuts off all of it
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

  /// Outlines a selection with black and white dashes. Phases 0 to 5, one after the other, let them march.
  /// \param canvasOrigin where the canvas's top-left pixel lies in the space of the selection
  static void DrawSelectedFlag(BITMAPINFOHEADER* canvas, const POINT& canvasOrigin, const RECT& selection,
                               int phase);

  /// The stroke of a line tool, as coverage: 0 or 255, without smoothing.
  /// \param area what the result is cut to; its corner is the origin of the out point
  /// \param from,to ends, in the space of the area
  /// \param penWidth in pixels; up to 1 a line of single pixels
  /// \param margin pixels around the stroke; never less than 2 on each side
  /// \param roundedCaps 0 for square ends
  /// \param clip pixels outside this region stay 0; in the space of the area, unchanged, null for no limit
  /// \param[out] origin where the result's top-left pixel lies, from the area's corner; (0, 0) for null
  /// \return a new 8-bit gray image, all 0 when its box misses the line; null when nothing of the box lies in
  /// the area and the clip region's box
  static BITMAPINFOHEADER* GenerateLine(const RECT& area, const POINT& from, const POINT& to, int penWidth,
                                        int margin, int roundedCaps, HRGN clip, POINT* origin);
  /// @}
};
