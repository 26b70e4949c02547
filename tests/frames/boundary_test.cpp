#include <gtest/gtest.h>

#include "random_frames.h"

namespace {

using dibkit::OwnedDib;

struct Margins {
  int left = -1, top = -1, right = -1, bottom = -1;
  bool operator==(const Margins&) const = default;
};

Margins measured(const OwnedDib& mask) {
  Margins margins;
  CaclOpaqueBoundary(mask.get(), &margins.left, &margins.top, &margins.right, &margins.bottom);
  return margins;
}

Margins plainMargins(const OwnedDib& mask) {
  const int width = mask->biWidth;
  const int height = mask->biHeight;
  const auto rowClear = [&](int y, int from, int end) {
    for (int x = from; x < end; ++x) {
      if (test::pixel(mask, x, y) == 0) return false;
    }
    return true;
  };
  const auto columnClear = [&](int x, int from) {
    for (int y = from; y < height; ++y) {
      if (test::pixel(mask, x, y) == 0) return false;
    }
    return true;
  };
  Margins margins{0, 0, 0, 0};
  while (margins.top < height && rowClear(margins.top, 0, width)) ++margins.top;
  if (margins.top == height) return {width, height, width, height};
  while (columnClear(margins.left, margins.top)) ++margins.left;
  while (columnClear(width - 1 - margins.right, margins.top)) ++margins.right;
  while (rowClear(height - 1 - margins.bottom, margins.left, width - margins.right)) ++margins.bottom;
  return margins;
}

TEST(CaclOpaqueBoundary, EqualsCountingLines) {
  test::Random random(59);
  for (int round = 0; round < 300; ++round) {
    const int width = 1 + test::below(random, 140);
    const int height = 1 + test::below(random, 10);
    const OwnedDib mask = test::randomMask(width, height, 100, random);
    for (int i = test::below(random, 5); i > 0; --i) {
      test::setPixel(mask, test::below(random, width), test::below(random, height), 0);
    }
    ASSERT_EQ(measured(mask), plainMargins(mask)) << width << "x" << height;
  }
}

TEST(CaclOpaqueBoundary, GivesWholeSizesForATransparentMaskAndLeavesTheRestAlone) {
  const OwnedDib mask = test::imageOf(3, 2, 1, {1, 1, 1, 1, 1, 1});
  EXPECT_EQ(measured(mask), (Margins{3, 2, 3, 2}));
  EXPECT_EQ(measured(test::image(3, 0, 1)), (Margins{3, 0, 3, 0}));
  EXPECT_EQ(measured(nullptr), Margins());
  EXPECT_EQ(measured(test::image(3, 2, 8)), Margins());
}

}  // namespace
