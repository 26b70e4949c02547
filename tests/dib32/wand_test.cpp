#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "support/bitmap_regions.h"

namespace {

using dibkit::OwnedDib;
using dibkit::OwnedRegion;
using test::below;
using test::pixel;

/// Near colours of one class: opaque from 128 on.
bool similar(DWORD value, DWORD seed, int tolerance) {
  bool all = (value >> 24 >= 128) == (seed >> 24 >= 128);
  for (const int shift : {0, 8, 16}) {
    const int difference = static_cast<int>(value >> shift & 255) - static_cast<int>(seed >> shift & 255);
    all = all && std::abs(difference) <= tolerance;
  }
  return all;
}

TEST(MagicWands, SelectWhatALookAtEachPixelSelects) {
  test::Random random(31);
  constexpr int widths[] = {1, 4, 7, 8, 9, 15, 33, 66, 130, 1100};
  constexpr int tolerances[] = {0, 1, 3, 255, INT32_MAX};
  for (int round = 0; round < 500; ++round) {
    const int width = widths[below(random, round % 10 == 0 ? 10 : 9)], height = 1 + below(random, 12);
    const OwnedDib image = test::image(width, height, 32);
    const DWORD palette[] = {0xFF505050, 0xFF505050, 0x80505152, 0x7F505050, 0x00545050, 0xFF50FF50};
    const int colours = 1 + below(random, 6);
    for (int i = 0; i < width * height; ++i)
      test::setPixel(image, i % width, i / width, palette[below(random, colours)]);
    const std::vector<BYTE> before = test::bytesOf(image);
    const POINT clicked{below(random, width + 4) - 2, below(random, height + 4) - 2};
    const POINT seed{std::clamp<LONG>(clicked.x, 0, width - 1), std::clamp<LONG>(clicked.y, 0, height - 1)};
    const int tolerance = tolerances[below(random, 5)];
    const auto enter = [&](int x, int y) {
      return similar(pixel(image, x, y), pixel(image, seed.x, seed.y), tolerance);
    };
    const OwnedRegion area(CDIB32::MagicWandRegion(image.get(), clicked, tolerance));
    const OwnedRegion all(CDIB32::MagicWandRegion2(image.get(), clicked, tolerance));
    const OwnedRegion plainArea = test::reachedFrom(seed, width, height, enter).region();
    const OwnedRegion plainAll = test::Bitmap(width, height, enter).region();
    ASSERT_TRUE(area && EqualRgn(area.get(), plainArea.get())) << round;
    ASSERT_TRUE(all && EqualRgn(all.get(), plainAll.get())) << round;
    ASSERT_EQ(test::bytesOf(image), before);
  }
}

TEST(MagicWands, HandleANegativeTolerance) {
  const OwnedDib image(CDIB32::CreateSimple32BitsDIB(3, 3, RGB(1, 2, 3), 255));
  const OwnedRegion seed(CDIB32::MagicWandRegion(image.get(), {1, 1}, -1));
  const OwnedRegion middle(CreateRectRgn(1, 1, 2, 2));
  EXPECT_TRUE(EqualRgn(seed.get(), middle.get()));
  EXPECT_EQ(CDIB32::MagicWandRegion2(image.get(), {1, 1}, -1), nullptr);
  EXPECT_EQ(CDIB32::MagicWandRegion2(image.get(), {1, 1}, INT32_MIN), nullptr);
}

}  // namespace
