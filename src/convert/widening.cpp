#include <array>

#include "convert/convert.h"
#include "convert/fill_rows.h"
#include "dib/view.h"
#include "kernels/conversion.h"
#include "raster/index_rows.h"

namespace dibkit {
namespace {

/// The source's palette. Conversions to 24 bits read it where a BITMAPINFOHEADER ends, those to 16 bits where
/// the header says. Deliberate, since hosts rely on both; the difference shows only with longer headers.
template <class Target>
PaletteTable paletteFor(const BITMAPINFOHEADER* source) {
  return Target::bits == 24 ? PaletteTable(source, sizeof(BITMAPINFOHEADER)) : PaletteTable(source);
}

/// The pixels of a target format for every index.
template <class Target>
using Pixels256 = std::array<std::conditional_t<Target::bits == 16, WORD, DWORD>, 256>;

template <class Target>
Pixels256<Target> pixelsOf(const PaletteTable& palette) {
  Pixels256<Target> pixels;
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    const Rgb colour = rgbOf(palette[i]);
    if constexpr (Target::bits == 16) {
      pixels[i] = Target::encode(colour);
    } else {
      pixels[i] = packRgb(colour);
    }
  }
  return pixels;
}

void lookUp(const BYTE* indexes, int count, const Pixels256<Rgb555>& pixels, BYTE* to) {
  for (int x = 0; x < count; ++x) Rgb555::put(to, x, pixels[indexes[x]]);
}

/// Stores four bytes for each pixel, the fourth of which the next pixel overwrites. The last pixel has no
/// next one and stores three. (The same through the function object of decodeBgrRow takes a sixth longer.)
void lookUp(const BYTE* indexes, int count, const Pixels256<Bgr24>& pixels, BYTE* to) {
  for (int x = 0; x + 1 < count; ++x) std::memcpy(to + std::ptrdiff_t{x} * 3, &pixels[indexes[x]], 4);
  if (count > 0) std::memcpy(to + std::ptrdiff_t{count - 1} * 3, &pixels[indexes[count - 1]], 3);
}

/// From a format with a palette, through a table computed once.
template <class Source, class Target>
OwnedDib convertIndexed(const BITMAPINFOHEADER* dib, CQorCommonProgress* progress) {
  const ConstView source = viewOfDepth(dib, Source::bits);
  if (!source) return nullptr;
  const Pixels256<Target> pixels = pixelsOf<Target>(paletteFor<Target>(dib));
  OwnedDib result = createDib(source.width(), source.height(), Target::bits, 0, InitialPixels::unwritten);
  return fillRows(std::move(result), progress, [&](BYTE* to, int y) {
    BYTE buffer[indexChunk];
    forEachChunk(source.width(), [&](int left, int count) {
      const BYTE* indexes = indexesAt<Source>(source.row(y), left, count, buffer);
      lookUp(indexes, count, pixels, to + std::ptrdiff_t{left} * (Target::bits / 8));
    });
  });
}

/// The kernel from a format without palette.
template <class Source, class Target>
ConversionKernels::Row kernelFor() {
  const auto& row = kernels<ConversionKernels>();
  if constexpr (Target::bits == 24) {
    return Source::bits == 16 ? row.rgb555ToBgr24 : row.bgra32ToBgr24;
  } else {
    return Source::bits == 24 ? row.bgr24ToRgb555 : row.bgra32ToRgb555;
  }
}

template <class Source, class Target>
OwnedDib convertDirect(const BITMAPINFOHEADER* dib, CQorCommonProgress* progress) {
  const ConstView source = viewOfDepth(dib, Source::bits);
  if (!source) return nullptr;
  const ConversionKernels::Row kernel = kernelFor<Source, Target>();
  OwnedDib result = createDib(source.width(), source.height(), Target::bits, 0, InitialPixels::unwritten);
  return fillRows(std::move(result), progress,
                  [&](BYTE* to, int y) { kernel(source.row(y), source.width(), to); });
}

template <class Source, class Target>
OwnedDib convert(const BITMAPINFOHEADER* dib, CQorCommonProgress* progress) {
  if constexpr (Source::bits <= 8) {
    return convertIndexed<Source, Target>(dib, progress);
  } else {
    return convertDirect<Source, Target>(dib, progress);
  }
}

/// From any depth. An image of the target's depth is cloned without a progress report, since a clone has no
/// lines.
template <class Target>
OwnedDib convertAny(const BITMAPINFOHEADER* dib, CQorCommonProgress* progress) {
  if (dib == nullptr) return nullptr;
  return withFormat(dib->biBitCount, [&](auto format) {
    using Source = decltype(format);
    if constexpr (Source::bits == Target::bits) {
      return OwnedDib(CBitmapCreator::Clone(dib));
    } else {
      return convert<Source, Target>(dib, progress);
    }
  });
}

OwnedDib convertTo32Reversed(const BITMAPINFOHEADER* dib, bool flip, CQorCommonProgress* progress) {
  const ConstView source = viewOfDepth(dib, Bgr24::bits);
  if (!source) return nullptr;
  OwnedDib result = createDib(source.width(), source.height(), Bgra32::bits, 0, InitialPixels::unwritten);
  const auto reverse = kernels<ConversionKernels>().bgr24ToReversed32;
  return fillRows(std::move(result), progress, [&](BYTE* to, int y) {
    reverse(source.row(flip ? source.height() - 1 - y : y), source.width(), to);
  });
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

BITMAPINFOHEADER* CBitmapConverter::Convert1BitsTo24Bits(BITMAPINFOHEADER* source,
                                                         CQorCommonProgress* progress) {
  return convert<Index1, Bgr24>(source, progress).release();
}

BITMAPINFOHEADER* CBitmapConverter::Convert4BitsTo24Bits(BITMAPINFOHEADER* source,
                                                         CQorCommonProgress* progress) {
  return convert<Index4, Bgr24>(source, progress).release();
}

BITMAPINFOHEADER* CBitmapConverter::Convert8BitsTo24Bits(BITMAPINFOHEADER* source,
                                                         CQorCommonProgress* progress) {
  return convert<Index8, Bgr24>(source, progress).release();
}

BITMAPINFOHEADER* CBitmapConverter::Convert16BitsTo24Bits(BITMAPINFOHEADER* source,
                                                          CQorCommonProgress* progress) {
  return convert<Rgb555, Bgr24>(source, progress).release();
}

BITMAPINFOHEADER* CBitmapConverter::Convert32BitsTo24Bits(BITMAPINFOHEADER* source,
                                                          CQorCommonProgress* progress) {
  return convert<Bgra32, Bgr24>(source, progress).release();
}

BITMAPINFOHEADER* CBitmapConverter::ConvertDIBTo24Bits(BITMAPINFOHEADER* source,
                                                       CQorCommonProgress* progress) {
  return convertAny<Bgr24>(source, progress).release();
}

BITMAPINFOHEADER* CBitmapConverter::Convert1BitsTo16Bits(BITMAPINFOHEADER* source,
                                                         CQorCommonProgress* progress) {
  return convert<Index1, Rgb555>(source, progress).release();
}

BITMAPINFOHEADER* CBitmapConverter::Convert4BitsTo16Bits(BITMAPINFOHEADER* source,
                                                         CQorCommonProgress* progress) {
  return convert<Index4, Rgb555>(source, progress).release();
}

BITMAPINFOHEADER* CBitmapConverter::Convert8BitsTo16Bits(BITMAPINFOHEADER* source,
                                                         CQorCommonProgress* progress) {
  return convert<Index8, Rgb555>(source, progress).release();
}

BITMAPINFOHEADER* CBitmapConverter::Convert24BitsTo16Bits(BITMAPINFOHEADER* source,
                                                          CQorCommonProgress* progress) {
  return convert<Bgr24, Rgb555>(source, progress).release();
}

BITMAPINFOHEADER* CBitmapConverter::Convert32BitsTo16Bits(BITMAPINFOHEADER* source,
                                                          CQorCommonProgress* progress) {
  return convert<Bgra32, Rgb555>(source, progress).release();
}

BITMAPINFOHEADER* CBitmapConverter::ConvertDIBTo16Bits(BITMAPINFOHEADER* source,
                                                       CQorCommonProgress* progress) {
  return convertAny<Rgb555>(source, progress).release();
}

BITMAPINFOHEADER* CBitmapConverter::Convert24BitsTo32Bits(BITMAPINFOHEADER* source, int flip,
                                                          CQorCommonProgress* progress) {
  return convertTo32Reversed(source, flip != 0, progress).release();
}
