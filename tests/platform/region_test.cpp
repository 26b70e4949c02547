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
    const OwnedRegion first = a.region(), second = b.region(), other(CreateRectRgn(0, 0, 1, 1));
    const Mode& mode = modes[round % 5];
    const HRGN destination = round % 3 == 0 ? first.get() : round % 3 == 1 ? second.get() : other.get();
    const int code = CombineRgn(destination, first.get(), second.get(), mode.mode);
    const Bitmap expected(width, height, [&](int x, int y) { return mode.keep(a.at(x, y), b.at(x, y)); });
    EXPECT_EQ(bitmapOf(destination, width, height), expected);
    EXPECT_TRUE(EqualRgn(destination, expected.region().get()));
    const test::Rows rows = test::rowsOf(destination);
    EXPECT_TRUE(isCanonical(rows));
    const bool single = rows.size() == 1 && rows[0].size() == 4;
    EXPECT_EQ(code, rows.empty() ? NULLREGION : single ? SIMPLEREGION : COMPLEXREGION);
    RECT box;
    EXPECT_EQ(GetRgnBox(destination, &box), code);
    EXPECT_TRUE(rows.empty() || (box.top == rows.front()[0] && box.bottom == rows.back()[1]));
  }
}

TEST(Regions, CurvedOnesStayComplexUntilPixelsArePutTogether) {
  const OwnedRegion distant(CreateRectRgn(50, 50, 60, 60)), empty(CreateRectRgn(0, 0, 0, 0));
  const OwnedRegion ellipse(CreateEllipticRgn(0, 0, 3, 3));  // a square of 2 pixels
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
  const RECT a{0, 0, 4, 4}, reversed{4, 4, 0, 0}, none{0, 0, 0, 0};
  const struct {
    RECT first, second, common, both;
  } cases[] = {{a, {2, 1, 8, 3}, {2, 1, 4, 3}, {0, 0, 8, 4}},
               {a, {4, 0, 6, 4}, none, {0, 0, 6, 4}},
               {a, reversed, none, a},
               {reversed, reversed, none, none}};
  for (const auto& [first, second, common, both] : cases) {
    RECT out{9, 9, 9, 9};
    EXPECT_EQ(IntersectRect(&out, &first, &second) != FALSE, !IsRectEmpty(&common));
    EXPECT_EQ(out, common);
    EXPECT_EQ(UnionRect(&out, &first, &second) != FALSE, !IsRectEmpty(&both));
    EXPECT_EQ(out, both);
  }
  EXPECT_TRUE(IsRectEmpty(&reversed) && IsRectEmpty(nullptr));
  RECT out;
  EXPECT_TRUE(SetRect(&out, 5, 6, 1, 2) && InflateRect(&out, 1, INT32_MAX));
  EXPECT_EQ(out, (RECT{4, 6 - INT32_MAX, 2, INT32_MIN + 1}));  // sums wrap around
  EXPECT_TRUE(PtInRect(&a, {3, 3}) && PtInRect(&a, {0, 0}) && !PtInRect(&a, {4, 3}) && !PtInRect(&a, {3, 4}));
}

}  // namespace
