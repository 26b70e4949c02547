#include "convert/convert.h"
#include "dib/allocate.h"
#include "drawing/device.h"

namespace dibkit {
namespace {

/// The screen's context with the system's default palette realised on it.
class DefaultPaletteContext {
 public:
  DefaultPaletteContext()
      : context_(GetDC(nullptr)),
        before_(
            SelectPalette(context_.get(), static_cast<HPALETTE>(GetStockObject(DEFAULT_PALETTE)), FALSE)) {
    RealizePalette(context_.get());
  }
  ~DefaultPaletteContext() {
    if (before_ != nullptr) SelectPalette(context_.get(), before_, FALSE);
  }
  DefaultPaletteContext(const DefaultPaletteContext&) = delete;
  DefaultPaletteContext& operator=(const DefaultPaletteContext&) = delete;

  HDC get() const { return context_.get(); }

 private:
  ScreenContext context_;
  HPALETTE before_;
};

OwnedDib readBitmap(HBITMAP bitmap) {
  BITMAP description{};
  if (bitmap == nullptr || GetObjectW(bitmap, sizeof(description), &description) == 0) return nullptr;
  OwnedDib result = createDib(description.bmWidth, description.bmHeight, description.bmBitsPixel, 0);
  if (!result) return nullptr;
  const std::int64_t room = layoutOf(result.get())->total;
  auto* info = reinterpret_cast<BITMAPINFO*>(result.get());
  const auto height = static_cast<UINT>(description.bmHeight);

  const DefaultPaletteContext context;
  if (GetDIBits(context.get(), bitmap, 0, height, nullptr, info, DIB_RGB_COLORS) == 0) return nullptr;
  // The platform has written the header, so where the rows start must be checked again to be inside the
  // block.
  const std::optional<Layout> layout = layoutOf(result.get());
  if (!layout || layout->total > room) return nullptr;
  if (GetDIBits(context.get(), bitmap, 0, height, GetDIBBits(result.get()), info, DIB_RGB_COLORS) == 0) {
    return nullptr;
  }
  return result;
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

BITMAPINFOHEADER* CBitmapConverter::ConvertDDBToDIB(HBITMAP bitmap) { return readBitmap(bitmap).release(); }
