#include <array>

#include "dib/view.h"
#include "palette/colour_index.h"
#include "palette/map_entries.h"
#include "palette/palette.h"
#include "platform/guard.h"
#include "raster/index_rows.h"

namespace dibkit {
namespace {

constexpr DWORD colorRefOf(DWORD key) { return (key & 0xFF) << 16 | (key & 0xFF00) | key >> 16; }

constexpr int moreThan256 = ColourIndex::capacity + 1;

int countColours(const ConstView& view) {
  ColourIndex colours;
  for (int y = 0; y < view.lines(); ++y) {
    const bool fits = forEachColour<Bgr24>(view.row(y), 0, view.width(), [&](DWORD key, int, auto) {
      return colours.enter(key) != ColourIndex::none;
    });
    if (!fits) return moreThan256;
  }
  return colours.size();
}

/// Enters the colours of an image in a map that may have some already. Two small hashes cache which colours
/// were entered and which were there before, so that the map is searched once for each colour.
class MapFiller {
 public:
  explicit MapFiller(ColourMap& map) : map_(map) {}

  /// False when the 257th new colour would have to be entered.
  bool enter(DWORD key) {
    if (entered_.find(key) != ColourIndex::none || present_.find(key) != ColourIndex::none) return true;
    DWORD colour = colorRefOf(key);
    int value = 0;
    if (map_.Lookup(colour, value) != 0) {
      present_.enter(key);
      return true;
    }
    value = entered_.enter(key);
    if (value == ColourIndex::none) return false;
    map_.SetAt(colour, value);
    return true;
  }
  int count() const { return entered_.size(); }

 private:
  ColourMap& map_;
  ColourIndex entered_;
  ColourIndex present_;
};

template <class Format>
int fillMap(const ConstView& view, ColourMap& map) {
  MapFiller filler(map);
  for (int y = 0; y < view.lines(); ++y) {
    const bool fits = forEachColour<Format>(view.row(y), 0, view.width(),
                                            [&](DWORD key, int, auto) { return filler.enter(key); });
    if (!fits) return -1;
  }
  return filler.count();
}

/// Enters an index in a map that lacks it, with the number of indexes entered before it.
void enterIndex(IndexMap& map, int index, int& count) {
  int value = 0;
  if (map.Lookup(index, value) != 0) return;
  map.SetAt(index, count);
  ++count;
}

template <class Format>
int countIndexes(const ConstView& view, IndexMap& map) {
  std::array<bool, 256> met{};
  int left = 1 << Format::bits;
  int count = 0;
  BYTE buffer[indexChunk];
  for (int y = 0; y < view.lines(); ++y) {
    for (int x = 0, pixels = 0; x < view.width(); x += pixels) {
      pixels = std::min(indexChunk, view.width() - x);
      const BYTE* indexes = indexesAt<Format>(view.row(y), x, pixels, buffer);
      for (int i = 0; i < pixels; ++i) {
        if (met[indexes[i]]) continue;
        met[indexes[i]] = true;
        enterIndex(map, indexes[i], count);
        if (--left == 0) return count;
      }
    }
  }
  return count;
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

int CPaletteFuns::GetColorsNumFrom24BitsDib(BITMAPINFOHEADER* dib) {
  return countColours(ConstView(dib, Bgr24::bits));
}

int CPaletteFuns::GetColorsNumFromTrueDib(BITMAPINFOHEADER* dib, CMap<DWORD, DWORD&, int, int&>* colours) {
  const ConstView view(dib);
  if (!view || colours == nullptr) return 0;
  return catchOutOfMemory([&] {
    if (view.bitCount() == Bgr24::bits) return fillMap<Bgr24>(view, *colours);
    return view.bitCount() == Bgra32::bits ? fillMap<Bgra32>(view, *colours) : 0;
  });
}

int CPaletteFuns::GetColorsNumFromPaletteDib(BITMAPINFOHEADER* dib, CMap<int, int&, int, int&>* indexes) {
  const ConstView view(dib);
  if (!view || indexes == nullptr || view.lines() == 0) return 0;
  return catchOutOfMemory([&] {
    switch (view.bitCount()) {
      case 1:
        return countIndexes<Index1>(view, *indexes);
      case 4:
        return countIndexes<Index4>(view, *indexes);
      case 8:
        return countIndexes<Index8>(view, *indexes);
      default: {
        int count = 0;
        enterIndex(*indexes, 0, count);
        return count;
      }
    }
  });
}
