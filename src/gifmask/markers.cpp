#include "dib/view.h"
#include "gifmask/gifmask.h"
#include "palette/palette.h"

namespace dibkit {
namespace {

ConstView maskRows(const BITMAPINFOHEADER* mask) { return viewOfDepth(mask, 1); }

/// An image, a mask and the size of their common part.
struct Overlay {
  View image;
  ConstView mask;
  int width = std::min(image.width(), mask.width());
  int height = std::min(image.height(), mask.height());
};

/// A copy of an image in which paint(format, overlay) paints the common part with a mask, if there is one.
/// \return null for an unusable image or mask, a depth without format, or when memory runs out
template <class Paint>
BITMAPINFOHEADER* painted(const BITMAPINFOHEADER* image, const ConstView& mask, Paint&& paint) {
  if (!mask) return nullptr;
  OwnedDib copy(CBitmapCreator::Clone(image));
  if (!copy) return nullptr;
  const Overlay overlay{View(copy.get()), mask};
  return withFormat(image->biBitCount, [&](auto format) {
    if (overlay.width > 0 && overlay.height > 0) paint(format, overlay);
    return copy.release();
  });
}

/// Paints one value where the mask's bit is 1, another where it is 0.
template <class Format>
void show(const Overlay& overlay, typename Format::Raw marked, typename Format::Raw unmarked) {
  for (int y = 0; y < overlay.height; ++y) {
    const BYTE* bits = overlay.mask.row(y);
    BYTE* row = overlay.image.row(y);
    for (int x = 0; x < overlay.width; ++x) {
      Format::put(row, x, Get1BitPixel(bits, x) != 0 ? marked : unmarked);
    }
  }
}

Rgb complement(Rgb colour) {
  return {static_cast<BYTE>(255 - colour.red), static_cast<BYTE>(255 - colour.green),
          static_cast<BYTE>(255 - colour.blue)};
}

/// A colour as a pixel, opaque where the format has a fourth byte.
template <class Format>
typename Format::Raw opaquePixel(Rgb colour) {
  if constexpr (Format::bits == 32) {
    return Format::encode(colour) | 0xFF000000;
  } else {
    return Format::encode(colour);
  }
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

BITMAPINFOHEADER* CMaskedBitmapTransform::MarkedBmpDIB(BITMAPINFOHEADER* image, BITMAPINFOHEADER* mask) {
  return painted(image, ConstView(mask), [](auto format, const Overlay& overlay) {
    using Format = decltype(format);
    // The raw value, so that bits which show no colour are copied too.
    const auto value = Format::get(overlay.image.row(0), 0);
    for (int y = 0; y < overlay.height; ++y) {
      for (int x = 0; x < overlay.width; ++x) Format::put(overlay.image.row(y), x, value);
    }
  });
}

BITMAPINFOHEADER* CMaskedBitmapTransform::MarkHighBitsDIB(BITMAPINFOHEADER* image, BITMAPINFOHEADER* mask) {
  if (image == nullptr || image->biBitCount <= 8) return nullptr;
  return painted(image, maskRows(mask), [](auto format, const Overlay& overlay) {
    using Format = decltype(format);
    if constexpr (Format::bits > 8) {
      const Rgb colour = Format::colour(Format::get(overlay.image.row(0), 0));
      show<Format>(overlay, opaquePixel<Format>(colour), opaquePixel<Format>(complement(colour)));
    }
  });
}

BITMAPINFOHEADER* CMaskedBitmapTransform::MarkLowBitsDIB(BITMAPINFOHEADER* image, BITMAPINFOHEADER* mask) {
  if (image == nullptr || image->biBitCount > 8) return nullptr;
  return painted(image, maskRows(mask), [image](auto format, const Overlay& overlay) {
    using Format = decltype(format);
    if constexpr (Format::bits <= 8) {
      const BYTE index = Format::get(overlay.image.row(0), 0);
      const Rgb colour = Format::colour(index, PaletteTable(image));
      const int other =
          CPaletteFuns::GetMaxDifferenceColor(paletteOf(image), static_cast<int>(GetDIBPaletteSize(image)),
                                              colour.red, colour.green, colour.blue);
      show<Format>(overlay, index, lowByte(other));
    }
  });
}
