#include "raster/flood_fill.h"

#include <gtest/gtest.h>

#include "support/bitmap_regions.h"

namespace {

TEST(FloodFill, EqualsThePlainWalkAndVisitsEveryPixelOnce) {
  test::Random random(7);
  constexpr int widths[] = {1, 20, 63, 64, 65, 127, 128, 129, 256, 257, 700};
  for (int round = 0; round < 600; ++round) {
    const int width = widths[test::below(random, 11)], height = 1 + test::below(random, 12);
    const int density = 40 + 5 * test::below(random, 13);
    const test::Bitmap open(width, height, [&](int, int) { return test::below(random, 100) < density; });
    const POINT seed{test::below(random, width), test::below(random, height)};

    test::Bitmap asked(width, height), visited(width, height);
    const auto matchPiece = [&](int y, int left, int count, BYTE* flags) {
      for (int x = left; x < left + count; ++x) {
        EXPECT_FALSE(asked.at(x, y) || visited.at(x, y));
        asked.set(x, y, true);
        *flags++ = open.at(x, y);
      }
    };
    const auto matchRow = [&](int y, BYTE* flags) { matchPiece(y, 0, width, flags); };
    const auto visit = [&](int y, int left, int right) {
      for (int x = left; x < right; ++x) {
        EXPECT_FALSE(visited.at(x, y));
        visited.set(x, y, true);
      }
    };
    if (round % 2 == 0) {
      dibkit::floodFill(width, height, seed, matchRow, visit);
    } else {
      dibkit::floodFill(width, height, seed, matchPiece, visit);
    }
    ASSERT_TRUE(visited ==
                test::reachedFrom(seed, width, height, [&](int x, int y) { return open.at(x, y); }))
        << "round " << round;
  }
}

TEST(FloodFill, AsksForNoMoreThanItNeeds) {
  // Two pixels in the middle of a wide row, right where a piece ends.
  int asked = 0;
  dibkit::floodFill(
      100000, 1, {51199, 0},
      [&](int, int x, int count, BYTE* flags) {
        asked += count;
        for (int i = 0; i < count; ++i) flags[i] = x + i == 51199 || x + i == 51200;
      },
      [](int, int left, int right) { EXPECT_EQ(left * 10 + right, 51199 * 10 + 51201); });
  EXPECT_LE(asked, 1024);
}

TEST(BitGrid, IsRefusedRatherThanTooSmall) {
  if (sizeof(std::size_t) > 4) GTEST_SKIP() << "sizes do not wrap in 64 bits";
  // 2^55 words, which 32 bits take for none.
  EXPECT_THROW(dibkit::BitGrid(INT32_MAX, 1 << 30), std::bad_alloc);
}

}  // namespace
