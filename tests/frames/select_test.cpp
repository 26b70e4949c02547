#include <gtest/gtest.h>

#include "plain.h"

namespace {

using dibkit::OwnedDib;
using dibkit::OwnedRegion;
using test::Shot;

/// The pixels of a region, which must have none outside width x height.
test::Bitmap pixelsIn(const OwnedRegion& region, int width, int height) {
  RECT box;
  GetRgnBox(region.get(), &box);
  EXPECT_TRUE(box.left >= 0 && box.top >= 0 && box.right <= width && box.bottom <= height);
  return test::bitmapOf(region.get(), width, height);
}

TEST(CalcOpacityAreaRgn, HoldsExactlyTheOpaquePixels) {
  test::Random random(57);
  for (int round = 0; round < 200; ++round) {
    const int width = 1 + test::below(random, 140), height = 1 + test::below(random, 12);
    const OwnedDib mask = test::randomMask(width, height, round % 4 * 33, random);
    const OwnedRegion region(CalcOpacityAreaRgn(mask.get()));
    const test::Bitmap expected(width, height, [&](int x, int y) { return !test::marked(mask, x, y); });
    ASSERT_EQ(region == nullptr, expected == test::Bitmap(width, height));
    if (region) {
      ASSERT_EQ(pixelsIn(region, width, height), expected) << width << "x" << height;
    }
  }
  const OwnedRegion one(CalcOpacityAreaRgn(test::image(70, 5, 1).get()));
  EXPECT_EQ(GetRegionData(one.get(), 0, nullptr), 32U + 16U);  // a single rectangle
}

using Margins = std::array<int, 4>;  // left, top, right, bottom

Margins measured(const OwnedDib& mask) {
  Margins margins{-1, -1, -1, -1};
  CaclOpaqueBoundary(mask.get(), &margins[0], &margins[1], &margins[2], &margins[3]);
  return margins;
}

TEST(CaclOpaqueBoundary, CountsTopThenLeftThenRightThenBottom) {
  test::Random random(59);
  for (int round = 0; round < 300; ++round) {
    const int width = 1 + test::below(random, 140), height = 1 + test::below(random, 10);
    const OwnedDib mask = test::randomMask(width, height, 100, random);
    for (int i = test::below(random, 5); i > 0; --i) {
      test::setPixel(mask, test::below(random, width), test::below(random, height), 0);
    }
    const auto clear = [&](const RECT& box) {
      bool all = true;
      test::forEachPixel(box, [&](int x, int y) { all = all && test::marked(mask, x, y); });
      return all;
    };
    Margins expected{width, 0, width, height};
    auto& [left, top, right, bottom] = expected;
    while (top < height && clear({0, top, width, top + 1})) ++top;
    if (top < height) {
      left = right = bottom = 0;
      while (clear({left, top, left + 1, height})) ++left;
      while (clear({width - 1 - right, top, width - right, height})) ++right;
      while (clear({left, height - 1 - bottom, width - right, height - bottom})) ++bottom;
    }
    ASSERT_EQ(measured(mask), expected) << width << "x" << height;
  }
  EXPECT_EQ(measured(test::image(3, 0, 1)), (Margins{3, 0, 3, 0}));
}

TEST(MagicWandRegion, EqualsThePlainWalkOnTheCanvas) {
  test::Random random(58);
  for (int round = 0; round < 800; ++round) {
    const Shot frame(random);
    const int tolerance = test::below(random, 4) * 60 - 1;
    const SIZE canvas{1 + test::below(random, 40), 1 + test::below(random, 14)};
    const POINT seed{test::below(random, canvas.cx), test::below(random, canvas.cy)};
    const auto compared = [&](int x, int y) {
      // The blue of 16 bits counts as it is stored, 0 to 31.
      const DWORD colour = frame.colour(x, y);
      if (frame.dib->biBitCount != 16) return colour;
      return (colour & 0xFFFF00) | (test::pixel(frame.dib, x - frame.at.x, y - frame.at.y) & 31);
    };
    const bool opaque = frame.shows(seed.x, seed.y);
    const DWORD centre = opaque ? compared(seed.x, seed.y) : 0;
    const auto qualifies = [&](int x, int y) {
      return frame.shows(x, y) == opaque && (!opaque || test::nearby(compared(x, y), centre, tolerance));
    };
    const OwnedRegion region(
        MagicWandRegion(frame.dib.get(), frame.mask.get(), frame.at, seed, tolerance, canvas));
    ASSERT_EQ(pixelsIn(region, canvas.cx, canvas.cy),
              test::reachedFrom(seed, canvas.cx, canvas.cy, qualifies))
        << "round " << round;
  }
}

TEST(MagicWandRegion, TakesAnyTolerance) {
  const OwnedDib frame = test::imageOf(2, 1, 24, {0x000000, 0xFFFFFF});
  for (const auto& [tolerance, both] :
       {std::pair{INT32_MIN, false}, {254, false}, {255, true}, {INT32_MAX, true}}) {
    const OwnedRegion region(MagicWandRegion(frame.get(), nullptr, {0, 0}, {0, 0}, tolerance, {2, 1}));
    EXPECT_EQ(PtInRegion(region.get(), 1, 0) != FALSE, both) << tolerance;
  }
}

}  // namespace
