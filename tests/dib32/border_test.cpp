#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "support/images.h"

namespace {

using dibkit::OwnedDib;
using test::pixelsOf;
using Pixels = std::vector<DWORD>;

using Margins = std::array<int, 4>;  // left, top, right, bottom
constexpr int untouched = -77;

Margins marginsOf(BITMAPINFOHEADER* image) {
  Margins m{untouched, untouched, untouched, untouched};
  CDIB32::CheckBlankBorder(image, &m[0], &m[1], &m[2], &m[3]);
  return m;
}

TEST(CheckBlankBorder, MeasuresUpToTheVisiblePixels) {
  test::Random random(31);
  for (int round = 0; round < 500; ++round) {
    const int width = 1 + test::below(random, round % 10 == 0 ? 200 : 12);
    const int height = 1 + test::below(random, 12);
    // Colour without opacity everywhere, a few visible pixels.
    const OwnedDib image(CDIB32::CreateSimple32BitsDIB(width, height, RGB(255, 255, 255), 0));
    Margins expected{untouched, height, untouched, untouched};
    for (int i = test::below(random, 4); i > 0; --i) {
      const int x = test::below(random, width), y = test::below(random, height);
      test::setPixel(image, x, y, 0x01000000);
      if (expected[1] == height) expected = {width, height, width, height};
      expected = {std::min(expected[0], x), std::min(expected[1], y), std::min(expected[2], width - 1 - x),
                  std::min(expected[3], height - 1 - y)};
    }
    ASSERT_EQ(marginsOf(image.get()), expected) << width << " x " << height << ", round " << round;
  }
}

TEST(CheckBlankBorder, WritesTheTopAloneWithoutPixels) {
  EXPECT_EQ(marginsOf(test::image(5, 0, 32).get()), (Margins{untouched, 0, untouched, untouched}));
  EXPECT_EQ(marginsOf(test::image(0, INT32_MAX, 32).get()),
            (Margins{untouched, INT32_MAX, untouched, untouched}));
}

TEST(Trim32BitsDIB, CutsMarginsOff) {
  const OwnedDib image = test::imageOf(3, 3, 32, {1, 2, 3, 4, 5, 0x80000006, 7, 8, 9});
  const auto trimmed = [&](int left, int top, int right, int bottom) {
    return OwnedDib(CDIB32::Trim32BitsDIB(image.get(), left, top, right, bottom));
  };
  EXPECT_EQ(test::bytesOf(trimmed(0, 0, 0, 0)), test::bytesOf(image));
  EXPECT_EQ(pixelsOf(trimmed(1, 1, 0, 1)), (Pixels{5, 0x80000006}));
  EXPECT_EQ(pixelsOf(trimmed(0, 2, 2, 0)), Pixels{7});
  EXPECT_EQ(trimmed(2, 0, 1, 0)->biWidth, 0);
  EXPECT_EQ(trimmed(2, 0, 2, 0), nullptr);
  EXPECT_EQ(trimmed(0, 0, 0, 4), nullptr);
}

TEST(CreateIconMaskFromAlphaChannel, MarksTransparentPixels) {
  test::Random random(32);
  for (const int width : {1, 4, 7, 8, 9, 15, 33, 64}) {
    const OwnedDib image = test::randomImage(width, 3, 32, random);
    test::setPixel(image, 0, 0, 0x01000000);
    const OwnedDib mask(CDIB32::CreateIconMaskFromAlphaChannel(image.get()));
    ASSERT_TRUE(mask);
    // The same bits in an image whose other bytes are all 0: palette, padding.
    const OwnedDib expected = test::image(width, 3, 1);
    for (int y = 0; y < 3; ++y) {
      for (int x = 0; x < width; ++x) test::setPixel(expected, x, y, test::pixel(image, x, y) >> 24 == 0);
    }
    EXPECT_EQ(test::bytesOf(mask), test::bytesOf(expected)) << width;
  }
}

TEST(CreateParaShadowDIB, KeepsTheOpacity) {
  const OwnedDib image = test::imageOf(2, 2, 32, {0x00112233, 0x01445566, 0xFF778899, 0x80AABBCC});
  const OwnedDib shadow(CDIB32::CreateParaShadowDIB(image.get(), 0xFF00F010));
  EXPECT_EQ(pixelsOf(shadow), (Pixels{0x0010F000, 0x0110F000, 0xFF10F000, 0x8010F000}));
}

}  // namespace
