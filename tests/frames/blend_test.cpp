#include <functional>

#include <gtest/gtest.h>

#include "plain.h"

namespace {

using dibkit::OwnedDib;
using test::Given;
using test::PlainPicture;
using test::Shot;

/// The COLORREF's bytes as 0xRRGGBB.
DWORD swapped(DWORD colour) { return (colour & 255) << 16 | (colour & 0xFF00) | (colour >> 16 & 255); }

/// rule(top, under) for each channel of two colours.
template <class Rule>
DWORD mixed(DWORD top, DWORD under, Rule&& rule) {
  DWORD result = 0;
  for (const int shift : {0, 8, 16}) {
    result |= static_cast<DWORD>(rule(test::channel(top, shift), test::channel(under, shift)) & 255) << shift;
  }
  return result;
}
DWORD byteBlend(DWORD top, DWORD under, int a) {
  return mixed(top, under, [a](int t, int u) { return (t * a + u * 256 - u * (a + 1)) / 255; });
}
DWORD wordBlend(DWORD top, DWORD under, int w) {
  return mixed(top, under, [w](int t, int u) { return (t * w + u * 256 - u * w) >> 8; });
}

/// A larger pair now and then, with more colours than a palette holds.
Shot shot(int round, test::Random& random) { return round % 5 == 0 ? Shot(random, 0, 60, 30) : Shot(random); }

TEST(AlphaBlendByColor, EqualsThePlainBlend) {
  test::Random random(61);
  for (int round = 0; round < 300; ++round) {
    const Shot a = shot(round, random);
    const auto colour = static_cast<DWORD>(random());
    const int opacity = round % 4 == 0 ? 255 : round % 4 == 1 ? 0 : test::below(random, 256);
    PlainPicture expected(a.box());
    test::forEachPixel(a.box(), [&](int x, int y) {
      if (a.shows(x, y)) expected.put(x, y, byteBlend(a.colour(x, y), swapped(colour), opacity));
    });
    ASSERT_TRUE(test::same(test::given([&](auto image, auto mask, POINT*) {
                             return AlphaBlendByColor(a.dib.get(), a.mask.get(), colour,
                                                      static_cast<BYTE>(opacity), image, mask);
                           }),
                           expected.finishWith(a.mask)))
        << "round " << round;
  }
}

TEST(AlphaBlendByFrame, EqualsThePlainBlend) {
  test::Random random(62);
  for (int round = 0; round < 400; ++round) {
    const Shot a = shot(round, random), b = shot(round, random);
    const auto colour = static_cast<DWORD>(random());
    const int opacity = test::below(random, 256);
    PlainPicture expected(a.box());
    test::forEachPixel(a.box(), [&](int x, int y) {
      if (!a.shows(x, y)) return;
      const DWORD under = b.shows(x, y) ? b.colour(x, y) : swapped(colour);
      expected.put(x, y, byteBlend(a.colour(x, y), under, opacity));
    });
    ASSERT_TRUE(test::same(test::given([&](auto image, auto mask, POINT*) {
                             return AlphaBlendByFrame(a.dib.get(), a.mask.get(), a.at, b.dib.get(),
                                                      b.mask.get(), b.at, colour, static_cast<BYTE>(opacity),
                                                      image, mask);
                           }),
                           expected.finishWith(a.mask)))
        << "round " << round;
  }
}

TEST(MergeFramesAndAlphaBlendByFrame2, EqualThePlainUnionOnTheCanvas) {
  test::Random random(63);
  for (int round = 0; round < 800; ++round) {
    const bool merge = round % 2 == 0;
    const Shot a = shot(round, random), b = shot(round, random);
    const auto colour = static_cast<DWORD>(random());
    // Above 256 the low byte of the shifted sum stands.
    const int opacity = round % 3 == 0 ? test::below(random, 65536) : test::below(random, 257);
    const SIZE canvas{test::below(random, 30), test::below(random, 20)};
    const RECT boxA = a.box(), boxB = b.box(), whole{0, 0, canvas.cx, canvas.cy};
    RECT area;
    UnionRect(&area, &boxA, &boxB);
    if (!merge) IntersectRect(&area, &area, &whole);
    PlainPicture expected(area);
    test::forEachPixel(area, [&](int x, int y) {
      if (!a.shows(x, y) && !b.shows(x, y)) return expected.leaveOut(x, y);
      if (!a.shows(x, y)) return expected.put(x, y, b.colour(x, y));
      const DWORD under = b.shows(x, y) ? b.colour(x, y) : swapped(colour);
      expected.put(x, y, merge ? a.colour(x, y) : wordBlend(a.colour(x, y), under, opacity));
    });
    const Given got = test::given([&](auto image, auto mask, POINT* at) {
      return merge ? MergeFrames(a.dib.get(), a.mask.get(), a.at, b.dib.get(), b.mask.get(), b.at, image,
                                 mask, at)
                   : AlphaBlendByFrame2(a.dib.get(), a.mask.get(), a.at, b.dib.get(), b.mask.get(), b.at,
                                        colour, static_cast<WORD>(opacity), canvas, image, mask, at);
    });
    ASSERT_TRUE(test::same(got, expected.finish())) << "round " << round;
  }
}

TEST(Blends, EndAsPaletteImagesUpTo256Colours) {
  for (const auto& [count, depth] :
       {std::pair{0, 1}, {1, 1}, {2, 1}, {3, 4}, {16, 4}, {17, 8}, {256, 8}, {257, 24}}) {
    // The pixel after them is transparent: its colour counts for nothing, and all of them leave a black
    // entry.
    const OwnedDib frame = test::image(count + 1, 1, 24), mask = test::image(count + 1, 1, 1);
    for (int x = 0; x <= count; ++x) test::setPixel(frame, x, 0, static_cast<DWORD>(x) * 0x101 + 1);
    test::setPixel(mask, count, 0, 1);
    const Given got = test::given([&](auto image, auto outMask, POINT*) {
      return AlphaBlendByColor(frame.get(), mask.get(), 0, 255, image, outMask);
    });
    EXPECT_EQ(got.image->biBitCount, depth) << count;
    EXPECT_EQ(got.image->biClrUsed, static_cast<DWORD>(depth == 24 ? 0 : std::max(count, 1)));
    EXPECT_EQ(test::pixel(got.image, count, 0), 0U);
  }
}

TEST(Blends, RefuseWhatCannotBe) {
  const OwnedDib frame = test::image(3, 3, 24);
  const POINT distant{INT32_MAX, INT32_MAX}, nearby{INT32_MIN, INT32_MIN};
  const std::function<int(BITMAPINFOHEADER**, BITMAPINFOHEADER**, POINT*)> calls[]{
      [&](auto image, auto mask, POINT*) { return AlphaBlendByColor(nullptr, nullptr, 0, 0, image, mask); },
      [&](auto image, auto mask, POINT*) {
        return AlphaBlendByColor(frame.get(), frame.get(), 0, 0, image, mask);
      },
      [&](auto image, auto mask, POINT*) {
        return AlphaBlendByFrame(frame.get(), nullptr, distant, nullptr, nullptr, distant, 0, 0, image, mask);
      },
      [&](auto image, auto mask, POINT* at) {
        return MergeFrames(frame.get(), nullptr, nearby, frame.get(), nullptr, distant, image, mask, at);
      },
      [&](auto, auto mask, POINT* at) {
        return MergeFrames(frame.get(), nullptr, distant, frame.get(), nullptr, distant, nullptr, mask, at);
      },
  };
  for (const auto& call : calls) EXPECT_TRUE(test::same(test::given(call), Given()));
}

}  // namespace
