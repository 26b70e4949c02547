#pragma once

#include <algorithm>
#include <utility>

#include "palette/map_entries.h"
#include "support/images.h"

/// Palettes and colour maps of test images, as numbers 0xXXRRGGBB.
namespace test {

using ColourMap = CMap<DWORD, DWORD&, int, int&>;

/// The map that gives each colour its place in the list.
inline ColourMap mapOf(const std::vector<DWORD>& colours) {
  ColourMap map;
  for (int i = 0; i < static_cast<int>(colours.size()); ++i) {
    DWORD key = colours[static_cast<std::size_t>(i)];
    map.SetAt(key, i);
  }
  return map;
}

/// A map's keys with their values, in order of the keys.
template <class Key, class Argument>
std::vector<std::pair<Key, int>> associationsOf(const CMap<Key, Argument, int, int&>& map) {
  std::vector<std::pair<Key, int>> found;
  dibkit::forEachAssociation(map, [&](Key key, int value) { found.emplace_back(key, value); });
  std::sort(found.begin(), found.end());
  return found;
}

inline RGBQUAD* paletteOf(const OwnedDib& dib) { return dibkit::paletteOf(dib.get()); }

inline std::vector<DWORD> entriesOf(const OwnedDib& dib) {
  std::vector<DWORD> entries(GetDIBPaletteSize(dib.get()));
  std::memcpy(entries.data(), paletteOf(dib), entries.size() * 4);
  return entries;
}

/// `count` distinct colours, far apart in every channel.
inline std::vector<DWORD> distinctColours(int count) {
  std::vector<DWORD> colours;
  for (int i = 0; i < count; ++i) colours.push_back(static_cast<DWORD>(i * 0x10305 % 0x1000000));
  return colours;
}

struct PaletteDeleter {
  using pointer = HPALETTE;
  void operator()(HPALETTE palette) const { DeleteObject(palette); }
};

/// A logical palette of the given colours.
inline std::unique_ptr<HPALETTE, PaletteDeleter> logicalPalette(const std::vector<DWORD>& colours) {
  std::vector<BYTE> block(4 + 4 * colours.size());
  auto* description = reinterpret_cast<LOGPALETTE*>(block.data());
  description->palVersion = 0x300;
  description->palNumEntries = static_cast<WORD>(colours.size());
  for (std::size_t i = 0; i < colours.size(); ++i) {
    const auto channel = [&](int shift) { return static_cast<BYTE>(colours[i] >> shift & 255); };
    description->palPalEntry[i] = {channel(16), channel(8), channel(0), 0};
  }
  return std::unique_ptr<HPALETTE, PaletteDeleter>(CreatePalette(description));
}

}  // namespace test
