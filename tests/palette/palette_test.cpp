#include "palette/palette.h"

#include <gtest/gtest.h>

#include "support/palettes.h"

namespace {

using test::ColourMap;
using test::entriesOf;
using test::mapOf;
using test::oneOf;
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
      EXPECT_EQ(entriesOf(result), shuffled);
      const auto before = test::pixelsOf(dib), after = test::pixelsOf(result);
      for (std::size_t i = 0; i < before.size(); ++i)
        ASSERT_EQ(shuffled[after[i]], colours[before[i]]) << width;
    }
  }
}

TEST(ChangeDibBitsPalette, HasAnAnswerForWhatTheMapOrThePaletteLacks) {
  // Entry 1 is missing in the map: index 0. Index 9 is beyond the palette: what the pixel before became, on
  // into the next row.
  const OwnedDib dib = test::imageOf(3, 2, 8, {2, 1, 2, 9, 0, 9}, {0x10, 0x20, 0x30});
  ColourMap map = mapOf({0x40, 0x30, 0x10});
  const OwnedDib result(CPaletteFuns::ChangeDibBitsPalette(dib.get(), &map));
  EXPECT_EQ(test::pixelsOf(result), (std::vector<DWORD>{1, 0, 1, 1, 2, 2}));
  EXPECT_EQ(map.GetCount(), 3);
  const OwnedDib black(CPaletteFuns::ChangeDibBitsPalette(dib.get(), nullptr));
  EXPECT_EQ(test::bytesOf(black), test::bytesOf(test::image(3, 2, 8)));
  // One bit keeps whether the index is other than 0.
  ColourMap wide = mapOf({0x01, 0x02, 0x03});
  const OwnedDib bits = test::imageOf(2, 1, 1, {0, 1}, {0x03, 0x01});
  EXPECT_EQ(test::pixelsOf(OwnedDib(CPaletteFuns::ChangeDibBitsPalette(bits.get(), &wide))),
            (std::vector<DWORD>{1, 0}));
}

TEST(IsPaletteEqual, TellsWhatItsTwoPassesTell) {
  const struct {
    const char* what;
    std::vector<DWORD> palette, map;
    int equal;
  } cases[] = {
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
  for (const auto& expected : cases) {
    ColourMap map = mapOf(expected.map);
    const OwnedDib dib = test::image(2, 2, 4, expected.palette);
    EXPECT_EQ(CPaletteFuns::IsPaletteEqual(dib.get(), &map), expected.equal) << expected.what;
  }
}

TEST(IsGrayScaleImage, WantsTheWholeRamp) {
  const OwnedDib dib = test::image(2, 2, 8);
  CPaletteFuns::MakeGrayPalette(paletteOf(dib), 256);
  paletteOf(dib)[3].rgbReserved = 9;
  EXPECT_TRUE(CPaletteFuns::IsGrayScaleImage(dib.get()));
  for (BYTE RGBQUAD::*channel : {&RGBQUAD::rgbRed, &RGBQUAD::rgbGreen, &RGBQUAD::rgbBlue}) {
    ++(paletteOf(dib)[100].*channel);
    EXPECT_FALSE(CPaletteFuns::IsGrayScaleImage(dib.get()));
    --(paletteOf(dib)[100].*channel);
  }
  EXPECT_FALSE(CPaletteFuns::IsGrayScaleImage(test::image(2, 2, 1, {0, 0xFFFFFF}).get()));
  EXPECT_FALSE(CPaletteFuns::IsGrayScaleImage(test::image(2, 2, 8, std::vector<DWORD>(257, 0)).get()));

  // The palette is looked for at 40 bytes, here the four bytes that lengthen the header.
  std::vector<BYTE> block = test::bytesOf(test::image(2, 2, 8, {0x000000}));
  block.insert(block.begin() + 40, 4, 0);
  block[0] = 44;
  block[44] = 1;
  EXPECT_TRUE(CPaletteFuns::IsGrayScaleImage(reinterpret_cast<BITMAPINFOHEADER*>(block.data())));
}

/// A gray with the reserved byte of an entry.
DWORD grayed(DWORD entry, int gray) {
  return (entry & 0xFF000000) | static_cast<DWORD>(gray & 255) * 0x010101;
}

TEST(GrayPalettes, RampInWholeStepsAndWeighColours) {
  for (const auto& [count, step] : {std::pair{256, 1}, {16, 17}, {3, 127}, {2, 255}, {257, 0}, {1, 0}}) {
    std::vector<DWORD> palette(static_cast<std::size_t>(count), 0x04030303), expected = palette;
    CPaletteFuns::MakeGrayPalette(reinterpret_cast<RGBQUAD*>(palette.data()), count);
    for (int i = 0; i < count && count > 1; ++i)
      expected[static_cast<std::size_t>(i)] = grayed(0x04000000, i * step);
    EXPECT_EQ(palette, expected);
  }
  // 0.3 x 255 = 76.5; 0.59 x 255 = 150.45; 0.11 x 255 = 28.05; 0.3 x 10 + 0.59 x 20 + 0.11 x 30 = 18.1
  std::vector<DWORD> palette{0x77FF0000, 0x7700FF00, 0x770000FF, 0x770A141E};
  CPaletteFuns::GrayPalette(reinterpret_cast<RGBQUAD*>(palette.data()), 4);
  EXPECT_EQ(palette, (std::vector<DWORD>{grayed(0x77000000, 76), grayed(0x77000000, 150),
                                         grayed(0x77000000, 28), grayed(0x77000000, 18)}));
}

TEST(PaletteSearch, BreaksTiesHighForTheNearestAndLowForTheFarthest) {
  test::Random random(9);
  for (int round = 0; round < 300; ++round) {
    // Few levels, so that many colours are equally far.
    const auto colour = [&] {
      return static_cast<DWORD>(random()) & (round % 3 == 0 ? 0xFFFFFFFF : 0xFF818181);
    };
    std::vector<DWORD> palette(static_cast<std::size_t>(1 + test::below(random, 40)));
    for (DWORD& entry : palette) entry = colour();
    const DWORD wanted = colour();  // red in its highest byte of three, as in the palette
    const auto distance = [&](int i) {
      int sum = 0;
      for (const int shift : {0, 8, 16}) {
        const int difference = static_cast<int>(palette[static_cast<std::size_t>(i)] >> shift & 255) -
                               static_cast<int>(wanted >> shift & 255);
        sum += difference * difference;
      }
      return sum;
    };
    const int count = static_cast<int>(palette.size());
    int nearest = 0, farthest = 0;
    for (int i = 0; i < count; ++i) {
      if (distance(i) <= distance(nearest)) nearest = i;
      if (distance(i) > distance(farthest)) farthest = i;
    }
    const BYTE red = BYTE(wanted >> 16 & 255), green = BYTE(wanted >> 8 & 255), blue = BYTE(wanted & 255);
    auto* entries = reinterpret_cast<RGBQUAD*>(palette.data());
    const DWORD colorRef = RGB(red, green, blue) | (wanted & 0xFF000000);
    ASSERT_EQ(CPaletteFuns::GetNearestPaletteIndex(entries, count, colorRef), nearest);
    ASSERT_EQ(CPaletteFuns::GetMaxDifferenceColor(entries, count, red, green, blue), farthest);
  }
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
}

}  // namespace
