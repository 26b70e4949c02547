#include <cstdlib>

#include "cel/mask_on_demand.h"
#include "dib/allocate.h"
#include "dib/view.h"
#include "gifmask/gifmask.h"

namespace dibkit {
namespace {

/// The rows of a 32-bit image whose header may have negative sizes. They are read bottom-up regardless of the
/// signs, on purpose: hosts expect pictures stored top-down to be upside down.
struct UnsignedRows {
  explicit UnsignedRows(const BITMAPINFOHEADER* dib) {
    if (dib == nullptr || dib->biBitCount != Bgra32::bits) return;
    BITMAPINFOHEADER header = *dib;
    if (header.biWidth == INT32_MIN || header.biHeight == INT32_MIN) return;
    header.biWidth = std::abs(header.biWidth);
    header.biHeight = std::abs(header.biHeight);
    const std::optional<Layout> layout = layoutOf(&header);
    if (!layout) return;
    bits = reinterpret_cast<const BYTE*>(dib) + layout->bits;
    width = header.biWidth;
    height = header.biHeight;
  }

  const BYTE* row(int y) const { return bits + (height - 1 - std::ptrdiff_t{y}) * width * 4; }

  const BYTE* bits = nullptr;
  int width = 0;
  int height = 0;
};

/// (channel * alpha + backdrop * (255 - alpha)) / 255, truncated
constexpr BYTE composited(BYTE channel, BYTE backdrop, unsigned alpha) {
  return static_cast<BYTE>((channel * alpha + backdrop * (255 - alpha)) / 255);
}

constexpr Rgb composited(Rgb colour, Rgb backdrop, unsigned alpha) {
  return {composited(colour.red, backdrop.red, alpha), composited(colour.green, backdrop.green, alpha),
          composited(colour.blue, backdrop.blue, alpha)};
}

constexpr DWORD alphaOf(DWORD pixel) { return pixel >> 24; }

void splitRow(const BYTE* from, int width, Rgb background, Rgb transparent, int y, BYTE* to,
              MaskOnDemand& mask) {
  for (int x = 0; x < width;) {
    const DWORD pixel = Bgra32::get(from, x);
    if (const DWORD alpha = alphaOf(pixel); alpha != 0) {
      const Rgb colour = Bgra32::colour(pixel);
      Bgr24::put(to, x++, alpha == 255 ? colour : composited(colour, background, alpha));
      continue;
    }
    const int left = x;
    for (; x < width && alphaOf(Bgra32::get(from, x)) == 0; ++x) Bgr24::put(to, x, transparent);
    mask.mark(y, left, x);
  }
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

int CMaskedBitmapTransform::Spilt32BitsDIBForGIF(BITMAPINFOHEADER* source, DWORD background,
                                                 DWORD transparent, BITMAPINFOHEADER** outImage,
                                                 BITMAPINFOHEADER** outMask) {
  const UnsignedRows rows(source);
  if (rows.bits == nullptr || outImage == nullptr || outMask == nullptr) return 0;
  OwnedDib image = createDib(rows.width, rows.height, Bgr24::bits, 0, InitialPixels::unwritten);
  if (!image) return 0;
  const View target(image.get());
  MaskOnDemand mask(rows.width, rows.height);
  for (int y = 0; y < target.lines(); ++y) {
    splitRow(rows.row(y), rows.width, fromColorRef(background), fromColorRef(transparent), y, target.row(y),
             mask);
  }
  if (mask.failed()) return 0;
  *outImage = image.release();
  *outMask = mask.take().release();
  return 1;
}
