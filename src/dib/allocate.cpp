#include "dib/allocate.h"

#include <new>

#include "dib/view.h"
#include "platform/large_pages.h"

namespace dibkit {
namespace {

void clearPadding(const View& view) {
  // A byte with both pixels and padding is cleared too.
  const auto whole = static_cast<std::ptrdiff_t>(std::int64_t{view.width()} * view.bitCount() / 8);
  if (whole == view.stride()) return;
  for (int y = 0; y < view.height(); ++y) {
    std::memset(view.row(y) + whole, 0, static_cast<std::size_t>(view.stride() - whole));
  }
}

}  // namespace

BYTE* allocateBlock(std::int64_t bytes) {
  if (bytes > maximumDibBytes) return nullptr;
  BYTE* block = new (std::nothrow) BYTE[static_cast<std::size_t>(bytes)];
  if (block != nullptr) preferLargePages(block, static_cast<std::size_t>(bytes));
  return block;
}

OwnedDib createDib(int width, int height, int bitCount, int clrUsed, InitialPixels pixels) {
  if (width < 0 || height < 0 || bitCount < 0 || bitCount > 0xFFFF) return nullptr;
  BITMAPINFOHEADER header{};
  header.biSize = sizeof(BITMAPINFOHEADER);
  header.biWidth = width;
  header.biHeight = height;
  header.biPlanes = 1;
  header.biBitCount = static_cast<WORD>(bitCount);
  header.biCompression = BI_RGB;
  // biSizeImage is deliberately 0: nothing in the library reads it.
  if (clrUsed >= 1 && bitCount <= 8) header.biClrUsed = static_cast<DWORD>(clrUsed);

  const std::optional<Layout> layout = layoutOf(&header);
  if (!layout) return nullptr;
  BYTE* block = allocateBlock(layout->total);
  if (block == nullptr) return nullptr;
  const std::int64_t cleared = pixels == InitialPixels::cleared ? layout->total : layout->bits;
  std::memset(block, 0, static_cast<std::size_t>(cleared));
  std::memcpy(block, &header, sizeof(header));
  OwnedDib dib(reinterpret_cast<BITMAPINFOHEADER*>(block));
  if (pixels == InitialPixels::unwritten) clearPadding(View(dib.get()));
  return dib;
}

OwnedDib createMask(int width, int height) {
  OwnedDib mask = createDib(width, height, 1, 0);
  if (mask) paletteOf(mask.get())[1] = {255, 255, 255, 0};
  return mask;
}

void copyPalette(const BITMAPINFOHEADER* from, BITMAPINFOHEADER* to) {
  std::memcpy(paletteOf(to), paletteOf(from), std::size_t{GetDIBPaletteSize(from)} * sizeof(RGBQUAD));
}

}  // namespace dibkit

using namespace dibkit;

BITMAPINFOHEADER* CBitmapCreator::CreateDibImage(int width, int height, int bitCount, int clrUsed) {
  return createDib(width, height, bitCount, clrUsed).release();
}

BITMAPINFOHEADER* CBitmapCreator::Clone(const BITMAPINFOHEADER* dib) {
  const std::optional<Layout> layout = layoutOf(dib);
  if (!layout) return nullptr;
  BYTE* block = allocateBlock(layout->total);
  if (block == nullptr) return nullptr;
  std::memcpy(block, dib, static_cast<std::size_t>(layout->total));
  return reinterpret_cast<BITMAPINFOHEADER*>(block);
}
