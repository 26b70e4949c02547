#include "dib/view.h"
#include "dib32/blend.h"
#include "dib32/dib32.h"
#include "raster/placement.h"

namespace dibkit {
namespace {

/// A placed 32-bit image; a null view for any other.
Placed<BYTE> placed32(BITMAPINFOHEADER* dib, const POINT& origin) { return {viewOfDepth(dib, 32), origin}; }

/// Calls row(to, from, count) for every row of the overlap of two 32-bit images.
template <class Row>
void forEachPair(BITMAPINFOHEADER* destination, const POINT& destinationOrigin, BITMAPINFOHEADER* source,
                 const POINT& sourceOrigin, Row&& row) {
  forEachCommonRow([&](int count, BYTE* to, BYTE* from) { row(pixelsOf(to), pixelsOf(from), count); },
                   placed32(destination, destinationOrigin), placed32(source, sourceOrigin));
}

/// Calls row(to, from, mask, count) for every row of the overlap of two 32-bit images and an 8-bit mask.
template <class Row>
void forEachMaskedPair(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                       BITMAPINFOHEADER* source, const POINT& sourceOrigin, BITMAPINFOHEADER* mask,
                       const POINT& maskOrigin, Row&& row) {
  forEachCommonRow([&](int count, BYTE* to, BYTE* from,
                       const BYTE* bytes) { row(pixelsOf(to), pixelsOf(from), bytes, count); },
                   placed32(destination, destinationOrigin), placed32(source, sourceOrigin),
                   Placed<BYTE>{viewOfDepth(mask, 8), maskOrigin});
}

/// to[i] = rule(to[i], from[i], i), pixels as numbers 0xAARRGGBB, in order from the left.
template <class Rule>
void combineWords(Bgra* to, const Bgra* from, int count, Rule&& rule) {
  for (int i = 0; i < count; ++i) putWord(to, i, rule(wordAt(to, i), wordAt(from, i), i));
}

constexpr DWORD withAlphaOf(DWORD colour, DWORD alpha) { return (colour & colourBits) | alpha << 24; }
constexpr DWORD lowered(DWORD alpha, DWORD by) { return alpha > by ? alpha - by : 0; }

/// alpha = max(alpha - source alpha strength / 255, 0)
constexpr DWORD erased(DWORD pixel, DWORD source, BYTE strength) {
  return withAlphaOf(pixel, lowered(pixel >> 24, (source >> 24) * strength / 255));
}

/// 256 (a + d) - a d, over 256
constexpr BYTE stepwiseUnion(BYTE d, BYTE a) { return lowByte(((a + d) * 256 - d * a) >> 8); }

constexpr LayerOpacity transparent(BYTE transparency) {
  return {.reduction = 0, .scale = static_cast<BYTE>(255 - transparency)};
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

BYTE CDIB32::CalcuOpacity(BYTE a, BYTE b) { return lowByte(unionAlpha(a, b)); }

BYTE CDIB32::CalcuRGBValue(BYTE dstAlpha, BYTE srcAlpha, BYTE dstColour, BYTE srcColour, BYTE outAlpha) {
  return overChannel(dstAlpha, srcAlpha, dstColour, srcColour, outAlpha);
}

void CDIB32::CombineBlock(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                          BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE reduction) {
  forEachPair(destination, destinationOrigin, source, sourceOrigin,
              [reduction](Bgra* to, const Bgra* from, int count) { overRow(to, from, count, {reduction}); });
}

void CDIB32::BitBlt32DIBPlain(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                              BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE reduction) {
  forEachPair(
      destination, destinationOrigin, source, sourceOrigin,
      [reduction](Bgra* to, const Bgra* from, int count) { plainOverRow(to, from, count, {reduction}); });
}

void CDIB32::BitBlt32DIBMMX(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                            BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE reduction) {
  forEachPair(
      destination, destinationOrigin, source, sourceOrigin,
      [reduction](Bgra* to, const Bgra* from, int count) { linearMixRow(to, from, count, {reduction}); });
}

void CDIB32::BitBlt32DIB(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                         BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE reduction) {
  forEachPair(destination, destinationOrigin, source, sourceOrigin,
              [reduction](Bgra* to, Bgra* from, int count) { copyOrShadeRow(to, from, count, {reduction}); });
}

void CDIB32::Mix32BitsDIBMMX(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                             BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE transparency) {
  forEachPair(destination, destinationOrigin, source, sourceOrigin,
              [transparency](Bgra* to, const Bgra* from, int count) {
                evenMixRow(to, from, count, transparent(transparency));
              });
}

void CDIB32::Mix32BitsDIBMMX_Mask(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                                  BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE transparency,
                                  BITMAPINFOHEADER* mask, const CPoint& maskOrigin) {
  forEachMaskedPair(destination, destinationOrigin, source, sourceOrigin, mask, maskOrigin,
                    [transparency](Bgra* to, const Bgra* from, const BYTE* bytes, int count) {
                      evenMixRow(to, from, count, transparent(transparency), bytes);
                    });
}

void CDIB32::BitBltDIBAlphaChannelPlain(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                                        BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE reduction) {
  const View view(destination);
  const int bytes = view.bitCount() / 8;
  if (view.bitCount() % 8 != 0 || bytes < 1 || bytes > 4) return;
  forEachCommonRow(
      [bytes, reduction](int count, BYTE* to, const BYTE* from) {
        for (int i = 0; i < count; ++i) {
          BYTE& last = to[std::ptrdiff_t{i} * bytes + bytes - 1];
          last = stepwiseUnion(last, reduced(from[std::ptrdiff_t{i} * 4 + 3], reduction));
        }
      },
      Placed<BYTE>{view, destinationOrigin}, placed32(source, sourceOrigin));
}

void CDIB32::Erase32BitsBlock(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                              BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE strength) {
  forEachPair(destination, destinationOrigin, source, sourceOrigin,
              [strength](Bgra* to, const Bgra* from, int count) {
                combineWords(to, from, count,
                             [strength](DWORD d, DWORD s, int) { return erased(d, s, strength); });
              });
}

void CDIB32::Erase32BitsBlock(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                              BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE strength,
                              BITMAPINFOHEADER* mask, const CPoint& maskOrigin) {
  forEachMaskedPair(destination, destinationOrigin, source, sourceOrigin, mask, maskOrigin,
                    [strength](Bgra* to, const Bgra* from, const BYTE* bytes, int count) {
                      combineWords(to, from, count, [strength, bytes](DWORD d, DWORD s, int i) {
                        return bytes[i] != 0 ? erased(d, s, strength) : d;
                      });
                    });
}

void CDIB32::CopyBlock(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                       BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE reduction) {
  forEachPair(destination, destinationOrigin, source, sourceOrigin,
              [reduction](Bgra* to, const Bgra* from, int count) {
                combineWords(to, from, count, [reduction](DWORD, DWORD s, int) {
                  return withAlphaOf(s, lowered(s >> 24, reduction));
                });
              });
}

void CDIB32::TransformBlock(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                            BITMAPINFOHEADER* source, const POINT& sourceOrigin) {
  forEachPair(destination, destinationOrigin, source, sourceOrigin,
              [](Bgra* to, const Bgra* from, int count) {
                combineWords(to, from, count, [](DWORD, DWORD s, int) { return s; });
              });
}

void CDIB32::TransformAlphaChannelBlock(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                                        BITMAPINFOHEADER* source, const POINT& sourceOrigin) {
  forEachPair(destination, destinationOrigin, source, sourceOrigin,
              [](Bgra* to, const Bgra* from, int count) {
                combineWords(to, from, count, [](DWORD d, DWORD s, int) { return withAlphaOf(d, s >> 24); });
              });
}
