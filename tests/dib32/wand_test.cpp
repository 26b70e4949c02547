#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "support/bitmap_regions.h"

namespace {

using dibkit::OwnedDib;
using dibkit::OwnedRegion;
using test::below;
using test::oneOf;

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
  constexpr int widths[] = {1, 4, 7, 8, 9, 15, 33, 66, 130};
  constexpr DWORD palette[] = {0xFF505050, 0xFF505050, 0x80505152, 0x7F505050, 0x00545050, 0xFF50FF50};
  for (int round = 0; round < 500; ++round) {
    const int width = round % 50 == 0 ? 1100 : oneOf(random, widths), height = 1 + below(random, 12);
    const int colours = 1 + below(random, 6);
    const OwnedDib image =
        test::drawn(width, height, 32, [&](int, int) { return palette[below(random, colours)]; });
    const OwnedDib before = test::copyOf(image);
    const POINT clicked{below(random, width + 4) - 2, below(random, height + 4) - 2};
    const POINT seed{std::clamp<LONG>(clicked.x, 0, width - 1), std::clamp<LONG>(clicked.y, 0, height - 1)};
    // A negative one has no colours, not even the seed's.
    const int tolerance = oneOf(random, {0, 1, 3, 255, INT32_MAX, -1, INT32_MIN});
    const auto enter = [&](int x, int y) {
      return similar(test::pixel(image, x, y), test::pixel(image, seed.x, seed.y), tolerance);
    };
    const OwnedRegion area(CDIB32::MagicWandRegion(image.get(), clicked, tolerance));
    const OwnedRegion all(CDIB32::MagicWandRegion2(image.get(), clicked, tolerance));
    const OwnedRegion plainArea = test::reachedFrom(seed, width, height, enter).region();
    const OwnedRegion plainAll = test::Bitmap(width, height, enter).region();
    ASSERT_TRUE(area && EqualRgn(area.get(), plainArea.get())) << round;
    ASSERT_TRUE(tolerance < 0 ? !all : all && EqualRgn(all.get(), plainAll.get())) << round;
    ASSERT_EQ(test::bytesOf(image), test::bytesOf(before));
  }
}

}  // namespace
