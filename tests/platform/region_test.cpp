#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

#include "platform/recorded.h"
#include "support/bitmap_regions.h"

namespace {

using test::below;
using test::Bitmap;
using test::OwnedRegion;

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

/// The region's pixels, rows and columns, asked one by one.
Bitmap pixelsOf(HRGN region, int width, int height) {
  return {width, height, [region](int x, int y) { return PtInRegion(region, x, y) != FALSE; }};
}

/// Bands as a canonical list has them: sorted, apart, and never equal where they touch.
bool isCanonical(const test::Rows& rows) {
  for (std::size_t band = 0; band < rows.size(); ++band) {
    const std::vector<long>& row = rows[band];
    if (row[0] >= row[1]) return false;
    for (std::size_t i = 3; i < row.size(); ++i) {
      if (row[i - 1] >= row[i]) return false;
    }
    if (band == 0) continue;
    const std::vector<long>& above = rows[band - 1];
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
    EXPECT_EQ(pixelsOf(destination, width, height), expected);
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
    EXPECT_EQ(pixelsOf(region.get(), 30, 30), expected);
    EXPECT_TRUE(isCanonical(test::rowsOf(region.get())));
    EXPECT_TRUE(EqualRgn(region.get(), expected.region().get()));
  }
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
    EXPECT_EQ(pixelsOf(region.get(), 24, 24), expected);
    EXPECT_TRUE(isCanonical(test::rowsOf(region.get())));
  }
}

TEST(CreatePolygonRgn, IsExactForTheLargestSlopes) {
  // The long side runs through every (y, y), then from corner to corner in two rows.
  const POINT diagonal[] = {{lowest, lowest}, {highest, highest}, {lowest, highest}};
  const OwnedRegion half(CreatePolygonRgn(diagonal, 3, ALTERNATE));
  for (const int y : {-1000000, -1, 0, 1, 777, 1000000}) {
    EXPECT_TRUE(PtInRegion(half.get(), y - 1, y));
    EXPECT_FALSE(PtInRegion(half.get(), y, y));
  }
  const POINT flat[] = {{lowest, 0}, {highest, 2}, {lowest, 2}};
  const OwnedRegion wedge(CreatePolygonRgn(flat, 3, ALTERNATE));
  // Row 1 is crossed half way between the two ends, at -1/2, which goes up to 0.
  EXPECT_EQ(test::rowsOf(wedge.get()), (test::Rows{{1, 2, lowest, 0}}));
}

TEST(CreatePolygonRgn, RefusesMoreCrossingsThanItCouldKeep) {
  std::vector<POINT> zigzag;
  for (int i = 0; i < 400; ++i) zigzag.push_back({i, i % 2 == 0 ? lowest : highest});
  EXPECT_EQ(CreatePolygonRgn(zigzag.data(), 400, ALTERNATE), nullptr);
}

TEST(CreateEllipticRgn, IsItsOwnMirrorImage) {
  for (int width = 1; width <= 24; ++width) {
    for (int height = 1; height <= 50; ++height) {
      const OwnedRegion ellipse(CreateEllipticRgn(0, 0, width + 1, height + 1));
      const Bitmap pixels = pixelsOf(ellipse.get(), width, height);
      const Bitmap turned(width, height,
                          [&](int x, int y) { return pixels.at(width - 1 - x, height - 1 - y); });
      ASSERT_EQ(pixels, turned) << width << " x " << height;
      for (int y = 0; y < height; ++y) {
        const OwnedRegion row(CreateRectRgn(0, y, width, y + 1));
        ASSERT_NE(CombineRgn(row.get(), row.get(), ellipse.get(), RGN_AND), NULLREGION)
            << width << " x " << height << " has no pixel on row " << y;
      }
    }
  }
}

