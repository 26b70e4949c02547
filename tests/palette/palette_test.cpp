#include "palette/palette.h"

#include <gtest/gtest.h>

#include "support/palettes.h"

namespace {

using test::associationsOf;
using test::ColourMap;
using test::entriesOf;
using test::mapOf;
using test::OwnedDib;
using test::paletteOf;

std::vector<RGBQUAD> quads(const std::vector<DWORD>& entries) {
  std::vector<RGBQUAD> palette(entries.size());
  std::memcpy(palette.data(), entries.data(), entries.size() * 4);
  return palette;
}

TEST(SumDibImagePalEntries, FillsTheMapToTwoHundredFiftySix) {
  ColourMap map;
  for (DWORD i = 0; i < 250; ++i) map[i] = static_cast<int>(i);
  std::vector<DWORD> fresh;
  for (DWORD i = 0; i < 10; ++i) fresh.push_back(0x01000000 + i);  // the reserved byte is part of the key
  EXPECT_FALSE(CPaletteFuns::SumDibImagePalEntries(map, quads(fresh).data(), 10));
  EXPECT_EQ(map.GetCount(), 256);
  for (int i = 0; i < 6; ++i) EXPECT_EQ(map[fresh[static_cast<std::size_t>(i)]], 250 + i);
  // Nothing new fits a full map; what is there already does.
  EXPECT_TRUE(CPaletteFuns::SumDibImagePalEntries(map, quads({5, 7, 0x01000000}).data(), 3));
  EXPECT_FALSE(CPaletteFuns::SumDibImagePalEntries(map, quads({5, 7, 0x02000000}).data(), 3));

  ColourMap small = mapOf({0xAA, 0xBB});
  EXPECT_TRUE(CPaletteFuns::SumDibImagePalEntries(small, quads({0xCC, 0xBB, 0xCC, 0xDD}).data(), 4));
  EXPECT_EQ(associationsOf(small), associationsOf(mapOf({0xAA, 0xBB, 0xCC, 0xDD})));
  EXPECT_TRUE(CPaletteFuns::SumDibImagePalEntries(small, nullptr, 0));
  EXPECT_FALSE(CPaletteFuns::SumDibImagePalEntries(small, nullptr, 4));
}

TEST(ChangeDibBitsPalette, KeepsThePictureAtEveryDepthAndWidth) {
  test::Random random(6);
  for (const int bitCount : {1, 4, 8}) {
    std::vector<DWORD> colours;
    for (DWORD i = 0; i < 1U << bitCount; ++i) colours.push_back(static_cast<DWORD>(random()) << 8 | i);
    for (const int width : {1, 4, 7, 8, 9, 15, 33, 511, 513, 1030}) {
      std::vector<DWORD> shuffled = colours;
      std::shuffle(shuffled.begin(), shuffled.end(), random);
      ColourMap map = mapOf(shuffled);
      const OwnedDib dib = test::randomImage(width, 3, bitCount, random, colours);
      const OwnedDib result(CPaletteFuns::ChangeDibBitsPalette(dib.get(), &map));
      ASSERT_TRUE(result);
      EXPECT_EQ(result->biBitCount, bitCount);
      EXPECT_EQ(entriesOf(result), shuffled);
      const auto before = test::pixelsOf(dib), after = test::pixelsOf(result);
      for (std::size_t i = 0; i < before.size(); ++i) {
        ASSERT_EQ(shuffled[after[i]], colours[before[i]]) << width;
      }
    }
  }
}

TEST(ChangeDibBitsPalette, HasAnAnswerForWhatTheMapOrThePaletteLacks) {
  // Entry 1 is missing in the map: index 0. Index 9 lies beyond the palette: what the pixel before became,
  // on into the next row.
  const OwnedDib dib = test::imageOf(3, 2, 8, {2, 1, 2, 9, 0, 9}, {0x10, 0x20, 0x30});
  ColourMap map = mapOf({0x40, 0x30, 0x10});
  const OwnedDib result(CPaletteFuns::ChangeDibBitsPalette(dib.get(), &map));
  EXPECT_EQ(test::pixelsOf(result.get()), (std::vector<DWORD>{1, 0, 1, 1, 2, 2}));
  EXPECT_EQ(map.GetCount(), 3);

  const OwnedDib black(CPaletteFuns::ChangeDibBitsPalette(dib.get(), nullptr));
  ASSERT_TRUE(black);
  EXPECT_EQ(black->biClrUsed, 0U);
  EXPECT_EQ(test::pixelsOf(black.get()), std::vector<DWORD>(6));
  EXPECT_EQ(entriesOf(black), std::vector<DWORD>(256));

  // One bit keeps whether the index is other than 0.
  ColourMap wide = mapOf({0x01, 0x02, 0x03});
  const OwnedDib bits = test::imageOf(2, 1, 1, {0, 1}, {0x03, 0x01});
  EXPECT_EQ(test::pixelsOf(OwnedDib(CPaletteFuns::ChangeDibBitsPalette(bits.get(), &wide)).get()),
            (std::vector<DWORD>{1, 0}));
}

TEST(IsPaletteEqual, TellsWhatItsTwoPassesTell) {
  struct Case {
    const char* what;
    std::vector<DWORD> palette;
    std::vector<DWORD> map;
    int equal;
  };
  const Case cases[] = {
      {"the same", {1, 2, 3}, {1, 2, 3}, 1},
      {"another order", {2, 1, 3}, {1, 2, 3}, 0},
      {"entry 0 is missing and passes for 0", {9, 2, 3}, {1, 2, 3}, 1},
      {"entry 1 is missing and is taken for 0", {1, 9, 3}, {1, 2, 3}, 0},
      {"the reserved byte counts", {1, 0x01000002, 3}, {1, 2, 3}, 0},
      {"the map may hold more", {1, 2}, {1, 2, 3, 4}, 1},
      {"one entry that is in the map", {1}, {1, 2}, 0},
      {"one entry that is not in the map", {9}, {1, 2}, 1},
      {"one entry and no map entries", {1}, {}, 1},
  };
  for (const Case& expected : cases) {
    ColourMap map = mapOf(expected.map);
    EXPECT_EQ(CPaletteFuns::IsPaletteEqual(test::image(2, 2, 4, expected.palette).get(), &map),
              expected.equal)
        << expected.what;
  }
  ColourMap map = mapOf({1, 2});
  EXPECT_FALSE(CPaletteFuns::IsPaletteEqual(test::image(2, 2, 24).get(), &map));
  EXPECT_FALSE(CPaletteFuns::IsPaletteEqual(nullptr, &map));
  EXPECT_FALSE(CPaletteFuns::IsPaletteEqual(test::image(2, 2, 4, {1, 2}).get(), nullptr));
}

TEST(GrayPalettes, AreRecognisedOnlyAsTheWholeRamp) {
  const OwnedDib dib = test::image(2, 2, 8);
  CPaletteFuns::MakeGrayPalette(paletteOf(dib), 256);
  EXPECT_TRUE(CPaletteFuns::IsGrayScaleImage(dib.get()));
  paletteOf(dib)[3].rgbReserved = 9;
  EXPECT_TRUE(CPaletteFuns::IsGrayScaleImage(dib.get()));
  for (BYTE RGBQUAD::*channel : {&RGBQUAD::rgbRed, &RGBQUAD::rgbGreen, &RGBQUAD::rgbBlue}) {
    ++(paletteOf(dib)[100].*channel);
    EXPECT_FALSE(CPaletteFuns::IsGrayScaleImage(dib.get()));
    --(paletteOf(dib)[100].*channel);
  }
  EXPECT_FALSE(CPaletteFuns::IsGrayScaleImage(test::image(2, 2, 1, {0, 0xFFFFFF}).get()));
  EXPECT_FALSE(CPaletteFuns::IsGrayScaleImage(nullptr));
  const std::vector<DWORD> tooMany(257, 0);
  EXPECT_FALSE(CPaletteFuns::IsGrayScaleImage(test::image(2, 2, 8, tooMany).get()));

  // The palette is looked for at 40 bytes, here the four bytes that lengthen the header.
  std::vector<BYTE> block = test::bytesOf(test::image(2, 2, 8, {0x000000}));
  block.insert(block.begin() + 40, 4, 0);
  block[0] = 44;
  block[44] = 1;
  EXPECT_TRUE(CPaletteFuns::IsGrayScaleImage(reinterpret_cast<BITMAPINFOHEADER*>(block.data())));
}

void expectGray(const RGBQUAD& entry, int gray, int reserved) {
  EXPECT_EQ((std::vector<int>{entry.rgbBlue, entry.rgbGreen, entry.rgbRed, entry.rgbReserved}),
            (std::vector<int>{gray, gray, gray, reserved}));
}

TEST(GrayPalettes, RampInWholeSteps) {
  for (const auto& [count, step] : {std::pair{256, 1}, {16, 17}, {3, 127}, {2, 255}, {257, 0}, {100, 2}}) {
    std::vector<RGBQUAD> palette(static_cast<std::size_t>(count), RGBQUAD{1, 2, 3, 4});
    CPaletteFuns::MakeGrayPalette(palette.data(), count);
    for (int i = 0; i < count; ++i) expectGray(palette[static_cast<std::size_t>(i)], i * step % 256, 4);
  }
  RGBQUAD one{1, 2, 3, 4};
  CPaletteFuns::MakeGrayPalette(&one, 1);
  EXPECT_EQ(one.rgbGreen, 2);
  CPaletteFuns::MakeGrayPalette(nullptr, 5);
}

TEST(GrayPalettes, WeighColoursAndKeepTheReservedByte) {
  // 0.3 x 255 = 76.5; 0.59 x 255 = 150.45; 0.11 x 255 = 28.05; 0.3 x 10 + 0.59 x 20 + 0.11 x 30 = 18.1
  std::vector<RGBQUAD> palette = quads({0x77FF0000, 0x7700FF00, 0x770000FF, 0x770A141E});
  CPaletteFuns::GrayPalette(palette.data(), 4);
  const int grays[] = {76, 150, 28, 18};
  for (std::size_t i = 0; i < palette.size(); ++i) expectGray(palette[i], grays[i], 0x77);
  CPaletteFuns::GrayPalette(nullptr, 5);
}

TEST(PaletteSearch, BreaksTiesHighForTheNearestAndLowForTheFarthest) {
  std::vector<RGBQUAD> palette(9, RGBQUAD{50, 50, 50, 0});
  palette[3] = palette[7] = {10, 20, 30, 0};
  EXPECT_EQ(CPaletteFuns::GetNearestPaletteIndex(palette.data(), 9, RGB(30, 20, 10)), 7);
  EXPECT_EQ(CPaletteFuns::GetNearestPaletteIndex(palette.data(), 7, RGB(30, 20, 10) | 0xFF000000), 3);
  EXPECT_EQ(CPaletteFuns::GetNearestPaletteIndex(palette.data(), 0, RGB(30, 20, 10)), 0);
  palette[2] = palette[5] = {255, 255, 255, 0};
  EXPECT_EQ(CPaletteFuns::GetMaxDifferenceColor(palette.data(), 9, 0, 0, 0), 2);
  EXPECT_EQ(CPaletteFuns::GetMaxDifferenceColor(palette.data(), 2, 50, 50, 50), 0);
  // Distances are squared: red 4 away is nearer than green and blue 3 away each.
  std::vector<RGBQUAD> nearby = quads({0x040000, 0x000303});
  EXPECT_EQ(CPaletteFuns::GetNearestPaletteIndex(nearby.data(), 2, 0), 0);
  EXPECT_EQ(CPaletteFuns::GetMaxDifferenceColor(nearby.data(), 2, 0, 0, 0), 1);
  EXPECT_EQ(CPaletteFuns::GetNearestPaletteIndex(nullptr, 3, 0), 0);
  EXPECT_EQ(CPaletteFuns::GetMaxDifferenceColor(nullptr, 3, 0, 0, 0), 0);
}

TEST(GetThreshValueForm8BitsGrayDib, PartsDarkFromLight) {
  struct Case {
    const char* bins;  ///< what smoothing leaves
    std::vector<DWORD> levels;
    int threshold;
  };
  std::vector<DWORD> twoModes(200, 20);
  std::fill(twoModes.begin() + 80, twoModes.end(), 200);
  const Case cases[] = {
      // The means run to the left, since the bins before are smooth already. Of the equal scores
      // 1 x 2 x 1.5 x 1.5 and 2 x 1 x 1.5 x 1.5 the first wins.
      {"98, 99 and 100: 1 each", {100, 100, 100, 100, 100}, 98},
      // Bins at the ends count three times. Scores 2 x 3 x 86 x 86, 3 x 2 x 128 x 128, 4 x 1 x 254 x 254.
      {"0: 2, 1, 2 and 255: 1", {0, 0, 0, 0, 255}, 2},
      // Scores 1 x 6 x (5 / 3)^2 = 16.7 and 3 x 4 x (4 / 3)^2 = 21.3.
      {"253: 1, 254: 2, 255: 4", {255, 255, 255, 255, 255}, 254},
      // Past the lower mode's last bin all scores are equal.
      {"18 to 26: 16, 19, 23, 8, 6, 3, 2, 1, 1", twoModes, 26},
      {"(2 + 2) / 5: none", {90, 90}, 1},
      {"none", {}, 1},
  };
  for (const Case& expected : cases) {
    const OwnedDib dib = test::imageOf(static_cast<int>(expected.levels.size()), 1, 8, expected.levels);
    EXPECT_EQ(CPaletteFuns::GetThreshValueForm8BitsGrayDib(dib.get()), expected.threshold) << expected.bins;
  }
  EXPECT_EQ(CPaletteFuns::GetThreshValueForm8BitsGrayDib(test::image(0, INT32_MAX, 8).get()), 1);
  EXPECT_EQ(CPaletteFuns::GetThreshValueForm8BitsGrayDib(nullptr), 0);
  EXPECT_EQ(CPaletteFuns::GetThreshValueForm8BitsGrayDib(test::image(4, 4, 4).get()), 0);
}

}  // namespace
