#include "raster/region_builder.h"

#include <gtest/gtest.h>

#include "raster/region_spans.h"
#include "support/bitmap_regions.h"

namespace {

using dibkit::RegionBuilder;
using dibkit::RegionSpans;
using test::Bitmap;

/// The region of a bitmap, in the library's own way.
dibkit::OwnedRegion build(const Bitmap& bitmap) {
  RegionBuilder builder(bitmap.width(), bitmap.height());
  bitmap.forEachRun([&](int y, int left, int right) { builder.add(y, left, right); });
  EXPECT_EQ(builder.empty(), bitmap == Bitmap(bitmap.width(), bitmap.height()));
  return builder.region();
}

TEST(RegionBuilder, GivesEveryBitmapAsDisjointSpans) {
  test::Random random(21);
  for (int round = 0; round < 1000; ++round) {
    SCOPED_TRACE(round);
    const Bitmap bitmap(1 + test::below(random, 33), 1 + test::below(random, 20), random);
    const dibkit::OwnedRegion region = build(bitmap);
    EXPECT_TRUE(EqualRgn(region.get(), bitmap.region().get()));
    const RegionSpans spans(region.get());
    ASSERT_TRUE(spans.valid());
    Bitmap read(bitmap.width(), bitmap.height());
    RECT box{};
    for (const RECT& rect : spans.rectangles()) {
      UnionRect(&box, &box, &rect);
      test::forEachPixel(rect, [&](int x, int y) {
        EXPECT_FALSE(read.at(x, y)) << "rectangles overlap";
        read.set(x, y, true);
      });
    }
    EXPECT_EQ(read, bitmap);
    EXPECT_TRUE(EqualRect(&box, &spans.box()));

    // A row, in parts without gaps between them.
    const int y = test::below(random, bitmap.height() + 4) - 2, left = test::below(random, 36) - 3;
    const int right = left + test::below(random, 36);
    int next = left;
    const auto take = [&](bool inside) {
      return [&, inside](int begin, int end) {
        EXPECT_EQ(begin, next);
        EXPECT_LT(begin, end);
        for (int x = begin; x < end; ++x) EXPECT_EQ(bitmap.at(x, y), inside) << x << ", " << y;
        next = end;
      };
    };
    spans.splitRow(y, left, right, take(true), take(false));
    EXPECT_EQ(next, right);
  }
}

TEST(RegionBuilder, MakesOneRectangleOfEqualRows) {
  RegionBuilder builder(20, 60);
  for (int y = 49; y >= 0; --y) {
    builder.add(y, 4, 9);
    builder.add(y, 2, 5);  // overlaps the one before
    builder.add(y, 9, 9);
    builder.add(y, 12, 14);
  }
  builder.add(50, 2, 9);
  const dibkit::OwnedRegion region = builder.region();
  EXPECT_EQ(RegionSpans(region.get()).rectangles().size(), 3u);
}

TEST(RegionBuilder, JoinsPiecesInsideTheBoxInAnyOrder) {
  test::Random random(24);
  for (int round = 0; round < 300; ++round) {
    RegionBuilder builder(70, 9);
    Bitmap expected(70, 9);
    const auto include = [&](int x, int y) {
      if (x >= 0 && x < 70 && y >= 0 && y < 9) expected.set(x, y, true);
    };
    for (int i = 0; i < 6; ++i) {
      const int dx = test::below(random, 100) - 20, dy = test::below(random, 16) - 4;
      const RECT rect{dx, dy, dx + test::below(random, 40), dy + test::below(random, 5)};
      const Bitmap piece(25, 6, random);
      builder.add(build(piece).get(), dx, dy);
      builder.add(rect);
      piece.forEachRun([&](int y, int left, int right) {
        for (int x = left; x < right; ++x) include(x + dx, y + dy);
      });
      test::forEachPixel(rect, include);
    }
    EXPECT_TRUE(EqualRgn(builder.region().get(), expected.region().get())) << round;
  }
}

TEST(RegionSpans, OfNarrowEllipsesAreInTheBox) {  // where Wine leaves some rectangles unset
  for (int width = 1; width <= 8; ++width) {
    for (int height = 2; height <= 100; ++height) {
      const dibkit::OwnedRegion region(CreateEllipticRgn(0, 0, width, height));
      const RegionSpans spans(region.get());
      for (const RECT& rect : spans.rectangles()) {
        EXPECT_TRUE(0 <= rect.left && rect.left < rect.right && rect.right <= width);
        EXPECT_TRUE(0 <= rect.top && rect.top < rect.bottom && rect.bottom <= height);
      }
    }
  }
}

TEST(RegionSpans, TellNoRegionFromAnEmptyOne) {
  EXPECT_FALSE(RegionSpans(nullptr).valid());
  EXPECT_TRUE(RegionSpans(nullptr).row(0).empty());
  const dibkit::OwnedRegion region = RegionBuilder(9, 9).region();
  EXPECT_TRUE(RegionSpans(region.get()).valid());
  EXPECT_EQ(RegionSpans(region.get()).box().right, 0);
}

}  // namespace
