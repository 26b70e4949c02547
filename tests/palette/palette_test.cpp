#include "palette/palette.h"

#include <gtest/gtest.h>

#include "support/palettes.h"

namespace {

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
  // Nothing new fits a full map.
  EXPECT_TRUE(CPaletteFuns::SumDibImagePalEntries(map, quads({5, 7, 0x01000000}).data(), 3));
  EXPECT_FALSE(CPaletteFuns::SumDibImagePalEntries(map, quads({5, 7, 0x02000000}).data(), 3));
  EXPECT_EQ(map.GetCount(), 256);
}

TEST(SumDibImagePalEntries, KeepsTheNumbersThatAreThereAndRepeatsNothing) {
  ColourMap map = mapOf({0xAA, 0xBB});
  EXPECT_TRUE(CPaletteFuns::SumDibImagePalEntries(map, quads({0xCC, 0xBB, 0xCC, 0xDD}).data(), 4));
  EXPECT_EQ(map.GetCount(), 4);
  for (const auto& [colour, number] : {std::pair{0xAA, 0}, {0xBB, 1}, {0xCC, 2}, {0xDD, 3}}) {
    DWORD key = static_cast<DWORD>(colour);
    EXPECT_EQ(map[key], number);
  }
  EXPECT_TRUE(CPaletteFuns::SumDibImagePalEntries(map, nullptr, 0));
  EXPECT_FALSE(CPaletteFuns::SumDibImagePalEntries(map, nullptr, 4));
}

TEST(ChangeDibBitsPalette, MovesEachColourToItsIndexInTheMap) {
  const OwnedDib dib = test::imageOf(3, 2, 4, {0, 1, 1, 1, 0, 0}, {0x0000FF, 0xFF0000});  // blue, red
  ColourMap map = mapOf({0xFF0000, 0x0000FF});
  const OwnedDib result(CPaletteFuns::ChangeDibBitsPalette(dib.get(), &map));
  ASSERT_TRUE(result);
  EXPECT_EQ(result->biBitCount, 4);
  EXPECT_EQ(result->biClrUsed, 2U);
  EXPECT_EQ(entriesOf(result), (std::vector<DWORD>{0xFF0000, 0x0000FF}));
  EXPECT_EQ(test::pixelsOf(result.get()), (std::vector<DWORD>{1, 0, 0, 0, 1, 1}));
}

