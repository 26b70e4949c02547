#pragma once

#include <array>

#include "palette/map_entries.h"
#include "raster/index_rows.h"

namespace dibkit {

/// The key of a palette entry: its four bytes.
inline DWORD packEntry(const RGBQUAD& entry) {
  DWORD key = 0;
  std::memcpy(&key, &entry, sizeof(key));
  return key;
}

/// The palette of an image with a usable header, as keys. All of it is inside the block.
class PaletteEntries {
 public:
  explicit PaletteEntries(const BITMAPINFOHEADER* dib)
      : first_(paletteOf(dib)), size_(GetDIBPaletteSize(dib)) {}

  std::int64_t size() const { return size_; }
  DWORD operator[](std::int64_t index) const { return packEntry(first_[index]); }

 private:
  const RGBQUAD* first_;
  std::int64_t size_;
};

/// Writes a map's palette: entry number value receives key, all four bytes.
inline void putPalette(BITMAPINFOHEADER* dib, const ColourMap& map) {
  forEachAssociation(map, [dib](DWORD key, int value) { putEntry(dib, value, unpackEntry(key)); });
}

/// What a pixel stores for each old index.
class RemapTable {
 public:
  /// An index above 255 is ignored: no pixel has it.
  void set(std::int64_t from, BYTE stored) {
    if (from >= 256) return;
    stored_[static_cast<std::size_t>(from)] = stored;
    known_[static_cast<std::size_t>(from)] = true;
  }

  /// Remaps a row. Rows have to come from the top of the picture: a pixel whose index is not in the table
  /// stores what the pixel before it stored, even in the row before, and 0 if it is the picture's first.
  template <class From, class To>
  void row(const BYTE* from, int width, BYTE* to) {
    BYTE buffer[indexChunk];
    BYTE remapped[indexChunk];
    const bool complete = knowsAll<From>();
    forEachChunk(width, [&](int left, int count) {
      const BYTE* indexes = indexesAt<From>(from, left, count, buffer);
      if (complete) {
        for (int x = 0; x < count; ++x) remapped[x] = stored_[indexes[x]];
      } else {
        for (int x = 0; x < count; ++x) remapped[x] = next(indexes[x]);
      }
      storeIndexes<To>(remapped, left, count, to);
    });
  }

 private:
  template <class From>
  bool knowsAll() const {
    return std::all_of(known_.begin(), known_.begin() + (1 << From::bits), [](bool known) { return known; });
  }
  BYTE next(BYTE from) {
    if (known_[from]) last_ = stored_[from];
    return last_;
  }

  std::array<BYTE, 256> stored_{};
  std::array<bool, 256> known_{};
  BYTE last_ = 0;
};

/// The remapping of an image's indexes to those that a map has for their colours. A colour that the map lacks
/// becomes index 0.
/// \param stored stored(index) is what a pixel stores of an index
template <class Stored>
RemapTable remapOnto(const BITMAPINFOHEADER* dib, const ColourMap* map, Stored&& stored) {
  const PaletteEntries old(dib);
  RemapTable table;
  for (std::int64_t i = 0; i < std::min<std::int64_t>(old.size(), 256); ++i) {
    DWORD key = old[i];
    int value = 0;
    if (map != nullptr) map->Lookup(key, value);
    table.set(i, stored(value));
  }
  return table;
}

}  // namespace dibkit
