#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "dib32/literal_rules.h"
#include "dib32/placed.h"

namespace {

using dibkit::OwnedDib;
using test::Guarded;
using Dib = BITMAPINFOHEADER*;
using Pixels = std::vector<DWORD>;

struct Result {
  BOOL made = FALSE;
  OwnedDib dib;
  POINT origin{-777, -777};
};

/// Calls merge(out, outOrigin). Failure may leave out parameters alone, both or none.
template <class Merge>
Result resultOf(Merge&& merge) {
  static BITMAPINFOHEADER untouched;
  Dib out = &untouched;
  Result result;
  result.made = merge(&out, &result.origin);
  EXPECT_EQ(result.origin.x == -777, out == &untouched);
  if (out != &untouched) result.dib.reset(out);
  EXPECT_EQ(result.dib != nullptr, result.made == TRUE);
  return result;
}

/// Placed input of the twins: the pixel at a point of the common space, 0 where it covers none.
struct Layer {
  Guarded image;
  POINT at;

  Layer(test::Random& random, int reach) : image(random, 32), at(test::randomPoint(random, reach)) {}
  bool covers(int x, int y) { return image.has(x - at.x, y - at.y); }
  DWORD pixel(int x, int y) {
    return covers(x, y) ? dibkit::Bgra32::get(image.at(x - at.x, y - at.y), 0) : 0;
  }
  Dib dib() { return image.dib(); }
  RECT rect() { return {at.x, at.y, at.x + dib()->biWidth, at.y + dib()->biHeight}; }
};

/// Compares with pixelAt(x, y) over the box of both rectangles.
template <class PixelAt>
void expectTwin(const RECT& a, const RECT& b, const Result& result, PixelAt&& pixelAt) {
  const RECT box{std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
                 std::max(a.bottom, b.bottom)};
  ASSERT_TRUE(result.made);
  ASSERT_EQ(result.origin.x, box.left);
  ASSERT_EQ(result.origin.y, box.top);
  ASSERT_EQ(result.dib->biWidth, box.right - box.left);
  ASSERT_EQ(result.dib->biHeight, box.bottom - box.top);
  Pixels pixels;
  for (int y = box.top; y < box.bottom; ++y) {
    for (int x = box.left; x < box.right; ++x) pixels.push_back(pixelAt(x, y));
  }
  ASSERT_EQ(test::pixelsOf(result.dib), pixels);
}

TEST(CombineDIBs, EqualsItsTwin) {
  test::Random random(11);
  for (int round = 0; round < 100; ++round) {
    // Far enough apart, now and then, for a gap between them.
    Layer bottom(random, 40), top(random, 40);
    const std::vector<BYTE> before = bottom.image.block();
    const BYTE bottomReduction = test::byteOf(round % 3 == 0 ? 0 : test::below(random, 256));
    const BYTE topReduction = test::byteOf(round % 4 == 0 ? 255 : test::below(random, 256));
    const Result result = resultOf([&](Dib* out, POINT* origin) {
      return CDIB32::CombineDIBs(bottom.dib(), bottom.at, bottomReduction, top.dib(), top.at, topReduction,
                                 out, origin);
    });
    expectTwin(bottom.rect(), top.rect(), result, [&](int x, int y) {
      DWORD below = bottom.pixel(x, y);
      DWORD above = top.pixel(x, y);
      auto* d = reinterpret_cast<BYTE*>(&below);
      d[3] = test::byteOf(std::max(d[3] - bottomReduction, 0));
      if (top.covers(x, y)) test::combine(d, reinterpret_cast<BYTE*>(&above), topReduction);
      return below;
    });
    ASSERT_EQ(bottom.image.block(), before);
    if (HasFatalFailure()) FAIL() << "round " << round;
  }
}

TEST(Merge32DIBs, EqualsItsTwin) {
  test::Random random(12);
  for (int round = 0; round < 100; ++round) {
    Layer first(random, 20), second(random, 20);
    const Result result = resultOf([&](Dib* out, POINT* origin) {
      return CDIB32::Merge32DIBs(first.dib(), first.at, second.dib(), second.at, out, origin);
    });
    const int left = std::min(first.at.x, second.at.x);
    const int right = std::max(first.rect().right, second.rect().right);
    if (right - left < 4) continue;  // the rows of the table below
    expectTwin(first.rect(), second.rect(), result, [&](int x, int y) {
      const DWORD above = second.pixel(x, y), below = first.pixel(x, y);
      const DWORD colour = (above >> 24 != 0 ? above : below >> 24 != 0 ? below : 0) & 0xFFFFFF;
      bool marked = false;
      for (int i = left; i < right && x == left + 3; ++i) {
        marked |= first.pixel(i, y) >> 24 != 0 || second.pixel(i, y) >> 24 != 0;
      }
      return marked ? colour | 0xFF : colour;
    });
    if (HasFatalFailure()) FAIL() << "round " << round;
  }
}

TEST(Merge32DIBs, MarksByteTwelveOfEachRowWithAVisiblePixel) {
  const struct {
    int width;
    Pixels pixels, merged;
  } cases[] = {
      // A visible pixel of any column marks the fourth pixel's blue; colours without opacity are not taken.
      {5, {0x01111111, 0x00222222, 0, 0x00444444, 0}, {0x111111, 0, 0, 0x0000FF, 0}},
      {4, {0, 0, 0, 0xFF445566}, {0, 0, 0, 0x4455FF}},
      {4, {0, 0, 0, 0x00445566}, {0, 0, 0, 0}},
      // Narrow rows: the mark lands on the first pixel of the row above, on its second, three rows up; that
      // of the top row nowhere.
      {3, {0, 0xFF101010, 0, 0, 0, 0xFF202020}, {0xFF, 0x101010, 0, 0, 0, 0x202020}},
      {3, {0xFF101010, 0, 0, 0xFF202020, 0, 0}, {0x1010FF, 0, 0, 0x202020, 0, 0}},
      {2, {0, 0, 0xFF000000, 0}, {0, 0xFF, 0, 0}},
      {1, {0xFF000000, 0, 0, 0, 0xFF000000}, {0, 0xFF, 0, 0, 0}},
  };
  const OwnedDib empty = test::image(0, 0, 32);
  for (const auto& expected : cases) {
    const int height = static_cast<int>(expected.pixels.size()) / expected.width;
    const OwnedDib image = test::imageOf(expected.width, height, 32, expected.pixels);
    for (const bool swapped : {false, true}) {
      const Result result = resultOf([&](Dib* out, POINT* origin) {
        return CDIB32::Merge32DIBs(swapped ? empty.get() : image.get(), {0, 0},
                                   swapped ? image.get() : empty.get(), {0, 0}, out, origin);
      });
      EXPECT_EQ(test::pixelsOf(result.dib), expected.merged) << expected.width;
    }
  }
}

TEST(Merge32BitsDIB, EqualsItsTwins) {
  test::Random random(13);
  for (int round = 0; round < 100; ++round) {
    Layer bottom(random, 40), top(random, 40);
    const RECT rect = Layer(random, 40).rect();
    const auto inside = [&](int x, int y) {
      return x >= rect.left && x < rect.right && y >= rect.top && y < rect.bottom;
    };
    const Result two = resultOf([&](Dib* out, POINT* origin) {
      return CDIB32::Merge32BitsDIB(bottom.dib(), bottom.at, top.dib(), top.at, out, origin);
    });
    expectTwin(bottom.rect(), top.rect(), two, [&](int x, int y) {
      return top.pixel(x, y) >> 24 != 0 ? top.pixel(x, y) : bottom.pixel(x, y);
    });
    const Result hole = resultOf([&](Dib* out, POINT* origin) {
      return CDIB32::Merge32BitsDIB(bottom.dib(), bottom.at, rect, out, origin);
    });
    expectTwin(bottom.rect(), rect, hole,
               [&](int x, int y) { return inside(x, y) ? 0 : bottom.pixel(x, y); });
    // The image's transparent pixels are kept: the colour shows around it only.
    const Result backed = resultOf([&](Dib* out, POINT* origin) {
      return CDIB32::Merge32BitsDIB(bottom.dib(), bottom.at, 0x00302010, rect, out, origin);
    });
    expectTwin(bottom.rect(), rect, backed, [&](int x, int y) {
      return bottom.covers(x, y) ? bottom.pixel(x, y) : inside(x, y) ? 0xFF102030 : 0;
    });
    if (HasFatalFailure()) FAIL() << "round " << round;
  }
}

TEST(Merging, TreatsEmptyUnionsAndWrongArgumentsEachInItsWay) {
  const OwnedDib one = test::imageOf(1, 1, 32, {0xFF112233});
  const OwnedDib empty = test::image(0, 0, 32);
  const OwnedDib shallow = test::image(1, 1, 24);
  POINT nearby{4, 5}, distant{INT32_MAX, INT32_MAX};
  const RECT none{3, 3, 3, 9};
  const struct {
    Dib first, second;
    POINT secondAt;
    BOOL made;
  } cases[] = {{empty.get(), empty.get(), nearby, TRUE},  // an image of 0 x 0
               {one.get(), nullptr, nearby, FALSE},
               {shallow.get(), one.get(), nearby, FALSE},
               {one.get(), one.get(), distant, FALSE}};  // too large
  for (const auto& expected : cases) {
    POINT secondAt = expected.secondAt;
    const auto combined = resultOf([&](Dib* out, POINT* origin) {
      return CDIB32::CombineDIBs(expected.first, nearby, 0, expected.second, secondAt, 0, out, origin);
    });
    const auto merged = resultOf([&](Dib* out, POINT* origin) {
      return CDIB32::Merge32DIBs(expected.first, nearby, expected.second, secondAt, out, origin);
    });
    for (const Result* result : {&combined, &merged}) {
      EXPECT_EQ(result->made, expected.made);
      EXPECT_EQ(result->origin.x, expected.made ? 0 : -777);  // left alone on failure
    }
    // These refuse the empty one too, and write their out parameters in every case.
    const Result always[] = {
        resultOf([&](Dib* out, POINT* origin) {
          return CDIB32::Merge32BitsDIB(expected.first, nearby, expected.second, secondAt, out, origin);
        }),
        resultOf([&](Dib* out, POINT* origin) {
          return CDIB32::Merge32BitsDIB(expected.made ? empty.get() : nullptr, nearby, none, out, origin);
        }),
        resultOf([&](Dib* out, POINT* origin) {
          return CDIB32::Merge32BitsDIB(expected.made ? empty.get() : nullptr, nearby, 1, none, out, origin);
        })};
    for (const Result& result : always) {
      EXPECT_FALSE(result.made);
      EXPECT_NE(result.origin.x, -777);
    }
    EXPECT_EQ(always[1].origin.x, 0);
  }
  Dib out = nullptr;
  POINT origin{0, 0};
  EXPECT_FALSE(CDIB32::Merge32BitsDIB(one.get(), nearby, RECT{INT32_MIN, 0, INT32_MAX, 1}, &out, &origin));
  EXPECT_FALSE(CDIB32::CombineDIBs(one.get(), nearby, 0, one.get(), nearby, 0, nullptr, &origin));
  EXPECT_FALSE(CDIB32::Merge32BitsDIB(one.get(), nearby, one.get(), nearby, &out, nullptr));
}

}  // namespace
