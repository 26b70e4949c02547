#include <algorithm>

#include <gtest/gtest.h>

#include "palette/palette.h"
#include "support/palettes.h"

namespace {

using test::ColourMap;
using IndexMap = CMap<int, int&, int, int&>;
using test::distinctColours;
using test::OwnedDib;

OwnedDib imageOfColours(int count, int bitCount) {
  return test::imageOf(count, 1, bitCount, distinctColours(count));
}

DWORD colorRef(DWORD colour) {
  return RGB(colour >> 16 & 255, colour >> 8 & 255, static_cast<int>(colour & 255));
}

/// The colours of an image in order of first appearance, by plain search.
std::vector<DWORD> coloursInOrder(const OwnedDib& dib) {
  std::vector<DWORD> colours;
  for (const DWORD stored : test::pixelsOf(dib.get())) {
    const DWORD colour = stored & 0xFFFFFF;
    if (std::find(colours.begin(), colours.end(), colour) == colours.end()) colours.push_back(colour);
  }
  return colours;
}

/// Pictures of runs, some long enough for whole words, some of single pixels.
OwnedDib picture(test::Random& random, int bitCount, int colourCount) {
  const int width = 1 + test::below(random, 90);
  const int height = 1 + test::below(random, 9);
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

TEST(GetColorsNumFrom24BitsDib, CountsLikeAPlainSearch) {
  test::Random random(2);
  for (int round = 0; round < 200; ++round) {
    const OwnedDib dib = picture(random, 24, round % 2 != 0 ? 9 : 400);
    const int expected = std::min(257, static_cast<int>(coloursInOrder(dib).size()));
    ASSERT_EQ(CPaletteFuns::GetColorsNumFrom24BitsDib(dib.get()), expected) << round;
  }
}

TEST(ColourCounts, KnowTwoHundredFiftySixFromOneMore) {
  EXPECT_EQ(CPaletteFuns::GetColorsNumFrom24BitsDib(imageOfColours(256, 24).get()), 256);
  EXPECT_EQ(CPaletteFuns::GetColorsNumFrom24BitsDib(imageOfColours(257, 24).get()), 257);
  EXPECT_EQ(CPaletteFuns::GetColorsNumFrom24BitsDib(test::image(0, 5, 24).get()), 0);
  for (const int bitCount : {24, 32}) {
    ColourMap map;
    EXPECT_EQ(CPaletteFuns::GetColorsNumFromTrueDib(imageOfColours(256, bitCount).get(), &map), 256);
    ColourMap full;
    EXPECT_EQ(CPaletteFuns::GetColorsNumFromTrueDib(imageOfColours(257, bitCount).get(), &full), -1);
    EXPECT_EQ(full.GetCount(), 256);
  }
}

TEST(GetColorsNumFromTrueDib, NumbersColorRefsInReadingOrder) {
  test::Random random(4);
  for (int round = 0; round < 100; ++round) {
    const OwnedDib dib = picture(random, round % 2 != 0 ? 24 : 32, 60);
    const std::vector<DWORD> colours = coloursInOrder(dib);
    ColourMap map;
    ASSERT_EQ(CPaletteFuns::GetColorsNumFromTrueDib(dib.get(), &map), static_cast<int>(colours.size()));
    ASSERT_EQ(map.GetCount(), static_cast<int>(colours.size()));
    for (int i = 0; i < static_cast<int>(colours.size()); ++i) {
      DWORD key = colorRef(colours[static_cast<std::size_t>(i)]);
      int value = -1;
      EXPECT_TRUE(map.Lookup(key, value));
      EXPECT_EQ(value, i);
    }
  }
}

TEST(GetColorsNumFromTrueDib, CountsFromZeroWhateverTheMapHolds) {
  ColourMap map;
  DWORD red = RGB(255, 0, 0);
  int value = 42;
  map.SetAt(red, value);
  const OwnedDib dib = test::imageOf(4, 1, 24, {0x0000FF, 0xFF0000, 0x00FF00, 0x0000FF});
  EXPECT_EQ(CPaletteFuns::GetColorsNumFromTrueDib(dib.get(), &map), 2);
  DWORD blue = RGB(0, 0, 255);
  DWORD green = RGB(0, 255, 0);
  EXPECT_EQ(map[red], 42);
  EXPECT_EQ(map[blue], 0);
  EXPECT_EQ(map[green], 1);
  // 300 colours that are there already, more than the counter remembers by itself, are not counted.
  ColourMap large;
  const std::vector<DWORD> colours = distinctColours(300);
  for (DWORD colour : colours) {
    DWORD key = colorRef(colour);
    large.SetAt(key, value);
  }
  EXPECT_EQ(CPaletteFuns::GetColorsNumFromTrueDib(imageOfColours(300, 24).get(), &large), 0);
}

TEST(GetColorsNumFromPaletteDib, NumbersIndexesInOrderOfFirstUse) {
  struct Case {
    int bitCount;
    std::vector<DWORD> pixels;
    std::vector<int> order;
  };
  const Case cases[] = {
      {1, {1, 1, 0}, {1, 0}},    {1, {0, 0, 0}, {0}},
      {4, {15, 3, 15}, {15, 3}}, {8, {200, 7, 255}, {200, 7, 255}},
      {24, {9, 8, 7}, {0}},  // no palette: index 0 all over
  };
  for (const Case& expected : cases) {
    IndexMap map;
    const OwnedDib dib = test::imageOf(3, 1, expected.bitCount, expected.pixels);
    EXPECT_EQ(CPaletteFuns::GetColorsNumFromPaletteDib(dib.get(), &map),
              static_cast<int>(expected.order.size()));
    for (int i = 0; i < static_cast<int>(expected.order.size()); ++i) {
      int index = expected.order[static_cast<std::size_t>(i)];
      int value = -1;
      EXPECT_TRUE(map.Lookup(index, value));
      EXPECT_EQ(value, i);
    }
  }
  IndexMap held;
  int index = 3;
  int value = 77;
  held.SetAt(index, value);
  const OwnedDib dib = test::imageOf(3, 1, 8, {3, 9, 3});
  EXPECT_EQ(CPaletteFuns::GetColorsNumFromPaletteDib(dib.get(), &held), 1);
  EXPECT_EQ(held[index], 77);
  index = 9;
  EXPECT_EQ(held[index], 0);
}

TEST(ColourCounts, TakeWrongArgumentsAsNothing) {
  ColourMap colours;
  IndexMap indexes;
  EXPECT_EQ(CPaletteFuns::GetColorsNumFrom24BitsDib(nullptr), 0);
  EXPECT_EQ(CPaletteFuns::GetColorsNumFrom24BitsDib(test::image(9, 9, 1).get()), 0);
  EXPECT_EQ(CPaletteFuns::GetColorsNumFromTrueDib(nullptr, &colours), 0);
  EXPECT_EQ(CPaletteFuns::GetColorsNumFromTrueDib(test::image(9, 9, 24).get(), nullptr), 0);
  EXPECT_EQ(CPaletteFuns::GetColorsNumFromTrueDib(test::image(9, 9, 8).get(), &colours), 0);
  EXPECT_EQ(CPaletteFuns::GetColorsNumFromPaletteDib(nullptr, &indexes), 0);
  EXPECT_EQ(CPaletteFuns::GetColorsNumFromPaletteDib(test::image(9, 9, 8).get(), nullptr), 0);
}

}  // namespace
