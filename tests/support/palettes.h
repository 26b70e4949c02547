#pragma once

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

inline RGBQUAD* paletteOf(const OwnedDib& dib) {
  return reinterpret_cast<RGBQUAD*>(reinterpret_cast<BYTE*>(dib.get()) + dib->biSize);
}

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

}  // namespace test
