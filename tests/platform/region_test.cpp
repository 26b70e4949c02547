#include <cstdint>

#include <gtest/gtest.h>

#include "platform/recorded.h"
#include "support/bitmap_regions.h"

namespace {

using test::below;
using test::Bitmap;
using test::bitmapOf;
using test::OwnedRegion;

/// Bands as a canonical list has them: sorted, apart, and never equal where they touch.
bool isCanonical(const test::Rows& rows) {
  for (std::size_t band = 0; band < rows.size(); ++band) {
    const std::vector<std::int64_t>& row = rows[band];
    if (row[0] >= row[1]) return false;
    for (std::size_t i = 3; i < row.size(); ++i) {
      if (row[i - 1] >= row[i]) return false;
    }
    if (band == 0) continue;
    const std::vector<std::int64_t>& above = rows[band - 1];
    if (above[1] > row[0]) return false;
    if (above[1] == row[0] && std::equal(above.begin() + 2, above.end(), row.begin() + 2, row.end()))
      return false;
  }
  return true;
}

TEST(CombineRgn, EqualsTheSetOperationOnPixels) {
  struct Mode {
    int mode;
    bool (*keep)(bool, bool);
  };
  const Mode modes[] = {{RGN_AND, [](bool a, bool b) { return a && b; }},
                        {RGN_OR, [](bool a, bool b) { return a || b; }},
                        {RGN_XOR, [](bool a, bool b) { return a != b; }},
                        {RGN_DIFF, [](bool a, bool b) { return a && !b; }},
                        {RGN_COPY, [](bool a, bool) { return a; }}};
  test::Random random(11);
  for (int round = 0; round < 1000; ++round) {
    SCOPED_TRACE(round);
    const int width = 1 + below(random, 24), height = 1 + below(random, 16);
    const Bitmap a(width, height, random), b(width, height, random);
    const OwnedRegion first = a.region(), second = b.region();
    const Mode& mode = modes[round % 5];
    const OwnedRegion other(CreateRectRgn(0, 0, 1, 1));
    const HRGN destination = round % 3 == 0 ? first.get() : round % 3 == 1 ? second.get() : other.get();
    const int code = CombineRgn(destination, first.get(), second.get(), mode.mode);
    const Bitmap expected(width, height, [&](int x, int y) { return mode.keep(a.at(x, y), b.at(x, y)); });
    EXPECT_EQ(bitmapOf(destination, width, height), expected);
    EXPECT_TRUE(EqualRgn(destination, expected.region().get()));
    const test::Rows rows = test::rowsOf(destination);
    EXPECT_TRUE(isCanonical(rows));
    EXPECT_EQ(code, rows.empty()                              ? NULLREGION
                    : rows.size() == 1 && rows[0].size() == 4 ? SIMPLEREGION
                                                              : COMPLEXREGION);
    RECT box;
    EXPECT_EQ(GetRgnBox(destination, &box), code);
    if (!rows.empty()) {
      EXPECT_EQ(box.top, rows.front()[0]);
      EXPECT_EQ(box.bottom, rows.back()[1]);
    }
  }
}

TEST(ExtCreateRegion, IsTheUnionOfAnyList) {
  test::Random random(12);
  for (int round = 0; round < 500; ++round) {
    SCOPED_TRACE(round);
    std::vector<RECT> list;
    for (int i = below(random, 30); i > 0; --i) {
      const int left = below(random, 20), top = below(random, 20);
      list.push_back({left, top, left - 1 + below(random, 8), top - 1 + below(random, 8)});
    }
    const Bitmap expected(30, 30, [&](int x, int y) {
      return std::any_of(list.begin(), list.end(), [&](const RECT& rect) { return PtInRect(&rect, {x, y}); });
    });
    const OwnedRegion region = Bitmap::regionOf(list);
    EXPECT_EQ(bitmapOf(region.get(), 30, 30), expected);
    EXPECT_TRUE(isCanonical(test::rowsOf(region.get())));
    EXPECT_TRUE(EqualRgn(region.get(), expected.region().get()));
  }
  const OwnedRegion touching = Bitmap::regionOf({{0, 0, 2, 2}, {2, 0, 4, 2}});
  EXPECT_EQ(test::rowsOf(touching.get()), (test::Rows{{0, 2, 0, 4}}));
}

/// A pixel is inside when an odd number of crossings lie at or left of it: the rule itself, in exact
/// fractions, for one pixel.
bool insidePolygon(const std::vector<POINT>& corners, int x, int y) {
  int crossings = 0;
  for (std::size_t i = 0; i < corners.size(); ++i) {
    POINT a = corners[i], b = corners[(i + 1) % corners.size()];
    if (a.y > b.y) std::swap(a, b);
    if (y < a.y || y >= b.y) continue;
    const std::int64_t height = b.y - a.y;
    if (a.x * height + std::int64_t{y - a.y} * (b.x - a.x) <= std::int64_t{x} * height) ++crossings;
  }
  return crossings % 2 == 1;
}

TEST(CreatePolygonRgn, EqualsTheRuleForEveryPixel) {
  test::Random random(13);
  for (int round = 0; round < 500; ++round) {
    SCOPED_TRACE(round);
    std::vector<POINT> corners(static_cast<std::size_t>(below(random, 12)));
    for (POINT& corner : corners) corner = {below(random, 26) - 2, below(random, 26) - 2};
    const OwnedRegion region(CreatePolygonRgn(corners.data(), static_cast<int>(corners.size()), ALTERNATE));
    const Bitmap expected(24, 24, [&](int x, int y) { return insidePolygon(corners, x, y); });
    EXPECT_EQ(bitmapOf(region.get(), 24, 24), expected);
    EXPECT_TRUE(isCanonical(test::rowsOf(region.get())));
  }
}

TEST(Regions, CurvedOnesStayComplexUntilPixelsArePutTogether) {
  const auto curved = [] { return OwnedRegion(CreateEllipticRgn(0, 0, 3, 3)); };  // a square of 2 pixels
  const OwnedRegion distant(CreateRectRgn(50, 50, 60, 60)), empty(CreateRectRgn(0, 0, 0, 0));
  const OwnedRegion ellipse = curved();
  EXPECT_EQ(test::joined(test::rowsOf(ellipse.get())), (test::Rows{{0, 2, 0, 2}}));
  EXPECT_EQ(OffsetRgn(ellipse.get(), 1, 1), COMPLEXREGION);
  EXPECT_EQ(CombineRgn(ellipse.get(), ellipse.get(), distant.get(), RGN_DIFF), COMPLEXREGION);
  EXPECT_EQ(CombineRgn(ellipse.get(), ellipse.get(), empty.get(), RGN_OR), COMPLEXREGION);
  EXPECT_EQ(CombineRgn(ellipse.get(), ellipse.get(), ellipse.get(), RGN_AND), SIMPLEREGION);
}

TEST(RegionData, HasTheSizesThatItSays) {
  const OwnedRegion region(CreateRectRgn(1, 2, 3, 4));
  ASSERT_EQ(GetRegionData(region.get(), 0, nullptr), 48u);
  std::vector<DWORD> block(12, 7);
  auto* data = reinterpret_cast<RGNDATA*>(block.data());
  EXPECT_EQ(GetRegionData(region.get(), 47, data), 0u);
  EXPECT_EQ(block, std::vector<DWORD>(12, 7));
  EXPECT_EQ(GetRegionData(region.get(), 48, data), 48u);
  EXPECT_EQ(block, (std::vector<DWORD>{32, 1, 1, 16, 1, 2, 3, 4, 1, 2, 3, 4}));
}

TEST(Rectangles, FollowThePlatform) {
  RECT out{9, 9, 9, 9};
  const RECT a{0, 0, 4, 4}, b{2, 1, 8, 3}, beside{4, 0, 6, 4}, reversed{4, 4, 0, 0};
  EXPECT_TRUE(IntersectRect(&out, &a, &b));
  EXPECT_EQ(out.left + 10 * out.top + 100 * out.right + 1000 * out.bottom, 2 + 10 + 400 + 3000);
  EXPECT_FALSE(IntersectRect(&out, &a, &beside));
  EXPECT_TRUE(out.right == 0 && out.bottom == 0);
  EXPECT_TRUE(IsRectEmpty(&reversed) && IsRectEmpty(nullptr));
  EXPECT_TRUE(UnionRect(&out, &a, &reversed));
  EXPECT_TRUE(EqualRect(&out, &a));
  EXPECT_TRUE(UnionRect(&out, &out, &b));
  EXPECT_TRUE(out.right == 8 && out.bottom == 4);
  EXPECT_FALSE(UnionRect(&out, &reversed, &reversed));
  EXPECT_TRUE(IsRectEmpty(&out) && out.left == 0);
  EXPECT_TRUE(SetRect(&out, 5, 6, 1, 2) && out.left == 5 && out.right == 1);
  EXPECT_TRUE(InflateRect(&out, 1, INT32_MAX));
  EXPECT_EQ(out.bottom, INT32_MIN + 1);  // sums wrap around
  EXPECT_TRUE(PtInRect(&a, {3, 3}) && PtInRect(&a, {0, 0}) && !PtInRect(&a, {4, 3}));
}

}  // namespace
