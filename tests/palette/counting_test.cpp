#include <algorithm>
#include <set>

#include <gtest/gtest.h>

#include "palette/colour_index.h"
#include "palette/map_entries.h"
#include "palette/palette.h"
#include "support/palettes.h"

namespace {

using test::associationsOf;
using test::ColourMap;
using test::distinctColours;
using test::OwnedDib;
using IndexMap = CMap<int, int&, int, int&>;

OwnedDib imageOfColours(int count, int bitCount) {
  return test::imageOf(count, 1, bitCount, distinctColours(count));
}

std::vector<DWORD> colorRefs(std::vector<DWORD> colours) {
  for (DWORD& colour : colours) {
    colour = (colour & 255) << 16 | (colour & 0xFF00) | (colour >> 16 & 255);
  }
  return colours;
}

/// The colours of an image in order of first appearance, by plain search.
std::vector<DWORD> coloursInOrder(const OwnedDib& dib) {
  std::vector<DWORD> colours;
  for (const DWORD stored : test::pixelsOf(dib)) {
    const DWORD colour = stored & 0xFFFFFF;
    if (std::find(colours.begin(), colours.end(), colour) == colours.end()) colours.push_back(colour);
  }
  return colours;
}

/// Pictures of runs, some long enough for whole words, some of single pixels.
OwnedDib picture(test::Random& random, int bitCount, int colourCount) {
  const int width = 1 + test::below(random, 90), height = 1 + test::below(random, 9);
  const std::vector<DWORD> colours = distinctColours(colourCount);
  OwnedDib dib = test::image(width, height, bitCount);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width;) {
      const DWORD colour = colours[static_cast<std::size_t>(test::below(random, colourCount))];
      const int end = std::min(width, x + 1 + test::below(random, test::below(random, 2) != 0 ? 1 : 40));
      for (; x < end; ++x) test::setPixel(dib, x, y, colour | static_cast<DWORD>(random()) << 24);
    }
  }
  return dib;
}

TEST(ColourCounts, AreThoseOfAPlainSearchInReadingOrder) {
  test::Random random(2);
  for (int round = 0; round < 200; ++round) {
    const int bitCount = round % 2 != 0 ? 24 : 32;
    const OwnedDib dib = picture(random, bitCount, round % 4 < 2 ? 60 : 400);
    std::vector<DWORD> colours = coloursInOrder(dib);
    const int count = static_cast<int>(colours.size());
    if (bitCount == 24) {
      ASSERT_EQ(CPaletteFuns::GetColorsNumFrom24BitsDib(dib.get()), std::min(count, 257)) << round;
    }
    ColourMap map;
    ASSERT_EQ(CPaletteFuns::GetColorsNumFromTrueDib(dib.get(), &map), count > 256 ? -1 : count) << round;
    // What was entered before the 257th stays.
    if (count > 256) colours.resize(256);
    ASSERT_EQ(associationsOf(map), associationsOf(test::mapOf(colorRefs(colours)))) << round;
  }
}

TEST(ColourCounts, KnowTwoHundredFiftySixFromOneMore) {
  EXPECT_EQ(CPaletteFuns::GetColorsNumFrom24BitsDib(imageOfColours(256, 24).get()), 256);
  EXPECT_EQ(CPaletteFuns::GetColorsNumFrom24BitsDib(imageOfColours(257, 24).get()), 257);
  ColourMap map, full;
  EXPECT_EQ(CPaletteFuns::GetColorsNumFromTrueDib(imageOfColours(256, 24).get(), &map), 256);
  EXPECT_EQ(CPaletteFuns::GetColorsNumFromTrueDib(imageOfColours(257, 32).get(), &full), -1);
  EXPECT_EQ(full.GetCount(), 256);
}

