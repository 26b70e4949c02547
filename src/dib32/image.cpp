#include <algorithm>
#include <bit>

#include "dib/allocate.h"
#include "dib/view.h"
#include "dib32/bgra.h"
#include "dib32/dib32.h"
#include "dib32/opacity.h"
#include "kernels/conversion.h"

namespace dibkit {
namespace {

/// Replaces every pixel of a 32-bit image by rule(pixel), as numbers 0xAARRGGBB. Does nothing for any other
/// image.
template <class Rule>
void changePixels(BITMAPINFOHEADER* dib, Rule&& rule) {
  const View image = viewOfDepth(dib, 32);
  for (int y = 0; y < image.lines(); ++y) {
    Bgra* row = pixelsOf(image.row(y));
    for (int x = 0; x < image.width(); ++x) putWord(row, x, rule(wordAt(row, x)));
  }
}

/// Whether found(kind) holds for some row.
template <class Found>
bool anyRow(const View& image, Found&& found) {
  for (int y = 0; y < image.lines(); ++y) {
    if (found(alphaKindOf(pixelsOf(image.row(y)), image.width()))) return true;
  }
  return false;
}

/// Sets the alpha of the pixels whose mask bit is set. A mask whose depth is not 1 has no effect.
void setMaskedAlpha(const View& image, const BITMAPINFOHEADER* maskDib, BYTE alpha) {
  const ConstView mask = viewOfDepth(maskDib, 1);
  const int width = std::min(image.width(), mask.width());
  const int height = std::min(image.lines(), mask.lines());
  for (int y = 0; y < height; ++y) {
    Bgra* row = pixelsOf(image.row(y));
    const BYTE* bits = mask.row(y);
    for (int x = 0; x < width; ++x) {
      if (Index1::get(bits, x) != 0) row[x].alpha = alpha;
    }
  }
}

/// A bit field of a 16-bit pixel as a byte. Its position is the sum of the lengths of the fields below it,
/// not its own mask's shift. So fields with gaps between them are read wrong, deliberately: hosts rely
/// on the result.
struct Field {
  DWORD mask;
  int down;  ///< bits of all fields below
  int up;    ///< from the field's length to 8 bits; 8, which leaves nothing of the byte, for a longer one

  Field(DWORD fieldMask, int lengthBelow) : mask(fieldMask), down(std::min(lengthBelow, 31)) {
    up = 8 - lengthOf(fieldMask);
    if (up < 0) up = 8;
  }
  BYTE of(WORD pixel) const { return lowByte(DWORD{(pixel & mask) >> down << up}); }

