#include "dib/pixel_format.h"
#include "gifmask/gifmask.h"
#include "palette/palette.h"

namespace dibkit {
namespace {

/// A copy of an image whose overlap with a mask gets painted.
struct Marker {
  Marker(const BITMAPINFOHEADER* image, const BITMAPINFOHEADER* mask) : maskRows(mask) {
    if (maskRows) copy.reset(CBitmapCreator::Clone(image));
    if (!copy) return;
    rows = View(copy.get());
    width = std::min(rows.width(), maskRows.width());
    height = std::min(rows.height(), maskRows.height());
  }

  ConstView maskRows;
  OwnedDib copy;
  View rows;
  int width = 0;
  int height = 0;
};

/// Paints the overlap with one value where the mask bit is 1 and another where it is 0.
template <class Format>
void paint(const Marker& marker, typename Format::Raw marked, typename Format::Raw unmarked) {
  for (int y = 0; y < marker.height; ++y) {
    const BYTE* mask = marker.maskRows.row(y);
    BYTE* row = marker.rows.row(y);
    for (int x = 0; x < marker.width; ++x)
      Format::put(row, x, Get1BitPixel(mask, x) != 0 ? marked : unmarked);
  }
}

Rgb complement(Rgb colour) {
  return {static_cast<BYTE>(255 - colour.red), static_cast<BYTE>(255 - colour.green),
          static_cast<BYTE>(255 - colour.blue)};
}

/// A colour as a marker pixel: of 32 bits opaque.
template <class Format>
typename Format::Raw markerPixel(Rgb colour) {
  if constexpr (Format::bits == 32) {
    return Format::encode(colour) | 0xFF000000;
  } else {
    return Format::encode(colour);
  }
}

bool isMask(const BITMAPINFOHEADER* mask) { return mask != nullptr && mask->biBitCount == 1; }

}  // namespace
}  // namespace dibkit

BITMAPINFOHEADER* CMaskedBitmapTransform::MarkedBmpDIB(BITMAPINFOHEADER* image, BITMAPINFOHEADER* mask) {
  using namespace dibkit;
  Marker marker(image, mask);
  if (!marker.copy) return nullptr;
  return withFormat(image->biBitCount, static_cast<BITMAPINFOHEADER*>(nullptr), [&](auto format) {
    using Format = decltype(format);
    if (marker.width > 0 && marker.height > 0) {
      // The whole stored value, at every depth.
      const auto value = Format::get(marker.rows.row(0), 0);
      for (int y = 0; y < marker.height; ++y) {
        for (int x = 0; x < marker.width; ++x) Format::put(marker.rows.row(y), x, value);
      }
    }
    return marker.copy.release();
  });
}

BITMAPINFOHEADER* CMaskedBitmapTransform::MarkHighBitsDIB(BITMAPINFOHEADER* image, BITMAPINFOHEADER* mask) {
  using namespace dibkit;
  if (image == nullptr || image->biBitCount <= 8 || !isMask(mask)) return nullptr;
  Marker marker(image, mask);
  if (!marker.copy) return nullptr;
  return withFormat(image->biBitCount, static_cast<BITMAPINFOHEADER*>(nullptr), [&](auto format) {
    using Format = decltype(format);
    if constexpr (Format::bits > 8) {
      if (marker.width > 0 && marker.height > 0) {
        const Rgb colour = Format::colour(Format::get(marker.rows.row(0), 0), PaletteTable());
        paint<Format>(marker, markerPixel<Format>(colour), markerPixel<Format>(complement(colour)));
      }
    }
    return marker.copy.release();
  });
}

BITMAPINFOHEADER* CMaskedBitmapTransform::MarkLowBitsDIB(BITMAPINFOHEADER* image, BITMAPINFOHEADER* mask) {
  using namespace dibkit;
  if (image == nullptr || image->biBitCount > 8 || !isMask(mask)) return nullptr;
  Marker marker(image, mask);
  if (!marker.copy) return nullptr;
  return withFormat(image->biBitCount, static_cast<BITMAPINFOHEADER*>(nullptr), [&](auto format) {
    using Format = decltype(format);
    if constexpr (Format::bits <= 8) {
      if (marker.width > 0 && marker.height > 0) {
        const BYTE index = static_cast<BYTE>(Format::get(marker.rows.row(0), 0));
        const PaletteTable table(image);
        const Rgb colour = fromEntry(table[index]);
        auto* palette = reinterpret_cast<RGBQUAD*>(reinterpret_cast<BYTE*>(image) + image->biSize);
        const int other = CPaletteFuns::GetMaxDifferenceColor(
            palette, static_cast<int>(GetDIBPaletteSize(image)), colour.red, colour.green, colour.blue);
        paint<Format>(marker, index, lowByte(other));
      }
    }
    return marker.copy.release();
  });
}
