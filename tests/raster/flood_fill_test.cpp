#include "raster/flood_fill.h"

#include <gtest/gtest.h>

#include "support/bitmap_regions.h"

namespace {

TEST(FloodFill, EqualsThePlainWalkAndVisitsEveryPixelOnce) {
  test::Random random(7);
  constexpr int widths[] = {1, 20, 63, 64, 65, 127, 128, 129, 256, 257, 700};
  for (int round = 0; round < 600; ++round) {
    const int width = test::oneOf(random, widths), height = 1 + test::below(random, 12);
    const int density = 40 + 5 * test::below(random, 13);
    const test::Bitmap open(width, height, [&](int, int) { return test::below(random, 100) < density; });
    const POINT seed{test::below(random, width), test::below(random, height)};
    test::Bitmap examined(width, height), visited(width, height);
    const auto matchPiece = [&](int y, int left, int count, BYTE* flags) {
      for (int x = left; x < left + count; ++x) {
        EXPECT_FALSE(examined.at(x, y) || visited.at(x, y));
        examined.set(x, y, true);
        *flags++ = open.at(x, y);
      }
    };
    const auto visit = [&](int y, int left, int right) {
      for (int x = left; x < right; ++x) {
        EXPECT_FALSE(visited.at(x, y));
        visited.set(x, y, true);
      }
    };
    dibkit::floodFill(width, height, seed, matchPiece, visit);
    const auto enter = [&](int x, int y) { return open.at(x, y); };
    ASSERT_TRUE(visited == test::reachedFrom(seed, width, height, enter)) << "round " << round;
  }
}

TEST(FloodFill, ExaminesNoMoreThanItNeeds) {
  // Two pixels in the middle of a wide row, where a piece ends.
  int examined = 0;
  dibkit::floodFill(
      100000, 1, {51199, 0},
      [&](int, int x, int count, BYTE* flags) {
        examined += count;
        for (int i = 0; i < count; ++i) flags[i] = x + i == 51199 || x + i == 51200;
      },
      [](int, int left, int right) { EXPECT_EQ(std::pair(left, right), std::pair(51199, 51201)); });
  EXPECT_LE(examined, 1024);
}

TEST(BitGrid, IsRefusedRatherThanTooSmall) {
  if (sizeof(std::size_t) > 4) GTEST_SKIP() << "sizes do not wrap in 64 bits";
  // 2^55 words, which 32 bits take for none.
  EXPECT_THROW(dibkit::BitGrid(INT32_MAX, 1 << 30), std::bad_alloc);
}

}  // namespace
