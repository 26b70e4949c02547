#include "convert/convert.h"
#include "dib/allocate.h"
#include "dib/view.h"
#include "drawing/device.h"

namespace dibkit {
namespace {

/// The header of an image with room for any colour table.
struct FormatHeader {
  BITMAPINFOHEADER header{};
  RGBQUAD colours[256]{};

  const BITMAPINFO* info() const { return reinterpret_cast<const BITMAPINFO*>(this); }
  int colourCount() const {
    return header.biBitCount <= 8 ? static_cast<int>(GetDIBPaletteSize(&header)) : 0;
  }
};

/// Reads the entries of a palette that `bitCount` bits can index.
/// \return their number; 0 when the handle is not a palette
int readPalette(HPALETTE palette, int bitCount, RGBQUAD* colours) {
  PALETTEENTRY entries[256];
  const UINT read = GetPaletteEntries(palette, 0, 1U << bitCount, entries);
  for (UINT i = 0; i < read; ++i) colours[i] = {entries[i].peBlue, entries[i].peGreen, entries[i].peRed, 0};
  return static_cast<int>(read);
}

/// The format to convert to; nothing for a depth that no image has, and without a palette that is needed.
std::optional<FormatHeader> formatOf(const ConstView& source, UINT bitCount, HPALETTE palette) {
  if (bitCount == 0 || bitCount > 32) return std::nullopt;
  FormatHeader format;
  format.header.biSize = sizeof(BITMAPINFOHEADER);
  format.header.biWidth = source.width();
  format.header.biHeight = source.height();
  format.header.biPlanes = 1;
  format.header.biBitCount = static_cast<WORD>(bitCount);
  const std::int64_t bytes = strideOf(source.width(), bitCount) * source.height();
  if (bytes > maximumDibBytes) return std::nullopt;
  // Set here, unlike in other new images, as in every image that is read from the platform.
  format.header.biSizeImage = static_cast<DWORD>(bytes);
  if (bitCount > 8) return format;
  const int count = readPalette(palette, static_cast<int>(bitCount), format.colours);
  if (count == 0) return std::nullopt;
  if (count < 1 << bitCount) format.header.biClrUsed = static_cast<DWORD>(count);
  return format;
}

/// A DIB section, selected into a context of its own.
class SectionContext {
 public:
  SectionContext(HDC screen, const BITMAPINFO* info)
      : bitmap_(CreateDIBSection(screen, info, DIB_RGB_COLORS, &bits_, nullptr, 0)),
        context_(CreateCompatibleDC(screen)),
        selected_(context_.get(), bitmap_.get()) {}

  explicit operator bool() const { return bitmap_ != nullptr && bits_ != nullptr && context_ != nullptr; }
  BYTE* bits() const { return static_cast<BYTE*>(bits_); }
  HDC context() const { return context_.get(); }

 private:
  void* bits_ = nullptr;
  OwnedBitmap bitmap_;
  MemoryContext context_;
  SelectedObject selected_;
};

/// The image in the rows of a section of this format.
OwnedDib imageFrom(const FormatHeader& format, const BYTE* bits) {
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
  const std::optional<FormatHeader> format = formatOf(source, bitCount, palette);
  if (!format) return nullptr;

  const ScreenContext screen(GetDC(nullptr));
  const SectionContext to(screen.get(), format->info());
  const SectionContext from(screen.get(), reinterpret_cast<const BITMAPINFO*>(dib));
  if (!to || !from) return nullptr;
  std::memcpy(from.bits(), GetDIBBits(dib), static_cast<std::size_t>(source.stride() * source.height()));
  if (BitBlt(to.context(), 0, 0, source.width(), source.height(), from.context(), 0, 0, SRCCOPY) == FALSE) {
    return nullptr;
  }
  GdiFlush();
  return imageFrom(*format, to.bits());
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

BITMAPINFOHEADER* ConvertDIBFormat(BITMAPINFOHEADER* source, UINT bitCount, HPALETTE palette) {
  return convertFormat(source, bitCount, palette).release();
}
