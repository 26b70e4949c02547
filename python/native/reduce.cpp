#include <algorithm>

#include "palettes.h"
#include "progress.h"

namespace binding {

namespace {

using Deepen = BITMAPINFOHEADER*(BITMAPINFOHEADER*, ColourMap*, CQorCommonProgress*);

struct DepthChange {
  int from, to;
  Deepen* convert;
};
constexpr DepthChange depthChanges[]{
    {1, 4, CBitmapConverter::Convert1BitsDibTo4BitsDib}, {1, 8, CBitmapConverter::Convert1BitsDibTo8BitsDib},
    {4, 8, CBitmapConverter::Convert4BitsDibTo8BitsDib}, {8, 4, CBitmapConverter::Convert8BitsDibTo4BitsDib},
    {8, 1, CBitmapConverter::Convert8BitsDibTo1BitsDib}, {4, 1, CBitmapConverter::Convert4BitsDibTo1BitsDib}};

/// Throws when the palette of an image has more distinct colours than an image of `depth` bits can have.
void requireDistinct(const Image& image, int depth) {
  ColourMap colours;
  Palette palette;
  const RGBQUAD* entries = dibkit::paletteOf(image.dib());
  palette.entries.assign(entries, entries + image.colours());
  fillMap(colours, palette);
  if (colours.GetCount() > 1 << depth)
    refuse("the palette has " + text(colours.GetCount()) + " different colours, too many for " + text(depth) +
           (depth == 1 ? " bit" : " bits"));
}

Image changeDepth(const AnyImage& image, int depth, std::optional<Palette>& palette, Callback& progress) {
  for (const DepthChange& change : depthChanges) {
    if (change.from != image->depth() || change.to != depth) continue;
    ColourMap map;
    if (palette) {
      requireFits(*palette, depth);
      fillMap(map, *palette);
    } else if (depth < image->depth()) {
      requireDistinct(*image.image, depth);
    }
    return madeWith(
        progress, [&](CQorCommonProgress* p) { return change.convert(image, palette ? &map : nullptr, p); });
  }
  refuse("an image of " + text(image->depth()) + " bits cannot get " + text(depth) + " bits here");
}

Image indexed(const Image24& image, std::optional<Integer> depth, Callback& progress) {
  const int colours = CPaletteFuns::GetColorsNumFrom24BitsDib(image);
  require(colours < 256, "the image has more than 255 colours; see reduce_to_palette and to_nearest_colours");
  return madeWith(progress, [&](CQorCommonProgress* p) -> BITMAPINFOHEADER* {
    if (!depth) return CBitmapConverter::ConvertTrueDibToLowBitsDib(image, p);
    const int bits = *depth;
    require(bits == 1 || bits == 4 || bits == 8, "a palette needs 1, 4 or 8 bits");
    if (colours > 1 << bits) refuse("the image has " + text(colours) + " colours, too many for its depth");
    if (bits == 1) return CBitmapConverter::ConvertTrueDibTo1BitsDib(image, colours, p);
    if (bits == 4) return CBitmapConverter::ConvertTrueDibTo4BitsDib(image, colours, p);
    return CBitmapConverter::ConvertTrueDibTo8BitsDib(image, colours, p);
  });
}

/// A logical palette of the platform.
class LogicalPalette {
 public:
  explicit LogicalPalette(const Palette& palette) {
    std::vector<BYTE> block(sizeof(LOGPALETTE) + palette.entries.size() * sizeof(PALETTEENTRY));
    auto* description = reinterpret_cast<LOGPALETTE*>(block.data());
    description->palVersion = 0x300;
    description->palNumEntries = static_cast<WORD>(palette.entries.size());
    for (std::size_t i = 0; i < palette.entries.size(); ++i) {
      const RGBQUAD& entry = palette.entries[i];
      description->palPalEntry[i] = {entry.rgbRed, entry.rgbGreen, entry.rgbBlue, 0};
    }
    if (palette_.CreatePalette(description) == 0) throw std::bad_alloc();
  }
  HPALETTE get() const { return static_cast<HPALETTE>(palette_.GetSafeHandle()); }