TEST(GetColorsNumFromTrueDib, CountsFromZeroWhateverTheMapHolds) {
  ColourMap map;
  DWORD red = RGB(255, 0, 0);
  map[red] = 42;
  const OwnedDib dib = test::imageOf(4, 1, 24, {0x0000FF, 0xFF0000, 0x00FF00, 0x0000FF});
  EXPECT_EQ(CPaletteFuns::GetColorsNumFromTrueDib(dib.get(), &map), 2);
  EXPECT_EQ(associationsOf(map),
            (std::vector<std::pair<DWORD, int>>{{0x0000FF, 42}, {0x00FF00, 1}, {0xFF0000, 0}}));
  // 300 colours that are there already, more than the counter remembers by itself, are not counted.
  ColourMap large = test::mapOf(colorRefs(distinctColours(300)));
  EXPECT_EQ(CPaletteFuns::GetColorsNumFromTrueDib(imageOfColours(300, 24).get(), &large), 0);
}

TEST(GetColorsNumFromPaletteDib, NumbersIndexesInOrderOfFirstUse) {
  struct Case {
    int bitCount;
    std::vector<DWORD> pixels;
    std::vector<std::pair<int, int>> numbers;  ///< index and number, in order of the indexes
  };
  const Case cases[] = {
      {1, {1, 1, 0}, {{0, 1}, {1, 0}}},    {1, {0, 0, 0}, {{0, 0}}},
      {4, {15, 3, 15}, {{3, 1}, {15, 0}}}, {8, {200, 7, 255}, {{7, 1}, {200, 0}, {255, 2}}},
      {24, {9, 8, 7}, {{0, 0}}},  // no palette: index 0 all over
  };
  for (const Case& expected : cases) {
    IndexMap map;
    const OwnedDib dib = test::imageOf(3, 1, expected.bitCount, expected.pixels);
    EXPECT_EQ(CPaletteFuns::GetColorsNumFromPaletteDib(dib.get(), &map),
              static_cast<int>(expected.numbers.size()));
    EXPECT_EQ(associationsOf(map), expected.numbers);
  }
  IndexMap held;
  int index = 3;
  held[index] = 77;
  EXPECT_EQ(CPaletteFuns::GetColorsNumFromPaletteDib(test::imageOf(3, 1, 8, {3, 9, 3}).get(), &held), 1);
  EXPECT_EQ(associationsOf(held), (std::vector<std::pair<int, int>>{{3, 77}, {9, 0}}));
}

TEST(ColourIndex, FindsWhatItHoldsInACrowd) {
  dibkit::ColourIndex colours;
  EXPECT_EQ(colours.find(0), dibkit::ColourIndex::none);  // black is no empty place
  for (int round = 0; round < 2; ++round) {
    for (DWORD i = 0; i < 256; ++i) ASSERT_EQ(colours.enter(i << 16 | i % 2), static_cast<int>(i));
  }
  EXPECT_EQ(colours.enter(0xFFFFFF), dibkit::ColourIndex::none);
  EXPECT_EQ(colours.find(0xFFFFFF), dibkit::ColourIndex::none);
  EXPECT_EQ(colours.size(), 256);
  for (DWORD i = 0; i < 256; ++i) {
    EXPECT_EQ(colours.find(i << 16 | i % 2), static_cast<int>(i));
    EXPECT_EQ(colours[static_cast<int>(i)], i << 16 | i % 2);
  }
}

TEST(ColourMap, LooksUpWithoutInsertingAndEnumeratesEverything) {
  CMap<DWORD, DWORD&, int, int&> map;
  for (DWORD key = 0; key < 300; ++key) {
    int value = static_cast<int>(key) * 2;
    map.SetAt(key, value);
  }
  DWORD missing = 1000;
  int value = 7;
  EXPECT_FALSE(map.Lookup(missing, value));
  EXPECT_EQ(value, 7);
  EXPECT_EQ(map.GetCount(), 300);
  std::set<DWORD> seen;
  dibkit::forEachAssociation(map, [&](DWORD key, int twice) {
    EXPECT_EQ(twice, static_cast<int>(key) * 2);
    EXPECT_TRUE(seen.insert(key).second);
  });
  EXPECT_EQ(seen.size(), 300U);
  DWORD first = 0;
  EXPECT_TRUE(map.RemoveKey(first));
  EXPECT_FALSE(map.RemoveKey(first));
  map.RemoveAll();
  EXPECT_TRUE(map.IsEmpty());
  EXPECT_EQ(map.GetStartPosition(), nullptr);
}

}  // namespace
