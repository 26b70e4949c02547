#include "convert/convert.h"
#include "dib/allocate.h"
#include "dib/view.h"
#include "drawing/device.h"

namespace dibkit {
namespace {

/// A header with room for every colour table.
struct Format {
  BITMAPINFOHEADER header{};
  RGBQUAD colours[256]{};

  const BITMAPINFO* info() const { return reinterpret_cast<const BITMAPINFO*>(this); }
  int colourCount() const {
    return header.biBitCount <= 8 ? static_cast<int>(GetDIBPaletteSize(&header)) : 0;
  }
};

/// The entries of a palette that `bitCount` bits can index; 0 when the handle is no palette.
int readPalette(HPALETTE palette, int bitCount, RGBQUAD* colours) {
  PALETTEENTRY entries[256];
  const UINT read = GetPaletteEntries(palette, 0, 1U << bitCount, entries);
  for (UINT i = 0; i < read; ++i) colours[i] = {entries[i].peBlue, entries[i].peGreen, entries[i].peRed, 0};
  return static_cast<int>(read);
}

/// The format to convert to; nothing for a depth that no image has, and when a palette is needed and missing.
std::optional<Format> formatOf(const ConstView& source, UINT bitCount, HPALETTE palette) {
  if (bitCount == 0 || bitCount > 32) return std::nullopt;
  Format format;
  format.header.biSize = sizeof(BITMAPINFOHEADER);
  format.header.biWidth = source.width();
  format.header.biHeight = source.height();
  format.header.biPlanes = 1;
  format.header.biBitCount = static_cast<WORD>(bitCount);
  const std::int64_t bytes = strideOf(source.width(), bitCount) * source.height();
  if (bytes > maximumDibBytes) return std::nullopt;
  // Set here, unlike in all other new images: this image has been read back from the platform.
  format.header.biSizeImage = static_cast<DWORD>(bytes);
  if (bitCount > 8) return format;
  const int count = readPalette(palette, static_cast<int>(bitCount), format.colours);
  if (count == 0) return std::nullopt;
  if (count < 1 << bitCount) format.header.biClrUsed = static_cast<DWORD>(count);
  return format;
}

/// A section and a context to draw on it or from it.
class Surface {
 public:
  Surface(HDC screen, const BITMAPINFO* info)
      : bitmap_(CreateDIBSection(screen, info, DIB_RGB_COLORS, &bits_, nullptr, 0)),
        context_(CreateCompatibleDC(screen)),
        selection_(context_.get(), bitmap_.get()) {}

  explicit operator bool() const { return bitmap_ != nullptr && bits_ != nullptr && context_ != nullptr; }
  BYTE* bits() const { return static_cast<BYTE*>(bits_); }
  HDC context() const { return context_.get(); }

 private:
  void* bits_ = nullptr;
  OwnedBitmap bitmap_;
  MemoryContext context_;
  SelectedObject selection_;
};

/// The image that a section of this format holds.
OwnedDib imageFrom(const Format& format, const BYTE* bits) {
  const BITMAPINFOHEADER& header = format.header;
  OwnedDib result = createDib(header.biWidth, header.biHeight, header.biBitCount,
                              static_cast<int>(header.biClrUsed), InitialPixels::unwritten);
  if (!result) return nullptr;
  result->biSizeImage = header.biSizeImage;
  std::memcpy(result.get() + 1, format.colours,
              static_cast<std::size_t>(format.colourCount()) * sizeof(RGBQUAD));
  std::memcpy(GetDIBBits(result.get()), bits, header.biSizeImage);
  return result;
}

OwnedDib convertFormat(const BITMAPINFOHEADER* dib, UINT bitCount, HPALETTE palette) {
  const ConstView source(dib);
  if (!source) return nullptr;
  const std::optional<Format> format = formatOf(source, bitCount, palette);
  if (!format) return nullptr;

  const ScreenContext screen(GetDC(nullptr));
  const Surface to(screen.get(), format->info());
  const Surface from(screen.get(), reinterpret_cast<const BITMAPINFO*>(dib));
  if (!to || !from) return nullptr;
  std::memcpy(from.bits(), GetDIBBits(dib), static_cast<std::size_t>(source.stride() * source.height()));
  BitBlt(to.context(), 0, 0, source.width(), source.height(), from.context(), 0, 0, SRCCOPY);
  GdiFlush();
  return imageFrom(*format, to.bits());
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

BITMAPINFOHEADER* ConvertDIBFormat(BITMAPINFOHEADER* source, UINT bitCount, HPALETTE palette) {
  return convertFormat(source, bitCount, palette).release();
}