 private:
  CPalette palette_;
};

Image toNearest(const AnyImage& image, int depth, const std::optional<Palette>& palette) {
  require(depth == 1 || depth == 4 || depth == 8 || depth == 16 || depth == 24 || depth == 32,
          "an image has 1, 4, 8, 16, 24 or 32 bits a pixel");
  require(image->width() > 0 && image->height() > 0, "the image has no pixels");
  if (depth > 8) return made(ConvertDIBFormat(image, static_cast<UINT>(depth), nullptr));
  require(palette.has_value(), "1, 4 and 8 bits need a palette");
  requireFits(*palette, depth);
  const LogicalPalette logical(*palette);
  return made(ConvertDIBFormat(image, static_cast<UINT>(depth), logical.get()));
}

}  // namespace

void fillMap(ColourMap& map, const Palette& palette) {
  for (const RGBQUAD& entry : palette.entries) {
    DWORD key = dibkit::packRgb({entry.rgbRed, entry.rgbGreen, entry.rgbBlue});
    int index = static_cast<int>(map.GetCount());
    int known = 0;
    if (map.Lookup(key, known) == 0) map.SetAt(key, index);
  }
}

Palette paletteOfMap(const ColourMap& map, bool blueHigh) {
  Palette palette{std::vector<RGBQUAD>(static_cast<std::size_t>(map.GetCount()))};
  POSITION position = map.GetStartPosition();
  while (position != nullptr) {
    DWORD key = 0;
    int index = 0;
    map.GetNextAssoc(position, key, index);
    const auto low = static_cast<BYTE>(key);
    const auto middle = static_cast<BYTE>(key >> 8);
    const auto high = static_cast<BYTE>(key >> 16);
    palette.entries.at(static_cast<std::size_t>(index)) = {blueHigh ? high : low, middle,
                                                           blueHigh ? low : high, 0};
  }
  return palette;
}

void requireFits(const Palette& palette, int depth) {
  if (palette.count() < 1 || palette.count() > 1 << depth)
    refuse("a palette for " + text(depth) + " bits has 1 to " + text(1 << depth) + " colours, not " +
           text(palette.count()));
}

void defineReductions(py::module_& module) {
  define(
      module,
      {"to_indexes",
       "CBitmapConverter::ConvertTrueDibToLowBitsDib, ConvertTrueDibTo1BitsDib, ConvertTrueDibTo4BitsDib, "
       "ConvertTrueDibTo8BitsDib",
       "Convert a 24-bit picture of few colours exactly. The palette has its colours in order of first "
       "appearance.",
       "A new image of `depth` bits, or of the smallest depth that holds the colours.",
       "The picture may have at most 255 colours, and no more than the depth can index."},
      [](Image24 image, std::optional<Integer> depth, Callback& progress) {
        return indexed(image, depth, progress);
      },
      arg("image"), none("depth"), none("progress"));
  define(
      module,
      {"change_index_depth",
       "CBitmapConverter::Convert1BitsDibTo4BitsDib, Convert1BitsDibTo8BitsDib, Convert4BitsDibTo8BitsDib, "
       "Convert8BitsDibTo4BitsDib, Convert8BitsDibTo1BitsDib, Convert4BitsDibTo1BitsDib",
       "Convert an image with a palette to another depth with a palette. With `palette`, the result has that "
       "one, and "
       "a colour that it lacks becomes index 0; without, the colours stay.",
       "A new image of `depth` bits.", "The palette has to fit into the depth."},
      [](AnyImage image, Integer depth, std::optional<Palette> palette, Callback& progress) {
        return changeDepth(image, depth, palette, progress);
      },
      arg("image"), arg("depth"), none("palette"), none("progress"));
  define(
      module,
      {"reduce_to_palette", "Convert24BitsDIBToLowerBitsDIB",
       "Reduce a 24-bit image to a palette, at the smallest depth that holds it. A pixel whose colour the "
       "palette lacks "
       "becomes index 0: no nearest colour is searched.",
       "A new image of 1, 4 or 8 bits."},
      [](Image24 image, Palette palette) {
        requireFits(palette, 8);
        ColourMap map;
        fillMap(map, palette);
        return made(Convert24BitsDIBToLowerBitsDIB(image, map));
      },
      arg("image"), arg("palette"));
  define(
      module,
      {"to_nearest_colours", "ConvertDIBFormat",
       "Convert an image of any depth to another one. To 1, 4 or 8 bits, each pixel becomes the nearest "
       "colour of the "
       "palette.",
       "A new image of `depth` bits, with that palette."},
      [](AnyImage image, Integer depth, std::optional<Palette> palette) {
        return toNearest(image, depth, palette);
      },
      arg("image"), arg("depth"), none("palette"));
}

}  // namespace binding
