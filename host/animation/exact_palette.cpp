#include "host/animation/exact_palette.h"

#include <new>

#include "host/cancel.h"

namespace host {

namespace {

using dibkit::OwnedDib;
using ColourMap = CMap<DWORD, DWORD&, int, int&>;

OwnedDib made(BITMAPINFOHEADER* dib) {
  throwIfCancelled();
  if (dib == nullptr) throw std::bad_alloc();
  return OwnedDib(dib);
}

/// A palette image at more bits, its indices as they are.
OwnedDib widened(OwnedDib dib, int bits, ColourMap& map) {
  CancelProgress progress;
  const int from = dib->biBitCount;
  if (from == bits) return dib;
  const auto widen = from == 4   ? CBitmapConverter::Convert4BitsDibTo8BitsDib
                     : bits == 4 ? CBitmapConverter::Convert1BitsDibTo4BitsDib
                                 : CBitmapConverter::Convert1BitsDibTo8BitsDib;
  return made(widen(dib.get(), &map, &progress));
}

}  // namespace

int smallestDepthFor(std::size_t colours) { return colours <= 2 ? 1 : colours <= 16 ? 4 : 8; }

std::optional<std::vector<RGBQUAD>> fewColoursOf(BITMAPINFOHEADER* trueColour) {
  ColourMap map;
  const int count = CPaletteFuns::GetColorsNumFromTrueDib(trueColour, &map);
  if (count < 0) return std::nullopt;
  std::vector<RGBQUAD> colours(static_cast<std::size_t>(count));
  for (POSITION position = map.GetStartPosition(); position != nullptr;) {
    COLORREF colour = 0;
    int index = 0;
    map.GetNextAssoc(position, colour, index);
    const auto channel = [colour](int shift) { return static_cast<BYTE>(colour >> shift & 255); };
    colours[static_cast<std::size_t>(index)] = {channel(16), channel(8), channel(0), 0};
  }
  return colours;
}

OwnedDib onColours(BITMAPINFOHEADER* trueColour, const std::vector<RGBQUAD>& colours, int bits) {
  ColourMap map;
  std::vector<RGBQUAD> entries = colours;
  CPaletteFuns::SumDibImagePalEntries(map, entries.data(), static_cast<int>(entries.size()));
  return widened(made(Convert24BitsDIBToLowerBitsDIB(trueColour, map)), bits, map);
}

OwnedDib reducedExactly(BITMAPINFOHEADER* trueColour) {
  const std::optional<std::vector<RGBQUAD>> colours = fewColoursOf(trueColour);
  return colours ? onColours(trueColour, *colours, smallestDepthFor(colours->size())) : nullptr;
}

}  // namespace host
