#include "dib/allocate.h"
#include "dib/view.h"
#include "palette/map_entries.h"
#include "palette/palette.h"
#include "palette/remap_table.h"
#include "platform/guard.h"

namespace dibkit {
namespace {

bool addPalette(ColourMap& map, const RGBQUAD* palette, int count) {
  for (int i = 0; i < count; ++i) {
    DWORD key = packEntry(palette[i]);
    int next = static_cast<int>(map.GetCount());
    int value = 0;
    if (map.Lookup(key, value) != 0) continue;
    if (next >= 256) return false;
    map.SetAt(key, next);
  }
  return true;
}

/// Moves the pixels of an image onto a map's palette, which the result already has.
template <class Format>
void changeIndexes(const BITMAPINFOHEADER* dib, const ColourMap* map, BITMAPINFOHEADER* result) {
  const ConstView source(dib);
  const View target(result);
  RemapTable table = remapOnto(dib, map, [](int index) { return storedLowByte(Format::bits, index); });
  for (int y = 0; y < source.lines(); ++y) {
    table.row<Format, Format>(source.row(y), source.width(), target.row(y));
  }
}

OwnedDib changePalette(const BITMAPINFOHEADER* dib, const ColourMap* map) {
  const ConstView source(dib);
  const std::int64_t count = map != nullptr ? map->GetCount() : 0;
  if (!source || count > INT32_MAX) return nullptr;
  return withFormat(source.bitCount(), [&](auto format) -> OwnedDib {
    using Format = decltype(format);
    if constexpr (Format::bits > 8) {
      return nullptr;
    } else {
      OwnedDib result = createDib(source.width(), source.height(), Format::bits, static_cast<int>(count),
                                  InitialPixels::unwritten);
      if (!result) return nullptr;
      if (map != nullptr) putPalette(result.get(), *map);
      changeIndexes<Format>(dib, map, result.get());
      return result;
    }
  });
}

/// Whether the map has for every entry its own number. An entry that the map lacks counts as having the
/// number of the entry before it, and 0 if it is the first, which therefore passes; hosts rely on that.
bool numbersAgree(const PaletteEntries& palette, const ColourMap& map) {
  int value = 0;
  for (std::int64_t i = 0; i < palette.size(); ++i) {
    DWORD key = palette[i];
    map.Lookup(key, value);
    if (value != i) return false;
  }
  return true;
}

/// Whether every key of the map differs from some entry. Deliberately that weak: only a palette of a single
/// colour that is in the map fails.
bool keysPass(const PaletteEntries& palette, const ColourMap& map) {
  for (std::int64_t i = 1; i < palette.size(); ++i) {
    if (palette[i] != palette[0]) return true;
  }
  DWORD only = palette[0];
  int value = 0;
  return map.Lookup(only, value) == 0;
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

int CPaletteFuns::SumDibImagePalEntries(CMap<DWORD, DWORD&, int, int&>& colours, RGBQUAD* palette,
                                        int count) {
  if (palette == nullptr && count > 0) return FALSE;
  return catchOutOfMemory([&] { return addPalette(colours, palette, count) ? TRUE : FALSE; });
}

BITMAPINFOHEADER* CPaletteFuns::ChangeDibBitsPalette(BITMAPINFOHEADER* dib,
                                                     CMap<DWORD, DWORD&, int, int&>* colours) {
  return changePalette(dib, colours).release();
}

int CPaletteFuns::IsPaletteEqual(BITMAPINFOHEADER* dib, CMap<DWORD, DWORD&, int, int&>* colours) {
  if (colours == nullptr || !ConstView(dib) || dib->biBitCount > 8) return FALSE;
  const PaletteEntries palette(dib);
  return numbersAgree(palette, *colours) && keysPass(palette, *colours) ? TRUE : FALSE;
}
