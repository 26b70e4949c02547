#include <gtest/gtest.h>

#include "dib32/blend.h"
#include "dib32/dib32.h"
#include "dib32/literal_rules.h"

namespace {

using test::byteOf;

TEST(CalcuOpacity, IsExactForEveryPair) {
  for (int a = 0; a < 256; ++a) {
    for (int b = 0; b < 256; ++b) {
      ASSERT_EQ(CDIB32::CalcuOpacity(byteOf(a), byteOf(b)), 255 - (255 - a) * (255 - b) / 255);
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
  // One row per pair of opacities: every pair of 16 channel levels, three pairs a pixel.
  constexpr int count = (256 + 2) / 3;
  std::vector<dibkit::Bgra> below(count);
  std::vector<dibkit::Bgra> above(count);
  for (int i = 0; i < count; ++i) {
    const auto level = [i](int channel, int divisor) {
      return byteOf(levels[((3 * i + channel) % 256 / divisor) % 16]);
    };
    below[static_cast<std::size_t>(i)] = {level(0, 1), level(1, 1), level(2, 1), 0};
    above[static_cast<std::size_t>(i)] = {level(0, 16), level(1, 16), level(2, 16), 0};
  }
  std::vector<dibkit::Bgra> result;
  for (int ad = 0; ad < 256; ++ad) {
    for (dibkit::Bgra& pixel : below) pixel.alpha = byteOf(ad);
    for (int as = 0; as < 256; ++as) {
      for (dibkit::Bgra& pixel : above) pixel.alpha = byteOf(as);
      result = below;
      dibkit::overRow(result.data(), above.data(), count, {});
      for (std::size_t i = 0; i < count; ++i) {
        dibkit::Bgra expected = below[i];
        test::combine(reinterpret_cast<BYTE*>(&expected), reinterpret_cast<BYTE*>(&above[i]), 0);
        if (result[i] != expected) FAIL() << ad << " " << as << " " << i;
        if (i < 2 && dibkit::over(below[i], above[i]) != expected) FAIL() << ad << " " << as << " " << i;
      }
    }
  }
}

TEST(OverRow, DividesExactlyByMultiplying) {
  // What the row kernel does in place of a division, for every sum and every opacity.
  for (int alpha = 1; alpha < 256; ++alpha) {
    const float reciprocal = 1.0F / static_cast<float>(alpha);
    for (int sum = 0; sum <= 65025; ++sum) {
      if (static_cast<int>((static_cast<float>(sum) + 0.5F) * reciprocal) != sum / alpha) {
        FAIL() << sum << " / " << alpha;
      }
    }
  }
}

}  // namespace
