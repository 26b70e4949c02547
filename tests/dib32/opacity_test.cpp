#include "dib32/opacity.h"

#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "support/images.h"

namespace {

using dibkit::OwnedDib;

BYTE byteOf(int value) { return static_cast<BYTE>(value); }

int literalChannel(int ad, int as, int cd, int cs, int ao) {
  int value = cd * ad * (255 - as) / 255 + cs * as;
  if (ao > 0) value /= ao;
  return std::min(value, 255);
}

TEST(CalcuOpacity, IsExactForEveryPair) {
  for (int a = 0; a < 256; ++a) {
    for (int b = 0; b < 256; ++b) {
      ASSERT_EQ(CDIB32::CalcuOpacity(byteOf(a), byteOf(b)), 255 - (255 - a) * (255 - b) / 255)
          << a << " " << b;
    }
  }
  EXPECT_EQ(CDIB32::CalcuOpacity(128, 128), 192);
}

TEST(CalcuRGBValue, TakesAnyOpacityOfTheResult) {
  EXPECT_EQ(CDIB32::CalcuRGBValue(255, 128, 0, 255, CDIB32::CalcuOpacity(255, 128)), 128);
  // Undivided for 0, and clamped whenever the divisor is smaller than the opacities would give.
  EXPECT_EQ(CDIB32::CalcuRGBValue(0, 0, 200, 200, 0), 0);
  EXPECT_EQ(CDIB32::CalcuRGBValue(255, 1, 0, 77, 0), 77);
  EXPECT_EQ(CDIB32::CalcuRGBValue(255, 255, 255, 255, 0), 255);
  EXPECT_EQ(CDIB32::CalcuRGBValue(255, 10, 0, 30, 1), 255);
  EXPECT_EQ(CDIB32::CalcuRGBValue(255, 10, 0, 20, 1), 200);
}

constexpr int levels[] = {0, 1, 2, 17, 51, 84, 85, 100, 127, 128, 170, 200, 240, 253, 254, 255};

TEST(OverRow, IsExactForEveryAlphaPair) {
  // One row per pair of opacities: every pair of 16 channel levels, three channels at a time.
  const int count = 16 * 16;
  std::vector<dibkit::Bgra> below(count);
  std::vector<dibkit::Bgra> above(count);
  std::vector<dibkit::Bgra> result(count);
  for (int ad = 0; ad < 256; ++ad) {
    for (int as = 0; as < 256; ++as) {
      for (int i = 0; i < count; ++i) {
        const auto at = static_cast<std::size_t>(i);
        const auto level = [](int index) { return byteOf(levels[index & 15]); };
        below[at] = {level(i), level(i + 5), level(i + 11), byteOf(ad)};
        above[at] = {level(i >> 4), level((i >> 4) + 3), level(i >> 4), byteOf(as)};
      }
      dibkit::overRow(result.data(), below.data(), 0, above.data(), 0, count);
      const int ao = 255 - (255 - ad) * (255 - as) / 255;
      for (std::size_t i = 0; i < count; ++i) {
        const dibkit::Bgra expected{byteOf(literalChannel(ad, as, below[i].blue, above[i].blue, ao)),
                                    byteOf(literalChannel(ad, as, below[i].green, above[i].green, ao)),
                                    byteOf(literalChannel(ad, as, below[i].red, above[i].red, ao)),
                                    byteOf(ao)};
        ASSERT_EQ(result[i], expected) << ad << " " << as << " " << i;
        ASSERT_EQ(dibkit::over(below[i], above[i]), expected) << ad << " " << as << " " << i;
      }
    }
  }
}

TEST(OverRow, ReducesBothLayersAndStopsAtItsCount) {
  test::Random random(3);
  for (int count = 0; count < 70; ++count) {
    const OwnedDib below = test::randomImage(70, 1, 32, random);
    const OwnedDib above = test::randomImage(70, 1, 32, random);
    const OwnedDib result = test::randomImage(70, 1, 32, random);
    const auto rb = byteOf(test::below(random, 256));
    const auto ra = byteOf(test::below(random, 256));
    const auto* lower = dibkit::pixelsOf(test::rowOf(below.get(), 0));
    const auto* upper = dibkit::pixelsOf(test::rowOf(above.get(), 0));
    auto* out = dibkit::pixelsOf(test::rowOf(result.get(), 0));
    std::vector<dibkit::Bgra> expected(out, out + 70);
    for (int i = 0; i < count; ++i) {
      const int ad = std::max(lower[i].alpha - rb, 0);
      const int as = std::max(upper[i].alpha - ra, 0);
      const int ao = 255 - (255 - ad) * (255 - as) / 255;
      expected[static_cast<std::size_t>(i)] = {
          byteOf(literalChannel(ad, as, lower[i].blue, upper[i].blue, ao)),
          byteOf(literalChannel(ad, as, lower[i].green, upper[i].green, ao)),
          byteOf(literalChannel(ad, as, lower[i].red, upper[i].red, ao)), byteOf(ao)};
    }
    dibkit::overRow(out, lower, rb, upper, ra, count);
    ASSERT_EQ(std::vector<dibkit::Bgra>(out, out + 70), expected) << count;
  }
}

TEST(CombineBlock, ComposesTheOverlapOnly) {
  const OwnedDib below = test::imageOf(2, 2, 32, {0xFF000000, 0x00463C32, 0x00463C32, 0xFF102030});
  const OwnedDib above = test::imageOf(2, 2, 32, {0x80FFFFFF, 0x001E140A, 0xFF010203, 0xC8010203});
  // The source's left column falls outside: (1, y) of the source lies over (0, y + 1) of the destination.
  CDIB32::CombineBlock(below.get(), {5, 5}, above.get(), {4, 6}, 0);
  // Two transparent pixels give transparent black, and the row above stays.
  EXPECT_EQ(test::pixelsOf(below), (std::vector<DWORD>{0xFF000000, 0x00463C32, 0, 0xFF102030}));
  // White of 128, less 100, over opaque black: 255 * 28 / 255 = 28.
  CDIB32::CombineBlock(below.get(), {0, 0}, above.get(), {0, 0}, 100);
  EXPECT_EQ(test::pixel(below, 0, 0), 0xFF1C1C1CU);
}

}  // namespace
