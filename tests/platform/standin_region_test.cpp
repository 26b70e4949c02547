#include <limits>

#include <gtest/gtest.h>

#include "platform/recorded.h"
#include "platform/standin/drawing/nib.h"
#include "support/bitmap_regions.h"

/// What the stand-in promises beyond the calls that it replaces: exact results up to the largest numbers,
/// whole ellipses, and no argument that brings it down.
namespace {

using test::Bitmap;
using test::bitmapOf;
using test::OwnedRegion;

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

TEST(StandinRegions, PolygonsAreExactForTheLargestSlopes) {
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

TEST(StandinRegions, PolygonsOfMoreCrossingsThanFitAreRefused) {
  std::vector<POINT> zigzag;
  for (int i = 0; i < 400; ++i) zigzag.push_back({i, i % 2 == 0 ? lowest : highest});
  EXPECT_EQ(CreatePolygonRgn(zigzag.data(), 400, ALTERNATE), nullptr);
}

TEST(StandinStrokes, AreExactForTheLargestPensAndSegments) {
  // The square of 1855077841 is twice that of 1311738121, less one: the width over the root of 2 is a hair
  // below 1311738121. So the sides of a diagonal stroke are 1311738120 + 1 columns apart, the larger half to
  // the right.
  const dibkit::standin::Nib nib(1855077841, false);
  struct Row : dibkit::standin::Painter {
    Row() : Painter({lowest, 0, highest, 1}) {}
    void store(const RECT& rect) override { painted = rect; }
    RECT painted{};
  };
  for (const int sign : {1, -1}) {
    const POINT from{sign > 0 ? lowest : highest, lowest}, to{sign > 0 ? highest : lowest, highest};
    Row row;
    nib.drawSegment(row, from, to);
    // The corners beyond the coordinates are moved to their end, which brings either side half way nearer.
    // The falling diagonal passes through column 0 of this row, the rising one through column -1.
    const int middle = sign > 0 ? 0 : -1;
    const RECT expected{middle - 655869060, 0, middle + 655869061, 1};
    EXPECT_TRUE(EqualRect(&row.painted, &expected));
  }
}

TEST(StandinRegions, EllipsesAreTheirOwnMirrorImages) {
  for (int width = 1; width <= 24; ++width) {
    for (int height = 1; height <= 50; ++height) {
      const OwnedRegion ellipse(CreateEllipticRgn(0, 0, width + 1, height + 1));
      const Bitmap pixels = bitmapOf(ellipse.get(), width, height);
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

TEST(StandinRegions, TakeAnyArgument) {
  RECT box{1, 2, 3, 4};
  EXPECT_EQ(GetRgnBox(nullptr, &box), ERROR);
  EXPECT_EQ(box, (RECT{1, 2, 3, 4}));
  EXPECT_FALSE(PtInRegion(nullptr, 0, 0) || EqualRgn(nullptr, nullptr) || DeleteObject(nullptr));
  EXPECT_EQ(OffsetRgn(nullptr, 1, 1), ERROR);
  EXPECT_EQ(GetRegionData(nullptr, 0, nullptr), 0u);
  const POINT corner{0, 0};
  EXPECT_EQ(CreatePolygonRgn(nullptr, 3, ALTERNATE), nullptr);
  EXPECT_EQ(CreatePolygonRgn(&corner, -1, ALTERNATE), nullptr);
  EXPECT_EQ(CreateEllipticRgn(lowest, lowest, highest, highest), nullptr);
  EXPECT_EQ(CreateRoundRectRgn(lowest, lowest, highest, highest, 40, lowest), nullptr);

  const OwnedRegion everything(CreateRectRgn(lowest, lowest, highest, highest));
  EXPECT_TRUE(PtInRegion(everything.get(), highest - 1, lowest));
  EXPECT_FALSE(PtInRegion(everything.get(), highest, lowest));
  EXPECT_EQ(OffsetRgn(everything.get(), 1, 0), ERROR);
  EXPECT_EQ(test::rowsOf(everything.get()), (test::Rows{{lowest, highest, lowest, highest}}));
  EXPECT_EQ(CombineRgn(everything.get(), everything.get(), everything.get(), 9), ERROR);
  const OwnedRegion rounded(CreateRoundRectRgn(lowest, lowest, highest, highest, 3, 3));
  EXPECT_TRUE(PtInRegion(rounded.get(), 0, 0));
  const OwnedRegion thin(CreateEllipticRgn(lowest, lowest, lowest, lowest));
  EXPECT_EQ(GetRgnBox(thin.get(), &box), NULLREGION);
}

TEST(StandinRegions, BlocksShorterThanTheirOwnCountAreRefused) {
  const OwnedRegion region(CreateRectRgn(1, 2, 3, 4));
  std::vector<DWORD> block(12);
  auto* data = reinterpret_cast<RGNDATA*>(block.data());
  ASSERT_EQ(GetRegionData(region.get(), 48, data), 48u);
  const auto isMade = [&](const XFORM* form, DWORD size, const RGNDATA* from) {
    return OwnedRegion(ExtCreateRegion(form, size, from)) != nullptr;
  };
  const XFORM same{1, 0, 0, 1, 0, 0};
  EXPECT_TRUE(isMade(nullptr, 48, data) && isMade(&same, 48, data));
  EXPECT_FALSE(isMade(nullptr, 47, data) || isMade(nullptr, 31, data) || isMade(nullptr, 48, nullptr));
  for (float XFORM::*element :
       {&XFORM::eM11, &XFORM::eM12, &XFORM::eM21, &XFORM::eM22, &XFORM::eDx, &XFORM::eDy}) {
    XFORM form = same;
    form.*element += 1;
    EXPECT_FALSE(isMade(&form, 48, data));
  }
  data->rdh.nCount = 0xFFFFFFFF;
  EXPECT_FALSE(isMade(nullptr, 48, data));
}

}  // namespace