TEST(ChangeDibBitsPalette, KeepsThePictureAtEveryDepthAndWidth) {
  test::Random random(6);
  for (const int bitCount : {1, 4, 8}) {
    for (const int width : {1, 4, 7, 8, 9, 15, 33, 511, 513, 1030}) {
      const int size = 1 << bitCount;
      std::vector<DWORD> colours;
      for (int i = 0; i < size; ++i)
        colours.push_back(static_cast<DWORD>(random()) << 8 | static_cast<DWORD>(i));
      std::vector<DWORD> shuffled = colours;
      std::shuffle(shuffled.begin(), shuffled.end(), random);
      ColourMap map = mapOf(shuffled);
      const OwnedDib dib = test::randomImage(width, 3, bitCount, random, colours);
      const OwnedDib result(CPaletteFuns::ChangeDibBitsPalette(dib.get(), &map));
      ASSERT_TRUE(result);
      EXPECT_EQ(entriesOf(result), shuffled);
      const auto before = test::pixelsOf(dib.get());
      const auto after = test::pixelsOf(result.get());
      for (std::size_t i = 0; i < before.size(); ++i)
        ASSERT_EQ(shuffled[after[i]], colours[before[i]]) << width;
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

  EXPECT_EQ(CPaletteFuns::ChangeDibBitsPalette(nullptr, &map), nullptr);
  EXPECT_EQ(CPaletteFuns::ChangeDibBitsPalette(test::image(2, 2, 16).get(), &map), nullptr);
  EXPECT_EQ(CPaletteFuns::ChangeDibBitsPalette(test::image(2, 2, 2).get(), &map), nullptr);
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

TEST(GrayPalettes, RampInWholeSteps) {
  struct Case {
    int count, step;
  };
  for (const Case& ramp : {Case{256, 1}, {16, 17}, {3, 127}, {2, 255}, {257, 0}, {100, 2}}) {
    std::vector<RGBQUAD> palette(static_cast<std::size_t>(ramp.count), RGBQUAD{1, 2, 3, 4});
    CPaletteFuns::MakeGrayPalette(palette.data(), ramp.count);
    for (int i = 0; i < ramp.count; ++i) {
      const RGBQUAD& entry = palette[static_cast<std::size_t>(i)];
      const int gray = i * ramp.step % 256;
      EXPECT_TRUE(entry.rgbRed == gray && entry.rgbGreen == gray && entry.rgbBlue == gray &&
                  entry.rgbReserved == 4);
    }
  }
  RGBQUAD one{1, 2, 3, 4};
  CPaletteFuns::MakeGrayPalette(&one, 1);
  EXPECT_EQ(one.rgbGreen, 2);
  CPaletteFuns::MakeGrayPalette(nullptr, 5);
}

TEST(GrayPalettes, WeighColoursAndKeepTheReservedByte) {
  struct Case {
    DWORD colour;
    int gray;
  };
  // 0.3 x 255 = 76.5; 0.59 x 255 = 150.45; 0.11 x 255 = 28.05; 0.3 x 10 + 0.59 x 20 + 0.11 x 30 = 18.1
  for (const Case& expected : {Case{0xFF0000, 76}, {0x00FF00, 150}, {0x0000FF, 28}, {0x0A141E, 18}, {0, 0}}) {
    std::vector<RGBQUAD> palette = quads({0x77000000 | expected.colour});
    CPaletteFuns::GrayPalette(palette.data(), 1);
    const BYTE gray = static_cast<BYTE>(expected.gray);
    const RGBQUAD& entry = palette[0];
    EXPECT_TRUE(entry.rgbRed == gray && entry.rgbGreen == gray && entry.rgbBlue == gray &&
                entry.rgbReserved == 0x77)
        << std::hex << expected.colour;
  }
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
  // Each channel counts by itself: red 4 away beats blue and green 3 away each? 16 < 18.
  const std::vector<RGBQUAD> nearby = quads({0x040000, 0x000303});
  EXPECT_EQ(CPaletteFuns::GetNearestPaletteIndex(const_cast<RGBQUAD*>(nearby.data()), 2, 0), 0);
  EXPECT_EQ(CPaletteFuns::GetMaxDifferenceColor(const_cast<RGBQUAD*>(nearby.data()), 2, 0, 0, 0), 1);
  EXPECT_EQ(CPaletteFuns::GetNearestPaletteIndex(nullptr, 3, 0), 0);
  EXPECT_EQ(CPaletteFuns::GetMaxDifferenceColor(nullptr, 3, 0, 0, 0), 0);
}

/// The threshold step by step, on one plain histogram and in doubles throughout.
int plainThreshold(const OwnedDib& dib) {
  int bins[256] = {};
  for (const DWORD level : test::pixelsOf(dib.get())) ++bins[level];
  for (int i = 0; i < 256; ++i) {
    int sum = 0;
    for (int j = i - 2; j <= i + 2; ++j) sum += bins[j < 0 ? 0 : j > 255 ? 255 : j];
    bins[i] = static_cast<int>(sum / 5.0 + 0.5);
  }
  double total = 0, weighted = 0, best = -1, background = 0, backgroundSum = 0;
  for (int i = 0; i < 256; ++i) {
    total += bins[i];
    weighted += static_cast<double>(i) * bins[i];
  }
  int threshold = 1;
  for (int t = 0; t < 255; ++t) {
    background += bins[t];
    if (background == 0) continue;
    const double foreground = total - background;
    if (foreground == 0) break;
    backgroundSum += static_cast<double>(t) * bins[t];
    const double difference = backgroundSum / background - (weighted - backgroundSum) / foreground;
    const double score = background * foreground * (difference * difference);
    if (score > best) {
      best = score;
      threshold = t;
    }
  }
  return threshold;
}

TEST(GetThreshValueForm8BitsGrayDib, AgreesWithThePlainSteps) {
  test::Random random(8);
  for (int round = 0; round < 300; ++round) {
    OwnedDib dib = test::image(1 + test::below(random, 70), 1 + test::below(random, 20), 8);
    const int low = test::below(random, 256);
    const int spread = 1 + test::below(random, 256 - low);
    for (int y = 0; y < dib->biHeight; ++y) {
      for (int x = 0; x < dib->biWidth; ++x) {
        test::setPixel(dib, x, y,
                       static_cast<DWORD>(low + test::below(random, 1 + test::below(random, spread))));
      }
    }
    ASSERT_EQ(CPaletteFuns::GetThreshValueForm8BitsGrayDib(dib.get()), plainThreshold(dib)) << round;
  }
}

TEST(GetThreshValueForm8BitsGrayDib, PartsDarkFromLight) {
  std::vector<DWORD> pixels(200, 20);
  std::fill(pixels.begin() + 80, pixels.end(), 200);
  const int threshold = CPaletteFuns::GetThreshValueForm8BitsGrayDib(test::imageOf(20, 10, 8, pixels).get());
  EXPECT_GT(threshold, 20);
  EXPECT_LT(threshold, 200);
  EXPECT_EQ(CPaletteFuns::GetThreshValueForm8BitsGrayDib(test::image(0, 0, 8).get()), 1);
  // Two pixels of one level round away to nothing: (2 + 2) / 5 = 0.
  EXPECT_EQ(CPaletteFuns::GetThreshValueForm8BitsGrayDib(test::imageOf(2, 1, 8, {90, 90}).get()), 1);
  EXPECT_EQ(CPaletteFuns::GetThreshValueForm8BitsGrayDib(nullptr), 0);
  EXPECT_EQ(CPaletteFuns::GetThreshValueForm8BitsGrayDib(test::image(4, 4, 4).get()), 0);
}

}  // namespace
