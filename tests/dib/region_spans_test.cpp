#include "dib/region_spans.h"

#include <gtest/gtest.h>

#include "support/bitmap_regions.h"

namespace {

using dibkit::RegionSpans;
using dibkit::SpanCollector;
using test::Bitmap;

/// The region of a bitmap, in the library's own way.
dibkit::OwnedRegion collect(const Bitmap& bitmap) {
  SpanCollector spans;
  bitmap.forEachRun([&](int y, int left, int right) { spans.add(y, left, right); });
  return spans.region();
}

TEST(SpanCollector, GivesBackEveryBitmap) {
  test::Random random(21);
  for (int round = 0; round < 1000; ++round) {
    SCOPED_TRACE(round);
    const Bitmap bitmap(1 + test::below(random, 33), 1 + test::below(random, 20), random);
    const dibkit::OwnedRegion region = collect(bitmap);
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
    const dibkit::OwnedRegion region = collect(bitmap);
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

TEST(SpanCollector, KeepsAreasSmall) {
  SpanCollector spans;
  for (int y = 0; y < 50; ++y) {
    spans.add(y, 2, 4);
    spans.add(y, 4, 9);  // touches the one before
    spans.add(y, 9, 9);
    spans.add(y, 12, 14);
  }
  spans.add(50, 2, 9);
  const dibkit::OwnedRegion region = spans.region();
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
  SpanCollector none;
  EXPECT_TRUE(none.empty());
  const dibkit::OwnedRegion region = none.region();
  ASSERT_NE(region.get(), nullptr);
  EXPECT_TRUE(RegionSpans(region.get()).valid());
  EXPECT_EQ(RegionSpans(region.get()).box().right, 0);
}

}  // namespace
