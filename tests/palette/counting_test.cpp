#include <gtest/gtest.h>

#include "palette/map_entries.h"
#include "palette/palette.h"
#include "support/palettes.h"

namespace {

using test::associationsOf;
using test::ColourMap;
using test::distinctColours;
using test::OwnedDib;
using IndexMap = CMap<int, int&, int, int&>;
using Associations = std::vector<std::pair<int, int>>;

std::vector<DWORD> colorRefs(std::vector<DWORD> colours) {
  for (DWORD& c : colours) c = (c & 255) << 16 | (c & 0xFF00) | (c >> 16 & 255);
  return colours;
}

/// Every colour of a list once, then runs of them: some long enough for whole words, some of single pixels.
OwnedDib picture(test::Random& random, int bitCount, int colourCount) {
  const std::vector<DWORD> colours = distinctColours(colourCount);
  int position = 0, left = 0;
  DWORD colour = 0;
  return test::drawn(1 + test::below(random, 90), 10, bitCount, [&](int, int) {
    if (position < colourCount) {
      colour = colours[static_cast<std::size_t>(position++)];
    } else if (left-- == 0) {
      colour = test::oneOf(random, colours);
      left = test::below(random, test::oneOf(random, {1, 40}));
    }
    return colour | static_cast<DWORD>(random()) << 24;
  });
}

TEST(ColourCounts, AreThoseOfAPlainSearchInReadingOrder) {
  test::Random random(2);
  for (int round = 0; round < 200; ++round) {
    const int bitCount = round % 2 != 0 ? 24 : 32;
    const OwnedDib dib = picture(random, bitCount, test::oneOf(random, {60, 256, 257, 400}));
    std::vector<DWORD> colours;
    for (const DWORD stored : test::pixelsOf(dib)) {
      const DWORD colour = stored & 0xFFFFFF;
      if (std::find(colours.begin(), colours.end(), colour) == colours.end()) colours.push_back(colour);
    }
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

TEST(GetColorsNumFromTrueDib, CountsFromZeroBesideWhatTheMapHolds) {
  ColourMap map;
  DWORD red = RGB(255, 0, 0);
  map[red] = 42;
  const OwnedDib dib = test::imageOf(4, 1, 24, {0x0000FF, 0xFF0000, 0x00FF00, 0x0000FF});
  EXPECT_EQ(CPaletteFuns::GetColorsNumFromTrueDib(dib.get(), &map), 2);
  EXPECT_EQ(associationsOf(map),
            (std::vector<std::pair<DWORD, int>>{{0x0000FF, 42}, {0x00FF00, 1}, {0xFF0000, 0}}));
  // 300 colours that are there already, more than the counter remembers by itself, are not counted.
  ColourMap large = test::mapOf(colorRefs(distinctColours(300)));
  const OwnedDib many = test::imageOf(300, 1, 24, distinctColours(300));
  EXPECT_EQ(CPaletteFuns::GetColorsNumFromTrueDib(many.get(), &large), 0);
}

TEST(GetColorsNumFromPaletteDib, NumbersIndexesInOrderOfFirstUse) {
  const struct {
    int bitCount;
    std::vector<DWORD> pixels;
    Associations held, numbers;  ///< index and number, in order of the indexes
  } cases[] = {
      {1, {1, 1, 0}, {}, {{0, 1}, {1, 0}}},
      {1, {0, 0, 0}, {}, {{0, 0}}},
      {4, {15, 3, 15}, {}, {{3, 1}, {15, 0}}},
      {8, {200, 7, 255}, {}, {{7, 1}, {200, 0}, {255, 2}}},
      {8, {3, 9, 3}, {{3, 77}}, {{3, 77}, {9, 0}}},
      {24, {9, 8, 7}, {}, {{0, 0}}},  // no palette: index 0 all over
  };
  for (const auto& expected : cases) {
    IndexMap map;
    for (auto [index, number] : expected.held) map[index] = number;
    const OwnedDib dib = test::imageOf(3, 1, expected.bitCount, expected.pixels);
    EXPECT_EQ(CPaletteFuns::GetColorsNumFromPaletteDib(dib.get(), &map),
              static_cast<int>(expected.numbers.size() - expected.held.size()));
    EXPECT_EQ(associationsOf(map), expected.numbers);
  }
}

TEST(ColourMap, LooksUpWithoutInsertingAndEnumeratesEverything) {
  const std::vector<DWORD> colours = distinctColours(300);
  ColourMap map = test::mapOf(colours);
  DWORD missing = 1, first = colours[0];
  int value = 7;
  EXPECT_FALSE(map.Lookup(missing, value));
  EXPECT_EQ(value, 7);
  EXPECT_EQ(map.GetCount(), 300);
  std::vector<std::pair<DWORD, int>> expected;
  for (int i = 0; i < 300; ++i) expected.emplace_back(colours[static_cast<std::size_t>(i)], i);
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(associationsOf(map), expected);
  EXPECT_TRUE(map.RemoveKey(first));
  EXPECT_FALSE(map.RemoveKey(first));
  map.RemoveAll();
  EXPECT_TRUE(map.IsEmpty());
  EXPECT_EQ(map.GetStartPosition(), nullptr);
}

}  // namespace
