#include <algorithm>
#include <cstring>

#include "platform/guard.h"
#include "platform/standin/bitmaps/bitmap_object.h"
#include "platform/standin/bitmaps/pixel_transfer.h"
#include "platform/standin/drawing/device_context.h"
#include "platform/standin/geometry.h"

namespace dibkit::standin {

namespace {

/// Copies a picture, its top left pixel at (x, y) of the bitmap, as far as it is inside `area`, the bitmap
/// and the clip region.
void place(const DeviceContext& context, const Pixels& picture, std::int64_t x, std::int64_t y,
           const RECT& area) {
  const RECT cover = clampedRect(x, y, x + picture.width, y + picture.height);
  RECT common;
  if (!IntersectRect(&common, &area, &cover)) return;
  PixelTransfer pixels(picture, context.pixels());
  context.forEachVisible(common, [&](const RECT& rect) {
    for (int row = rect.top; row < rect.bottom; ++row) {
      pixels.copy(static_cast<int>(rect.left - x), static_cast<int>(row - y), rect.left, row,
                  rect.right - rect.left);
    }
  });
}

/// The rows of a picture that are in a block of scan lines. Scan lines count from the picture's bottom, or
/// from the top of a top-down one.
struct ScanLines {
  int count = 0;
  int firstRow = 0;  ///< the picture's row of the highest of them

  ScanLines(const PictureFormat& format, UINT start, UINT lines) {
    const auto height = static_cast<UINT>(format.height);
    if (start >= height) return;
    count = static_cast<int>(std::min(lines, height - start));
    firstRow = format.topDown ? static_cast<int>(start) : format.height - static_cast<int>(start) - count;
  }
};

/// Fills in what GetDIBits gives besides the pixels. A section that is read at its own depth has its own
/// colours, anything else the system's.
void giveColours(const BitmapObject& bitmap, PictureFormat& format, BITMAPINFO& info) {
  info.bmiHeader.biSizeImage = static_cast<DWORD>(format.byteCount());
  info.bmiHeader.biClrUsed = 0;
  if (format.bitCount > 8) return;
  const bool own = bitmap.isSection() && bitmap.format.bitCount == format.bitCount;
  const std::span<const Colour> colours = own ? bitmap.format.colours : systemColours(format.bitCount);
  format.colours.assign(colours.begin(), colours.end());
  std::memcpy(reinterpret_cast<BYTE*>(&info) + info.bmiHeader.biSize, colours.data(), colours.size_bytes());
}

/// The header that describes a bitmap as it is.
void giveHeader(const PictureFormat& format, BITMAPINFOHEADER& header) {
  header = {};
  header.biSize = sizeof(BITMAPINFOHEADER);
  header.biWidth = format.width;
  header.biHeight = format.height;
  header.biPlanes = 1;
  header.biBitCount = static_cast<WORD>(format.bitCount);
  header.biSizeImage = static_cast<DWORD>(format.byteCount());
}

}  // namespace

}  // namespace dibkit::standin

using namespace dibkit;
using namespace dibkit::standin;

int GetDIBits(HDC context, HBITMAP handle, UINT start, UINT lines, void* bits, BITMAPINFO* info, UINT usage) {
  const auto* bitmap = objectOf<BitmapObject>(handle);
  if (objectOf<DeviceContext>(context) == nullptr || bitmap == nullptr || info == nullptr) return 0;
  if (usage != DIB_RGB_COLORS || info->bmiHeader.biSize < sizeof(BITMAPINFOHEADER)) return 0;
  if (info->bmiHeader.biBitCount == 0) {
    if (bits != nullptr) return 0;
    giveHeader(bitmap->format, info->bmiHeader);
    return 1;
  }
  return catchOutOfMemory([&] {
    PictureFormat format;
    if (!readFormat(info, format)) return 0;
    giveColours(*bitmap, format, *info);
    if (bits == nullptr) return 1;
    const ScanLines wanted(format, start, lines);
    const Pixels from = bitmap->pixels();
    const Pixels to = format.pixelsAt(static_cast<BYTE*>(bits), wanted.count);
    // Scan lines of both count from the same side, so pictures of different heights are aligned there.
    const int shift = format.topDown ? 0 : from.height - format.height;
    PixelTransfer pixels(from, to);
    int copied = 0;
    for (int row = 0; row < wanted.count; ++row) {
      const int fromRow = wanted.firstRow + row + shift;
      if (fromRow < 0 || fromRow >= from.height) continue;
      pixels.copy(0, fromRow, 0, row, std::min(from.width, to.width));
      ++copied;
    }
    return copied;
  });
}

int SetDIBitsToDevice(HDC handle, int x, int y, DWORD width, DWORD height, int fromX, int fromY, UINT start,
                      UINT lines, const void* bits, const BITMAPINFO* info, UINT usage) {
  const auto* context = objectOf<DeviceContext>(handle);
  if (context == nullptr || context->bitmap() == nullptr || bits == nullptr || usage != DIB_RGB_COLORS)
    return 0;
  return catchOutOfMemory([&] {
    PictureFormat format;
    if (!readFormat(info, format)) return 0;
    const ScanLines given(format, start, lines);
    // Not const, since the type also serves for writing; here the rows are only read.
    const Pixels picture = format.pixelsAt(const_cast<BYTE*>(static_cast<const BYTE*>(bits)), given.count);
    const std::int64_t left = std::int64_t{x} + context->origin.x;
    const std::int64_t top = std::int64_t{y} + context->origin.y;
    const std::int64_t firstRow = format.topDown ? fromY : std::int64_t{format.height} - fromY - height;
    place(*context, picture, left - fromX, top - firstRow + given.firstRow,
          clampedRect(left, top, left + width, top + height));
    return given.count;
  });
}

BOOL BitBlt(HDC handle, int x, int y, int width, int height, HDC source, int fromX, int fromY,
            DWORD operation) {
  const auto* to = objectOf<DeviceContext>(handle);
  const auto* from = objectOf<DeviceContext>(source);
  if (to == nullptr || from == nullptr || operation != SRCCOPY) return FALSE;
  if (to->bitmap() == nullptr || from->bitmap() == nullptr) return FALSE;
  return catchOutOfMemory([&] {
    const std::int64_t left = std::int64_t{x} + to->origin.x;
    const std::int64_t top = std::int64_t{y} + to->origin.y;
    const std::int64_t sourceLeft = std::int64_t{fromX} + from->origin.x;
    const std::int64_t sourceTop = std::int64_t{fromY} + from->origin.y;
    const RECT area = clampedRect(left, top, left + width, top + height);
    const BitmapObject& bitmap = *from->bitmap();
    if (to->bitmap() != &bitmap) {
      place(*to, bitmap.pixels(), left - sourceLeft, top - sourceTop, area);
    } else {
      // Source and target may overlap, so the pixels come from a copy.
      const BitmapObject copy(bitmap.format, false);
      std::memcpy(copy.bits(), bitmap.bits(), static_cast<std::size_t>(bitmap.format.byteCount()));
      place(*to, copy.pixels(), left - sourceLeft, top - sourceTop, area);
    }
    return TRUE;
  });
}
