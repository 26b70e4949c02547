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
  return builder.region();
}

TEST(RegionBuilder, GivesBackEveryBitmap) {
  test::Random random(21);
  for (int round = 0; round < 1000; ++round) {
    SCOPED_TRACE(round);
    const Bitmap bitmap(1 + test::below(random, 33), 1 + test::below(random, 20), random);
    const dibkit::OwnedRegion region = build(bitmap);
    const RegionSpans spans(region.get());
    ASSERT_TRUE(spans.valid());
    Bitmap read(bitmap.width(), bitmap.height());
    for (const RECT& rect : spans.rectangles()) {
      for (int y = rect.top; y < rect.bottom; ++y) {
        for (int x = rect.left; x < rect.right; ++x) {
          EXPECT_FALSE(read.at(x, y)) << "rectangles overlap";
          read.set(x, y, true);
        }
      }
    }
    EXPECT_EQ(read, bitmap);
    EXPECT_TRUE(EqualRgn(region.get(), bitmap.region().get()));
  }
}

TEST(RegionSpans, SplitsARowWithoutGaps) {
  test::Random random(22);
  for (int round = 0; round < 1000; ++round) {
    SCOPED_TRACE(round);
    const Bitmap bitmap(30, 8, random);
    const dibkit::OwnedRegion region = build(bitmap);
    const RegionSpans spans(region.get());
    const int y = test::below(random, 12) - 2;
    const int left = test::below(random, 36) - 3;
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

TEST(RegionBuilder, KeepsAreasSmall) {
  RegionBuilder builder(20, 60);
  EXPECT_TRUE(builder.empty());
  for (int y = 49; y >= 0; --y) {
    builder.add(y, 4, 9);
    builder.add(y, 2, 5);  // overlaps the one before
    builder.add(y, 9, 9);
    builder.add(y, 12, 14);
  }
  builder.add(50, 2, 9);
  EXPECT_FALSE(builder.empty());
  const dibkit::OwnedRegion region = builder.region();
  const RegionSpans read(region.get());
  ASSERT_EQ(read.rectangles().size(), 3u);
  EXPECT_EQ(read.rectangles()[0].bottom, 50);
  EXPECT_EQ(read.box().right, 14);
  EXPECT_EQ(read.box().bottom, 51);
  EXPECT_EQ(read.row(49).size(), 2u);
  EXPECT_EQ(read.row(50).size(), 1u);
  EXPECT_TRUE(read.row(51).empty());
  EXPECT_TRUE(read.row(-1).empty());
}

TEST(RegionBuilder, JoinsPiecesInsideTheBoxInAnyOrder) {
  test::Random random(24);
  for (int round = 0; round < 300; ++round) {
    RegionBuilder builder(70, 9);
    const dibkit::OwnedRegion expected(CreateRectRgn(0, 0, 0, 0)), box(CreateRectRgn(0, 0, 70, 9));
    for (int i = 0; i < 6; ++i) {
      const int dx = test::below(random, 100) - 20, dy = test::below(random, 16) - 4;
      const RECT rect{dx, dy, dx + test::below(random, 40), dy + test::below(random, 5)};
      const dibkit::OwnedRegion piece(build(Bitmap(25, 6, random))),
          single(CreateRectRgn(rect.left, rect.top, rect.right, rect.bottom));
      builder.add(piece.get(), dx, dy);
      builder.add(rect);
      OffsetRgn(piece.get(), dx, dy);
      CombineRgn(expected.get(), expected.get(), piece.get(), RGN_OR);
      CombineRgn(expected.get(), expected.get(), single.get(), RGN_OR);
    }
    CombineRgn(expected.get(), expected.get(), box.get(), RGN_AND);
    EXPECT_TRUE(EqualRgn(builder.region().get(), expected.get())) << round;
  }
}

// Wine leaves some rectangles of such regions unset.
TEST(RegionSpans, OfNarrowEllipsesLieInTheBox) {
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

TEST(RegionSpans, TellNothingFromAnEmptyRegion) {
  EXPECT_FALSE(RegionSpans(nullptr).valid());
  EXPECT_TRUE(RegionSpans(nullptr).row(0).empty());
  const dibkit::OwnedRegion region = RegionBuilder(9, 9).region();
  ASSERT_NE(region.get(), nullptr);
  EXPECT_TRUE(RegionSpans(region.get()).valid());
  EXPECT_EQ(RegionSpans(region.get()).box().right, 0);
}

}  // namespace
