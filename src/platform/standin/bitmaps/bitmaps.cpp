#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "platform/guard.h"
#include "platform/large_pages.h"
#include "platform/standin/bitmaps/bitmap_object.h"
#include "platform/standin/drawing/device_context.h"

namespace dibkit::standin {

namespace {

constexpr std::int64_t maximumBytes = std::numeric_limits<std::int32_t>::max();

bool isPossible(const PictureFormat& format) {
  return format.width > 0 && format.height > 0 && isPixelDepth(format.bitCount) &&
         format.byteCount() <= maximumBytes;
}

HBITMAP newBitmap(PictureFormat&& format, bool section) {
  return handleOf<HBITMAP>(new BitmapObject(std::move(format), section));
}

std::unique_ptr<BYTE[]> zeroedBlock(std::size_t bytes) {
  auto block = std::make_unique_for_overwrite<BYTE[]>(bytes);
  preferLargePages(block.get(), bytes);
  std::memset(block.get(), 0, bytes);
  return block;
}

/// The rows of a bitmap that is not a section fill whole words.
int wordStride(int width, int bitCount) {
  return static_cast<int>((std::int64_t{width} * bitCount + 15) / 16 * 2);
}

/// A device-dependent bitmap: it has the system's colours, and no caller sees its rows.
PictureFormat deviceFormat(int width, int height, int bitCount) {
  PictureFormat format{width, height, bitCount, true, false, {}};
  if (!isPixelDepth(bitCount)) return {};
  const std::span<const Colour> colours = systemColours(bitCount);
  format.colours.assign(colours.begin(), colours.end());
  return format;
}

}  // namespace

Pixels PictureFormat::pixelsAt(BYTE* block, int rows) const {
  const auto step = static_cast<std::ptrdiff_t>(stride());
  return {topDown ? block : block + (rows - 1) * step,
          topDown ? step : -step,
          width,
          rows,
          bitCount,
          sixGreenBits,
          colours};
}

bool readFormat(const BITMAPINFO* info, PictureFormat& format) {
  if (info == nullptr) return false;
  const BITMAPINFOHEADER& header = info->bmiHeader;
  if (header.biSize < sizeof(BITMAPINFOHEADER) || header.biHeight == std::numeric_limits<LONG>::min())
    return false;
  format = {};
  format.width = header.biWidth;
  format.height = std::abs(header.biHeight);
  format.bitCount = header.biBitCount;
  format.topDown = header.biHeight < 0;
  const auto* bytes = reinterpret_cast<const BYTE*>(info);
  if (header.biCompression == BI_BITFIELDS && header.biBitCount >= 16) {
    DWORD masks[3];
    std::memcpy(masks, bytes + sizeof(BITMAPINFOHEADER), sizeof(masks));
    format.sixGreenBits = header.biBitCount == 16 && masks[1] == 0x07E0;
  } else if (header.biCompression != BI_RGB) {
    return false;
  }
  if (!isPossible(format)) return false;
  if (format.bitCount > 8) return true;
  format.colours.assign(std::size_t{1} << format.bitCount, black);
  const std::size_t given = header.biClrUsed == 0
                                ? format.colours.size()
                                : std::min<std::size_t>(header.biClrUsed, format.colours.size());
  std::memcpy(format.colours.data(), bytes + header.biSize, given * sizeof(Colour));
  for (Colour& colour : format.colours) colour &= white;  // without the reserved byte
  return true;
}

BitmapObject::BitmapObject(PictureFormat pictureFormat, bool section)
    : GdiObject(ownKind),
      format(std::move(pictureFormat)),
      section_(section),
      bits_(zeroedBlock(static_cast<std::size_t>(format.byteCount()))) {}

int BitmapObject::describe(int byteCount, void* out) const {
  const int rowBytes =
      section_ ? static_cast<int>(format.stride()) : wordStride(format.width, format.bitCount);
  const BITMAP bitmap{0,
                      format.width,
                      format.height,
                      rowBytes,
                      1,
                      static_cast<WORD>(format.bitCount),
                      section_ ? static_cast<void*>(bits_.get()) : nullptr};
  return giveDescription(&bitmap, sizeof(bitmap), byteCount, out);
}

}  // namespace dibkit::standin

using namespace dibkit;
using namespace dibkit::standin;

HBITMAP CreateBitmap(int width, int height, UINT planes, UINT bitCount, const void* bits) {
  if (planes != 1) return nullptr;
  return catchOutOfMemory([&]() -> HBITMAP {
    PictureFormat format = deviceFormat(width, height, static_cast<int>(bitCount));
    if (!isPossible(format)) return nullptr;
    auto bitmap = std::make_unique<BitmapObject>(std::move(format), false);
    if (bits != nullptr) {
      const auto rowBytes = static_cast<std::size_t>(wordStride(width, static_cast<int>(bitCount)));
      for (int y = 0; y < height; ++y) {
        std::memcpy(bitmap->pixels().row(y),
                    static_cast<const BYTE*>(bits) + static_cast<std::size_t>(y) * rowBytes, rowBytes);
      }
    }
    return handleOf<HBITMAP>(bitmap.release());
  });
}

HBITMAP CreateCompatibleBitmap(HDC handle, int width, int height) {
  const auto* context = objectOf<DeviceContext>(handle);
  if (context == nullptr || width < 0 || height < 0) return nullptr;
  // A bitmap always has pixels: without width or height it gets one monochrome pixel.
  const bool pixelless = width == 0 || height == 0;
  return catchOutOfMemory([&]() -> HBITMAP {
    PictureFormat format =
        pixelless ? deviceFormat(1, 1, 1) : deviceFormat(width, height, context->bitCount());
    return isPossible(format) ? newBitmap(std::move(format), false) : nullptr;
  });
}

HBITMAP CreateDIBSection(HDC /*context*/, const BITMAPINFO* info, UINT usage, void** bits, HANDLE file,
                         DWORD /*offset*/) {
  if (bits != nullptr) *bits = nullptr;
  if (usage != DIB_RGB_COLORS || file != nullptr) return nullptr;
  return catchOutOfMemory([&]() -> HBITMAP {
    PictureFormat format;
    if (!readFormat(info, format)) return nullptr;
    const HBITMAP bitmap = newBitmap(std::move(format), true);
    if (bits != nullptr) *bits = objectOf<BitmapObject>(bitmap)->bits();
    return bitmap;
  });
}
