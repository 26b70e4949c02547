#include "convert/convert.h"
#include "convert/palette_finish.h"
#include "dib/view.h"
#include "palette/map_entries.h"
#include "raster/index_rows.h"

namespace dibkit {
namespace {

constexpr int depthFor(std::int64_t colours) {
  if (colours < 3) return 1;
  return colours < 17 ? 4 : 8;
}

/// Fills the rows of `result` with the indexes of the source's colours.
/// \param lookUp gives the stored index of a colour key; called once for each pixel, or once for 8 in flat
/// areas
template <class LookUp>
void indexRows(const ConstView& source, BITMAPINFOHEADER* result, LookUp&& lookUp) {
  const View target(result);
  withFormat(target.bitCount(), [&](auto format) {
    using Format = decltype(format);
    if constexpr (Format::bits <= 8) {
      const auto bytes = static_cast<std::size_t>(source.width()) * 3;
      for (int y = 0; y < source.lines(); ++y) {
        const BYTE* from = source.row(y);
        if (y > 0 && std::memcmp(from, source.row(y - 1), bytes) == 0) {
          std::memcpy(target.row(y), target.row(y - 1), static_cast<std::size_t>(target.stride()));
          continue;
        }
        BYTE indexes[indexChunk];
        forEachChunk(source.width(), [&](int left, int count) {
          forEachColour<Bgr24>(from, left, left + count, [&](DWORD key, int x, auto same) {
            std::memset(indexes + (x - left), lookUp(key), same());
            return true;
          });
          storeIndexes<Format>(indexes, left, count, target.row(y));
        });
      }
    }
  });
}

OwnedDib createForPalette(const ConstView& source, std::int64_t colours) {
  if (!source || colours > INT32_MAX) return nullptr;
  return createDib(source.width(), source.height(), depthFor(colours), static_cast<int>(colours),
                   InitialPixels::unwritten);
}

OwnedDib convertOnto(const ColourMap& map, const BITMAPINFOHEADER* dib) {
  const ConstView source(dib, Bgr24::bits);
  OwnedDib result = createForPalette(source, map.GetCount());
  if (!result) return nullptr;
  const int depth = result->biBitCount;

  // Each colour of the map is read once; pixels are looked up in the small hash.
  ColourIndex colours;
  BYTE stored[ColourIndex::capacity] = {};
  forEachAssociation(map, [&](DWORD key, int value) {
    putEntry(result.get(), value, unpackEntry(key & 0xFFFFFF));
    if (key > 0xFFFFFF) return;  // no pixel's key has a fourth byte
    const int slot = colours.enter(key);
    if (slot != ColourIndex::none) stored[slot] = storedLowByte(depth, value);
  });
  if (map.GetCount() <= ColourIndex::capacity) {
    indexRows(source, result.get(), [&](DWORD key) {
      const int slot = colours.find(key);
      return slot == ColourIndex::none ? BYTE{0} : stored[slot];
    });
  } else {
    indexRows(source, result.get(), [&](DWORD key) {
      int value = 0;
      return map.Lookup(key, value) != 0 ? storedLowByte(depth, value) : BYTE{0};
    });
  }
  return result;
}

}  // namespace

OwnedDib FrameColours::finish(OwnedDib work) {
  if (overflowed_) return work;
  if (colours_.size() == 0) colours_.enter(0);
  const ConstView source(work.get(), Bgr24::bits);
  OwnedDib result = createForPalette(source, colours_.size());
  if (!result) return nullptr;
  for (int i = 0; i < colours_.size(); ++i) putEntry(result.get(), i, unpackEntry(colours_[i]));
  indexRows(source, result.get(), [&](DWORD key) {
    const int index = colours_.find(key);
    return index == ColourIndex::none ? BYTE{0} : lowByte(index);
  });
  return result;
}

}  // namespace dibkit

using namespace dibkit;

BITMAPINFOHEADER* Convert24BitsDIBToLowerBitsDIB(BITMAPINFOHEADER* source,
                                                 CMap<DWORD, DWORD&, int, int&>& map) {
  return convertOnto(map, source).release();
}
