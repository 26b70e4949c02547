#include <unordered_set>

#include "convert/convert.h"
#include "convert/fill_rows.h"
#include "dib/view.h"
#include "palette/remap_table.h"
#include "platform/guard.h"

namespace dibkit {
namespace {

/// The old palette at the start of the new one; every index keeps its number.
template <class To>
RemapTable extendPalette(const PaletteEntries& old, BITMAPINFOHEADER* result) {
  RemapTable table;
  for (std::int64_t i = 0; i < old.size(); ++i) {
    putEntry(result, i, unpackEntry(old[i]));
    table.set(i, storedPositive(To::bits, i));
  }
  return table;
}

/// Each distinct entry once. An entry that repeats an earlier one gets the number of the next new entry, not
/// that of its equal. Deliberate: hosts rely on it.
template <class To>
RemapTable mergePalette(const PaletteEntries& old, BITMAPINFOHEADER* result) {
  RemapTable table;
  std::unordered_set<DWORD> merged;
  std::int64_t next = 0;
  for (std::int64_t i = 0; i < old.size(); ++i) {
    table.set(i, storedPositive(To::bits, next));
    if (merged.insert(old[i]).second) putEntry(result, next++, unpackEntry(old[i]));
  }
  return table;
}

template <class From, class To>
RemapTable makePalette(const BITMAPINFOHEADER* dib, const ColourMap* map, BITMAPINFOHEADER* result) {
  if (map != nullptr) {
    putPalette(result, *map);
    return remapOnto(dib, map, [](int index) { return storedPositive(To::bits, index); });
  }
  const PaletteEntries old(dib);
  return From::bits < To::bits ? extendPalette<To>(old, result) : mergePalette<To>(old, result);
}

/// From one palette depth to another, onto the map's palette if there is a map.
template <class From, class To>
OwnedDib changeDepth(const BITMAPINFOHEADER* dib, const ColourMap* map, CQorCommonProgress* progress) {
  const ConstView source = viewOfDepth(dib, From::bits);
  const std::int64_t colours = map != nullptr ? map->GetCount() : 0;
  if (!source || colours > INT32_MAX) return nullptr;
  OwnedDib result = createDib(source.width(), source.height(), To::bits, static_cast<int>(colours),
                              InitialPixels::unwritten);
  if (!result) return nullptr;
  RemapTable table = makePalette<From, To>(dib, map, result.get());
  return fillRowsFromTop(std::move(result), progress,
                         [&](BYTE* to, int y) { table.row<From, To>(source.row(y), source.width(), to); });
}

template <class From, class To>
BITMAPINFOHEADER* exportDepth(const BITMAPINFOHEADER* dib, const ColourMap* map,
                              CQorCommonProgress* progress) {
  return catchOutOfMemory([&] { return changeDepth<From, To>(dib, map, progress).release(); });
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

BITMAPINFOHEADER* CBitmapConverter::Convert1BitsDibTo4BitsDib(BITMAPINFOHEADER* source,
                                                              CMap<DWORD, DWORD&, int, int&>* map,
                                                              CQorCommonProgress* progress) {
  return exportDepth<Index1, Index4>(source, map, progress);
}

BITMAPINFOHEADER* CBitmapConverter::Convert1BitsDibTo8BitsDib(BITMAPINFOHEADER* source,
                                                              CMap<DWORD, DWORD&, int, int&>* map,
                                                              CQorCommonProgress* progress) {
  return exportDepth<Index1, Index8>(source, map, progress);
}

BITMAPINFOHEADER* CBitmapConverter::Convert4BitsDibTo8BitsDib(BITMAPINFOHEADER* source,
                                                              CMap<DWORD, DWORD&, int, int&>* map,
                                                              CQorCommonProgress* progress) {
  return exportDepth<Index4, Index8>(source, map, progress);
}

BITMAPINFOHEADER* CBitmapConverter::Convert8BitsDibTo4BitsDib(BITMAPINFOHEADER* source,
                                                              CMap<DWORD, DWORD&, int, int&>* map,
                                                              CQorCommonProgress* progress) {
  return exportDepth<Index8, Index4>(source, map, progress);
}

BITMAPINFOHEADER* CBitmapConverter::Convert8BitsDibTo1BitsDib(BITMAPINFOHEADER* source,
                                                              CMap<DWORD, DWORD&, int, int&>* map,
                                                              CQorCommonProgress* progress) {
  return exportDepth<Index8, Index1>(source, map, progress);
}

BITMAPINFOHEADER* CBitmapConverter::Convert4BitsDibTo1BitsDib(BITMAPINFOHEADER* source,
                                                              CMap<DWORD, DWORD&, int, int&>* map,
                                                              CQorCommonProgress* progress) {
  return exportDepth<Index4, Index1>(source, map, progress);
}
