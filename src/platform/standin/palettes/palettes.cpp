#include <algorithm>

#include "platform/guard.h"
#include "platform/standin/drawing/device_context.h"
#include "platform/standin/palettes/palette_object.h"

namespace dibkit::standin {
namespace {

constexpr WORD paletteVersion = 0x300;

std::vector<PALETTEENTRY> reservedColours() {
  std::vector<PALETTEENTRY> entries;
  const auto& colours = systemColours256();
  for (std::size_t i = 0; i < colours.size(); ++i) {
    if (i >= 10 && i < colours.size() - 10) continue;
    const auto channel = [&](int shift) { return static_cast<BYTE>(colours[i] >> shift); };
    entries.push_back({channel(16), channel(8), channel(0), 0});
  }
  return entries;
}

/// Up to `count` entries, from `first` on, of the colour table of the section selected into a context; empty
/// when there is none.
std::span<Colour> colourTable(HDC handle, UINT first, UINT count) {
  const auto* context = objectOf<DeviceContext>(handle);
  BitmapObject* bitmap = context != nullptr ? context->bitmap() : nullptr;
  if (bitmap == nullptr || !bitmap->isSection()) return {};
  const std::span<Colour> colours(bitmap->format.colours);
  if (first >= colours.size()) return {};
  return colours.subspan(first, std::min<std::size_t>(count, colours.size() - first));
}

}  // namespace

int PaletteObject::describe(int byteCount, void* out) const {
  const WORD count = static_cast<WORD>(entries.size());
  return giveDescription(&count, sizeof(count), byteCount, out);
}

PaletteObject* defaultPalette() {
  static PaletteObject* const palette = [] {
    static PaletteObject reserved(reservedColours());
    reserved.makeStock();
    return &reserved;
  }();
  return palette;
}

}  // namespace dibkit::standin

using namespace dibkit;
using namespace dibkit::standin;

HPALETTE CreatePalette(const LOGPALETTE* description) {
  if (description == nullptr || description->palVersion != paletteVersion ||
      description->palNumEntries == 0) {
    return nullptr;
  }
  return catchOutOfMemory([&] {
    const PALETTEENTRY* first = description->palPalEntry;
    return handleOf<HPALETTE>(new PaletteObject({first, first + description->palNumEntries}));
  });
}

UINT GetPaletteEntries(HPALETTE handle, UINT first, UINT count, PALETTEENTRY* out) {
  const auto* palette = objectOf<PaletteObject>(handle);
  if (palette == nullptr) return 0;
  const auto size = static_cast<UINT>(palette->entries.size());
  if (out == nullptr) return size;
  if (first >= size) return 0;
  const UINT copied = std::min(count, size - first);
  std::copy_n(palette->entries.begin() + first, copied, out);
  return copied;
}

HPALETTE SelectPalette(HDC handle, HPALETTE palette, BOOL /*background*/) {
  auto* context = objectOf<DeviceContext>(handle);
  auto* object = objectOf<PaletteObject>(palette);
  if (context == nullptr || object == nullptr) return nullptr;
  return handleOf<HPALETTE>(context->selectPalette(object));
}

UINT RealizePalette(HDC /*context*/) { return 0; }

UINT SetDIBColorTable(HDC context, UINT first, UINT count, const RGBQUAD* colours) {
  const std::span<Colour> table = colourTable(context, first, count);
  if (colours == nullptr) return 0;
  for (Colour& colour : table) {
    // Tables have red in the high byte, so red and blue are exchanged.
    colour = RGB(colours->rgbBlue, colours->rgbGreen, colours->rgbRed);
    ++colours;
  }
  return static_cast<UINT>(table.size());
}

UINT GetDIBColorTable(HDC context, UINT first, UINT count, RGBQUAD* colours) {
  const std::span<Colour> table = colourTable(context, first, count);
  if (colours == nullptr) return 0;
  for (const Colour colour : table) {
    *colours++ = {static_cast<BYTE>(colour), static_cast<BYTE>(colour >> 8), static_cast<BYTE>(colour >> 16),
                  0};
  }
  return static_cast<UINT>(table.size());
}