TEST(Regions, CurvedOnesStayComplexUntilPixelsArePutTogether) {
  const auto curved = [] { return OwnedRegion(CreateEllipticRgn(0, 0, 3, 3)); };  // a square of 2 pixels
  const OwnedRegion far(CreateRectRgn(50, 50, 60, 60)), empty(CreateRectRgn(0, 0, 0, 0));
  const OwnedRegion ellipse = curved();
  EXPECT_EQ(test::rowsOf(ellipse.get()), (test::Rows{{0, 2, 0, 2}}));
  EXPECT_EQ(OffsetRgn(ellipse.get(), 1, 1), COMPLEXREGION);
  EXPECT_EQ(CombineRgn(ellipse.get(), ellipse.get(), far.get(), RGN_DIFF), COMPLEXREGION);
  EXPECT_EQ(CombineRgn(ellipse.get(), ellipse.get(), empty.get(), RGN_OR), COMPLEXREGION);
  EXPECT_EQ(CombineRgn(ellipse.get(), ellipse.get(), ellipse.get(), RGN_AND), SIMPLEREGION);
}

TEST(Regions, TakeAnyArgument) {
  RECT box{1, 2, 3, 4};
  EXPECT_EQ(GetRgnBox(nullptr, &box), ERROR);
  EXPECT_EQ(box.right, 3);
  EXPECT_FALSE(PtInRegion(nullptr, 0, 0));
  EXPECT_FALSE(EqualRgn(nullptr, nullptr));
  EXPECT_EQ(OffsetRgn(nullptr, 1, 1), ERROR);
  EXPECT_EQ(GetRegionData(nullptr, 0, nullptr), 0u);
  EXPECT_FALSE(DeleteObject(nullptr));
  EXPECT_EQ(CreatePolygonRgn(nullptr, 3, ALTERNATE), nullptr);
  const POINT corner{0, 0};
  EXPECT_EQ(CreatePolygonRgn(&corner, -1, ALTERNATE), nullptr);

  const OwnedRegion everything(CreateRectRgn(lowest, lowest, highest, highest));
  EXPECT_TRUE(PtInRegion(everything.get(), highest - 1, lowest));
  EXPECT_FALSE(PtInRegion(everything.get(), highest, lowest));
  EXPECT_EQ(OffsetRgn(everything.get(), 1, 0), ERROR);
  EXPECT_EQ(test::rowsOf(everything.get()), (test::Rows{{lowest, highest, lowest, highest}}));
  EXPECT_EQ(CombineRgn(everything.get(), everything.get(), everything.get(), 9), ERROR);
  EXPECT_EQ(CreateEllipticRgn(lowest, lowest, highest, highest), nullptr);
  const OwnedRegion corners(CreateRoundRectRgn(lowest, lowest, highest, highest, 40, lowest));
  EXPECT_EQ(corners.get(), nullptr);
  const OwnedRegion rounded(CreateRoundRectRgn(lowest, lowest, highest, highest, 3, 3));
  EXPECT_TRUE(PtInRegion(rounded.get(), 0, 0));
  const OwnedRegion thin(CreateEllipticRgn(lowest, lowest, lowest, lowest));
  EXPECT_EQ(GetRgnBox(thin.get(), &box), NULLREGION);
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

  // Back in: a block that is shorter than its own count is refused, so is any that is not a list.
  EXPECT_NE(OwnedRegion(ExtCreateRegion(nullptr, 48, data)).get(), nullptr);
  EXPECT_EQ(ExtCreateRegion(nullptr, 47, data), nullptr);
  EXPECT_EQ(ExtCreateRegion(nullptr, 31, data), nullptr);
  EXPECT_EQ(ExtCreateRegion(nullptr, 48, nullptr), nullptr);
  data->rdh.nCount = 0xFFFFFFFF;
  EXPECT_EQ(ExtCreateRegion(nullptr, 48, data), nullptr);
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
  EXPECT_TRUE(InflateRect(&out, 1, highest));
  EXPECT_EQ(out.bottom, lowest + 1);  // sums wrap around
  EXPECT_TRUE(PtInRect(&a, {3, 3}) && PtInRect(&a, {0, 0}) && !PtInRect(&a, {4, 3}));
}

}  // namespace
