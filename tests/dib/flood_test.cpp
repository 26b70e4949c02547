#include "dib/flood.h"

#include <array>

#include <gtest/gtest.h>

#include "support/images.h"

namespace {

/// One pixel at a time, with a stack: what the span walk has to equal.
std::vector<bool> plainWalk(int width, int height, POINT seed, const std::vector<bool>& open) {
  std::vector<bool> reached(open.size());
  std::vector<POINT> work{seed};
  reached[static_cast<std::size_t>(seed.y * width + seed.x)] = true;
  while (!work.empty()) {
    const POINT at = work.back();
    work.pop_back();
    constexpr std::array<POINT, 4> steps{{{0, 1}, {1, 0}, {0, -1}, {-1, 0}}};
    for (const POINT& step : steps) {
      const POINT next{at.x + step.x, at.y + step.y};
      if (next.x < 0 || next.x >= width || next.y < 0 || next.y >= height) continue;
      const auto index = static_cast<std::size_t>(next.y * width + next.x);
      if (reached[index] || !open[index]) continue;
      reached[index] = true;
      work.push_back(next);
    }
  }
  return reached;
}

TEST(WalkConnected, EqualsThePlainWalkAndVisitsEveryPixelOnce) {
  test::Random random(7);
  for (int round = 0; round < 400; ++round) {
    const int width = 1 + test::below(random, round % 8 < 2 ? 800 : 20);
    const int height = 1 + test::below(random, 20);
    const int density = 40 + test::below(random, 61);
    std::vector<bool> open(static_cast<std::size_t>(width * height));
    for (std::size_t i = 0; i < open.size(); ++i) open[i] = test::below(random, 100) < density;
    const POINT seed{test::below(random, width), test::below(random, height)};

    std::vector<int> visits(open.size());
    std::vector<int> asked(open.size());
    const auto matchPiece = [&](int y, int left, int count, BYTE* flags) {
      for (int x = 0; x < count; ++x) {
        const auto at = static_cast<std::size_t>(y * width + left + x);
        ++asked[at];
        EXPECT_EQ(visits[at], 0);
        flags[x] = open[at];
      }
    };
    const auto visit = [&](int y, int left, int right) {
      for (int x = left; x < right; ++x) ++visits[static_cast<std::size_t>(y * width + x)];
    };
    if (round % 2 == 0) {
      dibkit::walkConnected(
          width, height, seed, [&](int y, BYTE* flags) { matchPiece(y, 0, width, flags); }, visit);
    } else {
      dibkit::walkConnected(width, height, seed, matchPiece, visit);
    }
    const std::vector<bool> expected = plainWalk(width, height, seed, open);
    for (std::size_t i = 0; i < open.size(); ++i)
      ASSERT_EQ(visits[i], expected[i] ? 1 : 0) << "round " << round;
    for (const int count : asked) ASSERT_LE(count, 1);
  }
}

TEST(WalkConnected, FillsWholeRowsOfAnyWidthAndAsksForNoMoreThanItNeeds) {
  for (const int width : {1, 63, 64, 65, 127, 128, 129, 255, 256, 257, 1000}) {
    int pixels = 0;
    const auto all = [](int, int, int count, BYTE* flags) { std::fill_n(flags, count, BYTE{1}); };
    const auto visit = [&](int, int left, int right) { pixels += right - left; };
    dibkit::walkConnected(
        width, 3, {width - 1, 1}, [&](int, BYTE* flags) { std::fill_n(flags, width, BYTE{1}); }, visit);
    EXPECT_EQ(pixels, 3 * width);
    dibkit::walkConnected(width, 3, {0, 1}, all, visit);
    EXPECT_EQ(pixels, 6 * width);
  }
  // Two pixels in the middle of a wide row, right where a piece ends.
  int asked = 0;
  dibkit::walkConnected(
      100000, 1, {51199, 0},
      [&](int, int x, int count, BYTE* flags) {
        asked += count;
        for (int i = 0; i < count; ++i) flags[i] = x + i == 51199 || x + i == 51200;
      },
      [](int, int left, int right) { EXPECT_EQ(left * 10 + right, 51199 * 10 + 51201); });
  EXPECT_LE(asked, 1024);
}

TEST(ForEachRun, FindsRunsAcrossWords) {
  std::array<BYTE, 192> flags{};
  for (const int x : {0, 5, 6, 63, 64, 65, 127, 128, 189}) flags[static_cast<std::size_t>(x)] = 1;
  std::array<std::uint64_t, 3> bits{};
  dibkit::packFlags(flags.data(), 3, bits.data());
  std::vector<std::pair<int, int>> runs;
  dibkit::forEachRun(bits.data(), 190, [&](int left, int right) { runs.emplace_back(left, right); });
  EXPECT_EQ(runs, (std::vector<std::pair<int, int>>{{0, 1}, {5, 7}, {63, 66}, {127, 129}, {189, 190}}));
}

}  // namespace
