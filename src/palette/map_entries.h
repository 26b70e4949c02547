#pragma once

#include "dib/pixel_format.h"

namespace dibkit {

/// A colour map: colour key to palette index, 0 to 255 in order of first appearance.
using ColourMap = CMap<DWORD, DWORD&, int, int&>;
/// Palette index to palette index.
using IndexMap = CMap<int, int&, int, int&>;

/// Calls use(key, value) for every association of a map, in no order that matters.
template <class Key, class Argument, class Value, class ValueArgument, class Use>
void forEachAssociation(const CMap<Key, Argument, Value, ValueArgument>& map, Use&& use) {
  for (POSITION position = map.GetStartPosition(); position != nullptr;) {
    Key key{};
    Value value{};
    map.GetNextAssoc(position, key, value);
    use(key, value);
  }
}

/// Writes entry number `index` of the palette, which starts right after the header. An index beyond the
/// palette writes over the rows that follow it, as far as that is inside the block.
inline void putEntry(BITMAPINFOHEADER* dib, std::int64_t index, const RGBQUAD& entry) {
  const std::optional<Layout> layout = layoutOf(dib);
  if (!layout || index < 0) return;
  const std::int64_t offset = std::int64_t{dib->biSize} + index * std::int64_t{sizeof(RGBQUAD)};
  const std::int64_t room = std::min<std::int64_t>(layout->total - offset, sizeof(RGBQUAD));
  if (room <= 0) return;
  std::memcpy(reinterpret_cast<BYTE*>(dib) + offset, &entry, static_cast<std::size_t>(room));
}

/// The palette entry with the four bytes of a key.
constexpr RGBQUAD unpackEntry(DWORD key) {
  return {lowByte(key), lowByte(key >> 8), lowByte(key >> 16), lowByte(key >> 24)};
}

}  // namespace dibkit
