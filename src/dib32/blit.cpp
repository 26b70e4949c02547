#include <cstring>

#include "dib/view.h"
#include "dib32/dib32.h"
#include "dib32/opacity.h"
#include "kernels/blend.h"
#include "kernels/copy.h"
#include "raster/placement.h"

namespace dibkit {
namespace {

/// Calls row(to, from, count, amount, mask) for the rows of the overlap of two images and a mask, if there is
/// one.
template <auto row, class Amount, class... Mask>
void blit(const Placed<BYTE>& destination, const Placed<BYTE>& source, Amount amount, const Mask&... mask) {
  forEachCommonStretch(
      [amount](int count, BYTE* to, BYTE* from, const BYTE* bytes = nullptr) {
        row(pixelsOf(to), pixelsOf(from), count, amount, bytes);
      },
      destination, source, mask...);
}

/// A row of one of the blends.
template <auto kernel>
void blendRow(Bgra* to, Bgra* from, int count, LayerOpacity opacity, const BYTE* mask) {
  (kernels<BlendKernels>().*kernel)(bytesOf(to), bytesOf(from), count, opacity, mask);
}

/// Copies the pixels, with max(alpha - reduction, 0), in order from the left.
void copyLowered(Bgra* to, const Bgra* from, int count, BYTE reduction, const BYTE*) {
  const auto distance = reinterpret_cast<std::uintptr_t>(to) - reinterpret_cast<std::uintptr_t>(from);
  const auto bytes = static_cast<std::size_t>(count) * sizeof(Bgra);
  if (reduction == 0 && distance >= bytes && std::uintptr_t{0} - distance >= bytes) {
    std::memcpy(to, from, bytes);
  } else {
    kernels<CopyKernels>().lowered(bytesOf(to), bytesOf(from), count, reduction);
  }
}

void copyAlphas(Bgra* to, const Bgra* from, int count, BYTE, const BYTE*) {
  kernels<CopyKernels>().alphas(bytesOf(to), bytesOf(from), count);
}

/// to[i] = rule(to[i], from[i], amount), pixels as numbers 0xAARRGGBB, in order from the left. Where the mask
/// is 0 the pixel is unchanged.
template <DWORD (*rule)(DWORD below, DWORD above, BYTE amount)>
void changeRow(Bgra* to, const Bgra* from, int count, BYTE amount, const BYTE* mask) {
  if (mask == nullptr) {
    for (int i = 0; i < count; ++i) putWord(to, i, rule(wordAt(to, i), wordAt(from, i), amount));
    return;
  }
  for (int i = 0; i < count; ++i) {
    // Computed for every pixel, so that the loop vectorises.
    const DWORD below = wordAt(to, i);
    const DWORD changed = rule(below, wordAt(from, i), amount);
    putWord(to, i, mask[i] != 0 ? changed : below);
  }
}

constexpr DWORD withAlphaOf(DWORD colour, DWORD alpha) { return (colour & colourBits) | alpha << 24; }
constexpr DWORD lowered(DWORD alpha, DWORD by) { return alpha > by ? alpha - by : 0; }

/// alpha = max(alpha - source alpha strength / 255, 0)
constexpr DWORD erased(DWORD below, DWORD above, BYTE strength) {
  return withAlphaOf(below, lowered(below >> 24, (above >> 24) * strength / 255));
}
/// 256 (a + d) - a d, over 256
constexpr BYTE stepwiseUnion(BYTE d, BYTE a) { return lowByte(((a + d) * 256 - d * a) >> 8); }

constexpr LayerOpacity lessTransparency(BYTE transparency) {
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
  blit<blendRow<&BlendKernels::over>>(placedOfDepth(destination, 32, destinationOrigin),
                                      placedOfDepth(source, 32, sourceOrigin), LayerOpacity{reduction});
}

void CDIB32::BitBlt32DIBPlain(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                              BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE reduction) {
  blit<blendRow<&BlendKernels::plainOver>>(placedOfDepth(destination, 32, destinationOrigin),
                                           placedOfDepth(source, 32, sourceOrigin), LayerOpacity{reduction});
}

void CDIB32::BitBlt32DIBMMX(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                            BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE reduction) {
  blit<blendRow<&BlendKernels::linearMix>>(placedOfDepth(destination, 32, destinationOrigin),
                                           placedOfDepth(source, 32, sourceOrigin), LayerOpacity{reduction});
}

void CDIB32::BitBlt32DIB(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                         BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE reduction) {
  blit<blendRow<&BlendKernels::copyOrShade>>(placedOfDepth(destination, 32, destinationOrigin),
                                             placedOfDepth(source, 32, sourceOrigin),
                                             LayerOpacity{reduction});
}

void CDIB32::Mix32BitsDIBMMX(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                             BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE transparency) {
  blit<blendRow<&BlendKernels::evenMix>>(placedOfDepth(destination, 32, destinationOrigin),
                                         placedOfDepth(source, 32, sourceOrigin),
                                         lessTransparency(transparency));
}

void CDIB32::Mix32BitsDIBMMX_Mask(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                                  BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE transparency,
                                  BITMAPINFOHEADER* mask, const CPoint& maskOrigin) {
  blit<blendRow<&BlendKernels::evenMix>>(placedOfDepth(destination, 32, destinationOrigin),
                                         placedOfDepth(source, 32, sourceOrigin),
                                         lessTransparency(transparency), placedOfDepth(mask, 8, maskOrigin));
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
      Placed<BYTE>{view, destinationOrigin}, placedOfDepth(source, 32, sourceOrigin));
}

void CDIB32::Erase32BitsBlock(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                              BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE strength) {
  blit<changeRow<erased>>(placedOfDepth(destination, 32, destinationOrigin),
                          placedOfDepth(source, 32, sourceOrigin), strength);
}

void CDIB32::Erase32BitsBlock(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                              BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE strength,
                              BITMAPINFOHEADER* mask, const CPoint& maskOrigin) {
  blit<changeRow<erased>>(placedOfDepth(destination, 32, destinationOrigin),
                          placedOfDepth(source, 32, sourceOrigin), strength,
                          placedOfDepth(mask, 8, maskOrigin));
}

void CDIB32::CopyBlock(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                       BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE reduction) {
  blit<copyLowered>(placedOfDepth(destination, 32, destinationOrigin),
                    placedOfDepth(source, 32, sourceOrigin), reduction);
}

void CDIB32::TransformBlock(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                            BITMAPINFOHEADER* source, const POINT& sourceOrigin) {
  blit<copyLowered>(placedOfDepth(destination, 32, destinationOrigin),
                    placedOfDepth(source, 32, sourceOrigin), BYTE{});
}

void CDIB32::TransformAlphaChannelBlock(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                                        BITMAPINFOHEADER* source, const POINT& sourceOrigin) {
  blit<copyAlphas>(placedOfDepth(destination, 32, destinationOrigin), placedOfDepth(source, 32, sourceOrigin),
                   BYTE{});
}
