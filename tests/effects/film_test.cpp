#include <cmath>
#include <numbers>

#include "effects/stage.h"

namespace {

using namespace test;

TEST(Film, RepeatsTheLineAtTheFront) {
  for (const auto& [w, h] : {std::pair{1, 1}, {7, 5}, {33, 16}}) {
    const OwnedDib picture = numberedPicture(w, h);
    for (const long style : {0L, 1L}) {
      for (const int percent : {1, 10, 50, 99, 100}) {
        const Stage stage = render(8, picture, style, percent);
        ASSERT_EQ(stage.result, 1);
        EXPECT_EQ(stage.rect, (RECT{0, 0, w, h}));
        const int front = (style == 0 ? h : w) * percent / 100;
        for (int y = 0; y < h; ++y) {
          for (int x = 0; x < w; ++x) {
            const DWORD expected =
                style == 0 ? pixel(picture, x, std::min(y, front)) : pixel(picture, std::min(x, front), y);
            ASSERT_EQ(pixel(stage.image, x, y), expected);
          }
        }
      }
    }
  }
}

TEST(Film, HasAnEndAtEitherSide) {
  const OwnedDib picture = numberedPicture(9, 8);
  for (const long amount : {0L, -1L, LONG_MIN}) EXPECT_EQ(render(8, picture, 0, amount).result, 0);
  for (const long amount : {101L, LONG_MAX})
    EXPECT_EQ(pixelsOf(render(8, picture, 1, amount).image), pixelsOf(picture));
  EXPECT_EQ(render(8, picture, 2, 50).result, 0);
  EXPECT_EQ(render(8, picture, -1, 50).result, 0);
}

/// The line of the carpet with a number, counted from the side that it starts at: its source line and its
/// light.
std::pair<int, int> carpetLine(int number, int n, int percent) {
  const int flat = n * percent / 100;
  if (number < flat) return {number, 255};
  const int roll = (n * (100 - percent) + 999) / 1000;
  const double v = (2.0 * (number - flat) + 1 - roll) / roll;
  const int line = flat + static_cast<int>(roll / 2.0 * (1 + std::numbers::pi - std::asin(v)));
  return {std::min(line, n - 1), 64 + static_cast<int>(191 * std::sqrt(1 - v * v))};
}

TEST(Carpet, UnrollsFromEachSide) {
  for (const auto& [w, h] : {std::pair{1, 1}, {7, 5}, {33, 16}, {100, 120}}) {
    const OwnedDib picture = numberedPicture(w, h);
    for (int side = 0; side < 4; ++side) {
      for (const int percent : {0, 1, 10, 50, 99, 100}) {
        SCOPED_TRACE(testing::Message() << w << 'x' << h << " side " << side << " at " << percent);
        const Stage stage = render(17, picture, side, percent);
        ASSERT_EQ(stage.result, 1);
        const bool columns = side % 2 == 0;
        const int n = columns ? w : h;
        const int shown = n * percent / 100 + (n * (100 - percent) + 999) / 1000;
        const int start = side >= 2 ? n - shown : 0;
        ASSERT_EQ(stage.rect,
                  columns ? (RECT{start, 0, start + shown, h}) : (RECT{0, start, w, start + shown}));
        for (int y = stage.rect.top; y < stage.rect.bottom; ++y) {
          for (int x = stage.rect.left; x < stage.rect.right; ++x) {
            const int along = columns ? x : y;
            const auto [line, light] = carpetLine(side >= 2 ? n - 1 - along : along, n, percent);
            const int from = side >= 2 ? n - 1 - line : line;
            const DWORD source = columns ? pixel(picture, from, y) : pixel(picture, x, from);
            DWORD expected = source & 0xFF000000;
            for (const int shift : {0, 8, 16})
              expected |= (source >> shift & 255) * static_cast<DWORD>(light) / 255 << shift;
            ASSERT_EQ(pixel(stage.image, x - stage.rect.left, y - stage.rect.top), expected);
          }
        }
      }
    }
  }
}

TEST(Carpet, RollIsATenthAndMirrored) {
  // 100 columns at 0 percent: 10 columns of roll, whose outer edge, v = 0.9, shows 5 * (1 + pi - 1.1198)
  // = 15.1 and inner edge 5 * (1 + pi + 1.1198) = 26.3.
  const OwnedDib picture = numberedPicture(100, 3);
  const Stage stage = render(17, picture, 0, 0);
  EXPECT_EQ(stage.rect, (RECT{0, 0, 10, 3}));
  // Row 0 holds the numbers 3, 6, ... in blue; light at both edges is 64 + 191 * 0.4358 = 147.
  EXPECT_EQ(pixel(stage.image, 9, 0) & 255, 16U * 3 * 147 / 255);
  EXPECT_EQ(pixel(stage.image, 0, 0) & 255, 27U * 3 * 147 / 255);
}

TEST(Carpet, StaysAtItsEnds) {
  const OwnedDib picture = numberedPicture(20, 30);
  for (const long amount : {100L, 101L, LONG_MAX})
    EXPECT_EQ(pixelsOf(render(17, picture, 2, amount).image), pixelsOf(picture));
  expectStage(render(17, picture, 1, LONG_MIN), render(17, picture, 1, 0));
  EXPECT_EQ(render(17, picture, 4, 50).result, 0);
  EXPECT_EQ(render(17, picture, -1, 50).result, 0);
}

}  // namespace
