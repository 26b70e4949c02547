#include <cstddef>
#include <vector>

#include "convert/convert.h"
#include "dib/view.h"
#include "platform/guard.h"

namespace dibkit {
namespace {

/// The colours of an 8-bit image as a logical palette; none for images of other depths.
void makePalette(const BITMAPINFOHEADER* dib, CPalette& palette) {
  if (dib->biBitCount != 8) return;
  const auto count = static_cast<WORD>(GetDIBPaletteSize(dib));
  std::vector<BYTE> block(offsetof(LOGPALETTE, palPalEntry) + sizeof(PALETTEENTRY) * count);
  auto* description = reinterpret_cast<LOGPALETTE*>(block.data());
  description->palVersion = 0x300;
  description->palNumEntries = count;
  const RGBQUAD* colours = paletteOf(dib);
  for (WORD i = 0; i < count; ++i) {
    description->palPalEntry[i] = {colours[i].rgbRed, colours[i].rgbGreen, colours[i].rgbBlue, 0};
  }
  palette.CreatePalette(description);
}

/// The number of bytes that are copied to the clipboard. The colour table of 1 and 4 bits and the masks of
/// bit fields are deliberately not counted, so the copy of such an image is that much shorter: hosts have
/// always pasted blocks of this size.
std::size_t copiedBytes(const BITMAPINFOHEADER* dib) {
  const DWORD colours = dib->biBitCount == 8 ? GetDIBPaletteSize(dib) : 0;
  const std::int64_t rows = strideOf(dib->biWidth, dib->biBitCount) * dib->biHeight;
  return dib->biSize + std::size_t{colours} * sizeof(RGBQUAD) + static_cast<std::size_t>(rows);
}

HGLOBAL copyToGlobal(const BITMAPINFOHEADER* dib) {
  const std::size_t bytes = copiedBytes(dib);
  const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, bytes);
  if (block == nullptr) return nullptr;
  if (void* memory = GlobalLock(block)) std::memcpy(memory, dib, bytes);
  GlobalUnlock(block);
  return block;
}

int copyToClipboard(const BITMAPINFOHEADER* dib, HWND owner) {
  if (!layoutOf(dib)) return FALSE;
  CPalette palette;
  makePalette(dib, palette);
  const HGLOBAL block = copyToGlobal(dib);
  if (block == nullptr) return FALSE;
  OpenClipboard(owner);
  EmptyClipboard();
  // The clipboard owns what it accepts; what it refuses has to be released here.
  if (palette.GetSafeHandle() != nullptr &&
      SetClipboardData(CF_PALETTE, palette.GetSafeHandle()) != nullptr) {
    palette.Detach();
  }
  if (SetClipboardData(CF_DIB, block) == nullptr) GlobalFree(block);
  CloseClipboard();
  return TRUE;
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

int CBitmapConverter::CopyBitmapToClipboard(BITMAPINFOHEADER* dib, HWND owner) {
  return catchOutOfMemory([&] { return copyToClipboard(dib, owner); });
}
