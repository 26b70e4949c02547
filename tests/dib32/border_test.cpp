#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "support/images.h"

namespace {

using dibkit::OwnedDib;
using Pixels = std::vector<DWORD>;

using Margins = std::array<int, 4>;  // left, top, right, bottom
constexpr int untouched = -77;

Margins marginsOf(const OwnedDib& image) {
  Margins m{untouched, untouched, untouched, untouched};
  CDIB32::CheckBlankBorder(image.get(), &m[0], &m[1], &m[2], &m[3]);
  return m;
}

TEST(CheckBlankBorder, MeasuresUpToTheVisiblePixels) {
  test::Random random(31);
  for (int round = 0; round < 500; ++round) {
    const int width = 1 + test::below(random, round % 10 == 0 ? 200 : 12),
              height = 1 + test::below(random, 12);
    // Colour without alpha everywhere, a few visible pixels. Without any only the top margin is written.
    const OwnedDib image(CDIB32::CreateSimple32BitsDIB(width, height, RGB(255, 255, 255), 0));
    Margins expected{untouched, height, untouched, untouched};
    for (int i = test::below(random, 4); i > 0; --i) {
      const int x = test::below(random, width), y = test::below(random, height);
      test::setPixel(image, x, y, 0x01000000);
      if (expected[1] == height) expected = {width, height, width, height};
      expected = {std::min(expected[0], x), std::min(expected[1], y), std::min(expected[2], width - 1 - x),
                  std::min(expected[3], height - 1 - y)};
    }
    ASSERT_EQ(marginsOf(image), expected) << width << " x " << height << ", round " << round;
  }
  EXPECT_EQ(marginsOf(test::image(0, INT32_MAX, 32)), (Margins{untouched, INT32_MAX, untouched, untouched}));
}

TEST(Trim32BitsDIB, CutsMarginsOff) {
  const OwnedDib image = test::imageOf(3, 3, 32, {1, 2, 3, 4, 5, 0x80000006, 7, 8, 9});
  const auto trimmed = [&](int left, int top, int right, int bottom) {
    return OwnedDib(CDIB32::Trim32BitsDIB(image.get(), left, top, right, bottom));
  };
  EXPECT_EQ(test::bytesOf(trimmed(0, 0, 0, 0)), test::bytesOf(image));
  EXPECT_EQ(test::pixelsOf(trimmed(1, 1, 0, 1)), (Pixels{5, 0x80000006}));
  EXPECT_EQ(test::pixelsOf(trimmed(0, 2, 2, 0)), Pixels{7});
  EXPECT_EQ(trimmed(2, 0, 1, 0)->biWidth, 0);
  EXPECT_EQ(trimmed(2, 0, 2, 0), nullptr);
  EXPECT_EQ(trimmed(0, 0, 0, 4), nullptr);
}

}  // namespace