  static int lengthOf(DWORD fieldMask) {
    int shift = 0;
    int length = 0;
    CDIB32::CalcuMaskShift(fieldMask, shift, length);
    return length;
  }
};

OwnedDib fromBitFields(const BITMAPINFOHEADER* sourceDib, const BITMAPINFOHEADER* mask) {
  const ConstView source = viewOfDepth(sourceDib, 16);
  if (!source || sourceDib->biCompression != BI_BITFIELDS) return nullptr;
  DWORD masks[3];
  std::memcpy(masks, reinterpret_cast<const BYTE*>(sourceDib) + sourceDib->biSize, sizeof(masks));
  const int blueLength = Field::lengthOf(masks[2]);
  const Field red(masks[0], Field::lengthOf(masks[1]) + blueLength);
  const Field green(masks[1], blueLength);
  const Field blue(masks[2], 0);
  OwnedDib result = makeImage(source.width(), source.height(), 32, [&](BYTE* row, int y) {
    Bgra* const to = pixelsOf(row);
    const BYTE* const from = source.row(y);
    for (int x = 0; x < source.width(); ++x) {
      const WORD pixel = Rgb555::get(from, x);
      to[x] = {blue.of(pixel), green.of(pixel), red.of(pixel), 255};
    }
  });
  setMaskedAlpha(View(result.get()), mask, 0);
  return result;
}

OwnedDib toBgra(const BITMAPINFOHEADER* sourceDib, const BITMAPINFOHEADER* mask, BYTE normalAlpha,
                BYTE maskedAlpha) {
  const ConstView source(sourceDib);
  if (!source) return nullptr;
  const PaletteTable palette(sourceDib);
  const DWORD top = DWORD{normalAlpha} << 24;
  const auto widen = kernels<ConversionKernels>().bgr24ToBgra32;
  return withFormat(source.bitCount(), [&](auto format) {
    using Format = decltype(format);
    OwnedDib result = makeImage(source.width(), source.height(), 32, [&](BYTE* row, int y) {
      const BYTE* const from = source.row(y);
      if constexpr (Format::bits == Bgr24::bits) {
        widen(from, source.width(), normalAlpha, row);
      } else {
        for (int x = 0; x < source.width(); ++x) {
          Bgra32::put(row, x, packRgb(Format::colour(Format::get(from, x), palette)) | top);
        }
      }
    });
    setMaskedAlpha(View(result.get()), mask, maskedAlpha);
    return result;
  });
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

CDIB32::~CDIB32() = default;

BITMAPINFOHEADER* CDIB32::CreateBlank32BitsDIB(int width, int height) {
  return createDib(width, height, 32, 0).release();
}

BITMAPINFOHEADER* CDIB32::CreateSimple32BitsDIB(int width, int height, COLORREF colour, BYTE alpha) {
  const DWORD pixel = packRgb(fromColorRef(colour)) | DWORD{alpha} << 24;
  const auto fill = [=](BYTE* row, int) {
    for (int x = 0; x < width; ++x) Bgra32::put(row, x, pixel);
  };
  return makeImage(width, height, 32, fill).release();
}

BITMAPINFOHEADER* CDIB32::ConvertTo32BitsDIB(BITMAPINFOHEADER* source, BITMAPINFOHEADER* mask,
                                             BYTE normalAlpha, BYTE maskedAlpha) {
  if (source != nullptr && source->biBitCount == 16 && source->biCompression == BI_BITFIELDS) {
    return ConvertBitField16BitsDIBTo32BitsDIB(source, mask);
  }
  return toBgra(source, mask, normalAlpha, maskedAlpha).release();
}

BITMAPINFOHEADER* CDIB32::ConvertBitField16BitsDIBTo32BitsDIB(BITMAPINFOHEADER* source,
                                                              BITMAPINFOHEADER* mask) {
  return fromBitFields(source, mask).release();
}

void CDIB32::CalcuMaskShift(DWORD mask, int& shift, int& length) {
  shift = mask != 0 ? std::countr_zero(mask) : 0;
  length = std::countr_one(mask >> shift);
}

void CDIB32::Make32BitsSimpleColorDIB(BITMAPINFOHEADER* image, COLORREF colour) {
  const DWORD key = packRgb(fromColorRef(colour));
  changePixels(image, [key](DWORD pixel) { return (pixel & ~colourBits) | key; });
}

void CDIB32::MakeAllPixelsSameOpacity(BITMAPINFOHEADER* image, BYTE alpha) {
  const DWORD top = DWORD{alpha} << 24;
  changePixels(image, [top](DWORD pixel) { return (pixel & colourBits) | top; });
}

void CDIB32::Reduce32BitsDIBOpacity(BITMAPINFOHEADER* image, BYTE reduction) {
  const DWORD scale = 255U - reduction;
  changePixels(image, [scale](DWORD pixel) {
    const auto alpha = divideBy255(static_cast<Lane>((pixel >> 24) * scale));
    return (pixel & colourBits) | DWORD{alpha} << 24;
  });
}

void CDIB32::Fill32DIBBackground(BITMAPINFOHEADER* image, BYTE red, BYTE green, BYTE blue) {
  const DWORD colour = 0xFF000000 | packRgb({red, green, blue});
  changePixels(image, [colour](DWORD) { return colour; });
}

BOOL CDIB32::IsFullOpacity32BitsImage(BITMAPINFOHEADER* const image) {
  const View view = viewOfDepth(image, 32);
  return view && !anyRow(view, [](AlphaKind kind) { return kind != AlphaKind::opaque; });
}

BOOL CDIB32::IsTranslucence32BitsImage(BITMAPINFOHEADER* const image) {
  const View view = viewOfDepth(image, 32);
  return anyRow(view, [](AlphaKind kind) { return kind == AlphaKind::translucent; });
}

BOOL CDIB32::IsIn32BitsDIB(BITMAPINFOHEADER* image, const POINT& point) {
  const View view = viewOfDepth(image, 32);
  return view.contains(point.x, point.y) && pixelsOf(view.row(static_cast<int>(point.y)))[point.x].alpha != 0;
}

int CDIB32::CompareColors(const void* a, const void* b) {
  const auto luminanceOf = [](const void* pixel) {
    // Three bytes, not four: the pixel may be the last one of a block of three-byte pixels.
    const auto* bytes = static_cast<const BYTE*>(pixel);
    return luminance({bytes[0], bytes[1], bytes[2]});
  };
  return luminanceOf(a) - luminanceOf(b);
}
