#include <gtest/gtest.h>

#include "random_frames.h"

namespace {

using dibkit::OwnedDib;
using dibkit::OwnedRegion;

/// The pixels of a region inside width x height, row by row; the region must have no others.
std::vector<bool> pixelsOfRegion(HRGN region, int width, int height) {
  std::vector<bool> pixels;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) pixels.push_back(PtInRegion(region, x, y) != 0);
  }
  RECT box;
  GetRgnBox(region, &box);
  EXPECT_TRUE(box.left >= 0 && box.top >= 0 && box.right <= width && box.bottom <= height);
  return pixels;
}

TEST(CalcOpacityAreaRgn, HoldsExactlyTheOpaquePixels) {
  test::Random random(57);
  for (int round = 0; round < 200; ++round) {
    const int width = 1 + test::below(random, 140);
    const int height = 1 + test::below(random, 12);
    const OwnedDib mask = test::randomMask(width, height, round % 3 * 45 + 5, random);
    const OwnedRegion region(CalcOpacityAreaRgn(mask.get()));
    std::vector<bool> expected;
    for (const DWORD bit : test::pixelsOf(mask)) expected.push_back(bit == 0);
    if (!region) {
      ASSERT_EQ(std::count(expected.begin(), expected.end(), true), 0);
      continue;
    }
    ASSERT_EQ(pixelsOfRegion(region.get(), width, height), expected) << width << "x" << height;
  }
}

TEST(CalcOpacityAreaRgn, IsNullWithoutOpaquePixels) {
  const OwnedDib mask = test::imageOf(3, 2, 1, {1, 1, 1, 1, 1, 1});
  EXPECT_EQ(CalcOpacityAreaRgn(mask.get()), nullptr);
  EXPECT_EQ(CalcOpacityAreaRgn(nullptr), nullptr);
  const OwnedDib deep = test::image(3, 2, 8);
  EXPECT_EQ(CalcOpacityAreaRgn(deep.get()), nullptr);
}

TEST(CalcOpacityAreaRgn, IsOneRectangleForAnOpaqueMask) {
  const OwnedDib mask = test::image(70, 5, 1);
  const OwnedRegion region(CalcOpacityAreaRgn(mask.get()));
  EXPECT_EQ(GetRegionData(region.get(), 0, nullptr), 32U + 16U);
}

struct Wand {
  OwnedDib frame, mask;
  POINT position, seed;
  int tolerance;
  SIZE canvas;
};

/// Red, green, blue as the wand compares them.
std::vector<int> wandColour(const Wand& wand, int x, int y) {
  const DWORD colour = test::colourAt(wand.frame.get(), x, y);
  const int blue = wand.frame->biBitCount == 16 ? static_cast<int>(test::pixel(wand.frame, x, y) & 31)
                                                : test::channel(colour, 0);
  return {test::channel(colour, 16), test::channel(colour, 8), blue};
}

std::vector<bool> plainWand(const Wand& wand) {
  const auto visible = [&](int x, int y) {
    const int fx = x - wand.position.x;
    const int fy = y - wand.position.y;
    return fx >= 0 && fy >= 0 && fx < wand.frame->biWidth && fy < wand.frame->biHeight &&
           !test::transparentAt(wand.mask.get(), fx, fy);
  };
  const auto colour = [&](int x, int y) {
    return wandColour(wand, x - wand.position.x, y - wand.position.y);
  };
  const bool opaque = visible(wand.seed.x, wand.seed.y);
  std::vector<int> low(3);
  std::vector<int> high(3);
  for (std::size_t i = 0; opaque && i < 3; ++i) {
    low[i] = std::max(colour(wand.seed.x, wand.seed.y)[i] - wand.tolerance, 0);
    high[i] = std::min(colour(wand.seed.x, wand.seed.y)[i] + wand.tolerance, 255);
  }
  std::vector<bool> visited(static_cast<std::size_t>(wand.canvas.cx * wand.canvas.cy));
  std::vector<bool> selected(visited.size());
  std::vector<POINT> work{wand.seed};
  visited[static_cast<std::size_t>(wand.seed.y * wand.canvas.cx + wand.seed.x)] = true;
  while (!work.empty()) {
    const POINT at = work.back();
    work.pop_back();
    selected[static_cast<std::size_t>(at.y * wand.canvas.cx + at.x)] = true;
    for (const POINT& next :
         {POINT{at.x, at.y + 1}, POINT{at.x + 1, at.y}, POINT{at.x, at.y - 1}, POINT{at.x - 1, at.y}}) {
      if (next.x < 0 || next.y < 0 || next.x >= wand.canvas.cx || next.y >= wand.canvas.cy) continue;
      const auto index = static_cast<std::size_t>(next.y * wand.canvas.cx + next.x);
      if (visited[index]) continue;
      visited[index] = true;
      bool qualifies = visible(next.x, next.y) == opaque;
      for (std::size_t i = 0; qualifies && opaque && i < 3; ++i) {
        const int value = colour(next.x, next.y)[i];
        qualifies = value >= low[i] && value <= high[i];
      }
      if (qualifies) work.push_back(next);
    }
  }
  return selected;
}

