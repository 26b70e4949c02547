#include "module.h"
#include "operation.h"
#include "palettes.h"

namespace binding {

namespace {

void requireTrueColour(const AnyImage& image) {
  require(image->depth() >= 24, "an image of 24 or 32 bits is needed");
}

void requirePalette(const AnyImage& image) {
  require(image->depth() <= 8, "an image of 1, 4 or 8 bits is needed, which has a palette");
}

std::vector<int> usedIndexes(const AnyImage& image) {
  requirePalette(image);
  CMap<int, int&, int, int&> map;
  std::vector<int> indexes(static_cast<std::size_t>(CPaletteFuns::GetColorsNumFromPaletteDib(image, &map)));
  POSITION position = map.GetStartPosition();
  while (position != nullptr) {
    int index = 0, place = 0;
    map.GetNextAssoc(position, index, place);
    indexes.at(static_cast<std::size_t>(place)) = index;
  }
  return indexes;
}

Palette joined(std::vector<Palette>& palettes) {
  ColourMap map;
  for (Palette& palette : palettes) {
    require(CPaletteFuns::SumDibImagePalEntries(map, palette.data(), palette.count()) != 0,
            "the palettes have more than 256 colours together");
  }
  return paletteOfMap(map, false);
}

}  // namespace

void definePalettes(py::module_& module) {
  define(
      module,
      {"count_colours", "CPaletteFuns::GetColorsNumFrom24BitsDib",
       "Count the distinct colours of a 24-bit image.", "257 for more than 256."},
      [](Image24 image) { return CPaletteFuns::GetColorsNumFrom24BitsDib(image); }, arg("image"));
  define(
      module,
      {"colours", "CPaletteFuns::GetColorsNumFromTrueDib",
       "List the colours of an image of 24 or 32 bits in order of first appearance. Alpha does not count.",
       "", "The image may have at most 256 colours."},
      [](AnyImage image) {
        requireTrueColour(image);
        ColourMap map;
        require(CPaletteFuns::GetColorsNumFromTrueDib(image, &map) >= 0,
                "the image has more than 256 colours");
        return paletteOfMap(map, true);
      },
      arg("image"));
  define(
      module,
      {"used_indexes", "CPaletteFuns::GetColorsNumFromPaletteDib",
       "List the palette indexes that an image uses, in order of first appearance.", ""},
      [](AnyImage image) { return usedIndexes(image); }, arg("image"));
  define(
      module,
      {"join_palettes", "CPaletteFuns::SumDibImagePalEntries",
       "Join palettes into one that has each colour once, in order of first appearance.", "",
       "They may have at most 256 colours together."},
      [](std::vector<Palette> palettes) { return joined(palettes); }, arg("palettes"));
  define(
      module,
      {"change_palette", "CPaletteFuns::ChangeDibBitsPalette",
       "Show a picture with another palette, at the same depth. A colour that it lacks becomes index 0.",
       "A new image.", "The palette has no more colours than the depth can index."},
      [](AnyImage image, Palette& palette) {
        requirePalette(image);
        requireFits(palette, image->depth());
        ColourMap map;
        fillMap(map, palette);
        return made(CPaletteFuns::ChangeDibBitsPalette(image, &map));
      },
      arg("image"), arg("palette"));
  define(
      module,
      {"has_palette", "CPaletteFuns::IsPaletteEqual",
       "Tell whether the palette of an image is a given one. Loosely: an entry that the given one lacks "
       "counts as the one "
       "before it, and colours that only the given one has do not count, except against a palette of one "
       "colour.",
       ""},
      [](AnyImage image, Palette& palette) {
        requirePalette(image);
        ColourMap map;
        fillMap(map, palette);
        return CPaletteFuns::IsPaletteEqual(image, &map) != 0;
      },
      arg("image"), arg("palette"));
  define(
      module,
      {"is_gray", "CPaletteFuns::IsGrayScaleImage",
       "Tell whether entry i of the palette is gray i for every i.", ""},
      [](AnyImage image) {
        requirePalette(image);
        return CPaletteFuns::IsGrayScaleImage(image) != 0;
      },
      arg("image"));
  define(
      module,
      {"gray_palette", "CPaletteFuns::GrayPalette",
       "Turn colours into grays: 0.3 red + 0.59 green + 0.11 blue, truncated.", ""},
      [](Palette& palette) {
        CPaletteFuns::GrayPalette(palette.data(), palette.count());
        return palette;
      },
      arg("palette"));
  define(
      module, {"gray_ramp", "CPaletteFuns::MakeGrayPalette", "Make an even ramp from black to white.", ""},
      [](Number<2, 256> count) {
        Palette ramp{std::vector<RGBQUAD>(static_cast<std::size_t>(count.value))};
        CPaletteFuns::MakeGrayPalette(ramp.data(), ramp.count());
        return ramp;
      },
      arg("count") = 256);
  define(
      module,
      {"nearest_index", "CPaletteFuns::GetNearestPaletteIndex",
       "Find the colour nearest to a given one: the least sum of squared differences, the highest index of "
       "equals.",
       ""},
      [](Palette& palette, Colour colour) {
        requireFits(palette, 8);
        return static_cast<int>(
            CPaletteFuns::GetNearestPaletteIndex(palette.data(), palette.count(), colour));
      },
      arg("palette"), arg("colour"));
  define(
      module,
      {"farthest_index", "CPaletteFuns::GetMaxDifferenceColor",
       "Find the colour farthest from a given one by the same measure, the lowest index of equals.", ""},
      [](Palette& palette, Colour colour) {
        requireFits(palette, 8);
        return CPaletteFuns::GetMaxDifferenceColor(palette.data(), palette.count(), colour.red, colour.green,
                                                   colour.blue);
      },
      arg("palette"), arg("colour"));
  define(
      module,
      {"find_threshold", "CPaletteFuns::GetThreshValueForm8BitsGrayDib",
       "Find the gray that parts dark from light best, by Otsu's method on a smoothed histogram of the "
       "indexes.",
       "0 to 254; 1 for an image without pixels."},
      [](ImageOf<8> image) { return CPaletteFuns::GetThreshValueForm8BitsGrayDib(image); }, arg("image"));
}

}  // namespace binding