TEST(MagicWandRegion, EqualsThePlainWalkOnTheCanvas) {
  test::Random random(58);
  for (int round = 0; round < 600; ++round) {
    const int depth = test::allDepths[round % 6];
    const int width = 1 + test::below(random, 30);
    const int height = 1 + test::below(random, 12);
    Wand wand{round % 2 == 0 ? test::flatFrame(width, height, depth, 3, random)
                             : test::randomFrame(width, height, depth, random),
              test::maybeMask(width, height, random),
              {test::below(random, 20) - 8, test::below(random, 10) - 4},
              {},
              test::below(random, 4) * 60 - 1,
              {1 + test::below(random, 40), 1 + test::below(random, 14)}};
    wand.seed = {test::below(random, wand.canvas.cx), test::below(random, wand.canvas.cy)};
    const OwnedRegion region(MagicWandRegion(wand.frame.get(), wand.mask.get(), wand.position, wand.seed,
                                             wand.tolerance, wand.canvas));
    ASSERT_TRUE(region);
    ASSERT_EQ(pixelsOfRegion(region.get(), wand.canvas.cx, wand.canvas.cy), plainWand(wand))
        << "round " << round;
  }
}

TEST(MagicWandRegion, ToleratesEightTimesTheBlueOfSixteenBits) {
  // Blue 0 and 2 in 5 bits: shown as 0 and 16, compared as 0 and 2.
  const OwnedDib frame = test::imageOf(3, 1, 16, {0x0000, 0x0002, 0x0003});
  const OwnedRegion region(MagicWandRegion(frame.get(), nullptr, {0, 0}, {0, 0}, 2, {3, 1}));
  EXPECT_EQ(pixelsOfRegion(region.get(), 3, 1), (std::vector<bool>{true, true, false}));
  // Green is compared at full scale: 2 in 5 bits is 16.
  const OwnedDib green = test::imageOf(2, 1, 16, {0x0000, 0x0040});
  const OwnedRegion one(MagicWandRegion(green.get(), nullptr, {0, 0}, {0, 0}, 2, {2, 1}));
  EXPECT_EQ(pixelsOfRegion(one.get(), 2, 1), (std::vector<bool>{true, false}));
}

TEST(MagicWandRegion, TakesAnyToleranceAndRefusesSeedsOffTheCanvas) {
  const OwnedDib frame = test::imageOf(2, 1, 24, {0x000000, 0xFFFFFF});
  for (const auto& [tolerance, pixels] :
       {std::pair{INT32_MAX, 2}, {255, 2}, {254, 1}, {-1, 1}, {INT32_MIN, 1}}) {
    const OwnedRegion region(MagicWandRegion(frame.get(), nullptr, {0, 0}, {0, 0}, tolerance, {2, 1}));
    const std::vector<bool> selected = pixelsOfRegion(region.get(), 2, 1);
    EXPECT_EQ(std::count(selected.begin(), selected.end(), true), pixels) << tolerance;
  }
  EXPECT_EQ(MagicWandRegion(frame.get(), nullptr, {0, 0}, {2, 0}, 9, {2, 1}), nullptr);
  EXPECT_EQ(MagicWandRegion(frame.get(), nullptr, {0, 0}, {0, -1}, 9, {2, 1}), nullptr);
  EXPECT_EQ(MagicWandRegion(frame.get(), nullptr, {0, 0}, {0, 0}, 9, {0, 0}), nullptr);
  EXPECT_EQ(MagicWandRegion(nullptr, nullptr, {0, 0}, {0, 0}, 9, {2, 1}), nullptr);
  const OwnedRegion away(MagicWandRegion(frame.get(), nullptr, {INT32_MAX, INT32_MIN}, {0, 0}, 9, {2, 1}));
  EXPECT_EQ(pixelsOfRegion(away.get(), 2, 1), (std::vector<bool>{true, true}));
}

}  // namespace
