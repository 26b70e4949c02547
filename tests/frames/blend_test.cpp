#include <functional>

#include <gtest/gtest.h>

#include "plain_finish.h"

namespace {

using dibkit::OwnedDib;
using test::Given;

/// A frame somewhere on the canvas, asked pixel by pixel.
struct Layer {
  OwnedDib frame, mask;
  POINT position;

  Layer(test::Random& random, bool large)
      : position{test::below(random, 16) - 8, test::below(random, 16) - 8} {
    const int width = large ? 40 : 1 + test::below(random, 20);
    const int height = large ? 20 : 1 + test::below(random, 10);
    frame = test::anyFrame(width, height, random);
    mask = test::maybeMask(width, height, random);
  }
  bool shows(int x, int y) const {
    return x >= position.x && y >= position.y && x < position.x + frame->biWidth &&
           y < position.y + frame->biHeight &&
           !test::transparentAt(mask.get(), x - position.x, y - position.y);
  }
  DWORD colour(int x, int y) const { return test::colourAt(frame.get(), x - position.x, y - position.y); }
  RECT box() const {
    return {position.x, position.y, position.x + frame->biWidth, position.y + frame->biHeight};
  }
};

/// The COLORREF's bytes as 0xRRGGBB.
DWORD fromColorRef(DWORD colour) { return (colour & 255) << 16 | (colour & 0xFF00) | (colour >> 16 & 255); }

DWORD byteBlend(DWORD top, DWORD under, int a) {
  DWORD mixed = 0;
  for (const int shift : {0, 8, 16}) {
    const int t = test::channel(top, shift);
    const int u = test::channel(under, shift);
    mixed |= static_cast<DWORD>((t * a + u * 256 - u * (a + 1)) / 255) << shift;
  }
  return mixed;
}

DWORD wordBlend(DWORD top, DWORD under, int w) {
  DWORD mixed = 0;
  for (const int shift : {0, 8, 16}) {
    const int t = test::channel(top, shift);
    const int u = test::channel(under, shift);
    mixed |= static_cast<DWORD>(((t * w + u * 256 - u * w) >> 8) & 255) << shift;
  }
  return mixed;
}

TEST(AlphaBlendByColor, EqualsThePlainBlend) {
  test::Random random(61);
  for (int round = 0; round < 300; ++round) {
    const Layer a(random, round % 5 == 0);
    const auto colour = static_cast<DWORD>(random());
    const BYTE opacity = static_cast<BYTE>(round % 4 == 0 ? 255 : round % 4 == 1 ? 0 : random());
    const Given got = test::given([&](auto image, auto mask, POINT*) {
      return AlphaBlendByColor(a.frame.get(), a.mask.get(), colour, opacity, image, mask);
    });
    test::PlainPicture expected(a.frame->biWidth, a.frame->biHeight);
    for (int y = 0; y < a.frame->biHeight; ++y) {
      for (int x = 0; x < a.frame->biWidth; ++x) {
        if (test::transparentAt(a.mask.get(), x, y)) continue;
        const DWORD mixed = byteBlend(test::colourAt(a.frame.get(), x, y), fromColorRef(colour), opacity);
        expected.put(x, y, mixed);
        expected.note(mixed);
      }
    }
    ASSERT_EQ(got.result, 1);
    ASSERT_TRUE(test::sameBytes(expected.finish(), got.image.get())) << "round " << round;
    ASSERT_TRUE(test::sameBytes(a.mask, got.mask.get()));
  }
}

TEST(AlphaBlendByFrame, EqualsThePlainBlend) {
  test::Random random(62);
  for (int round = 0; round < 400; ++round) {
    const Layer a(random, round % 5 == 0);
    const Layer b(random, round % 5 == 0);
    const auto colour = static_cast<DWORD>(random());
    const BYTE opacity = static_cast<BYTE>(random());
    const Given got = test::given([&](auto image, auto mask, POINT*) {
      return AlphaBlendByFrame(a.frame.get(), a.mask.get(), a.position, b.frame.get(), b.mask.get(),
                               b.position, colour, opacity, image, mask);
    });
    const RECT box = a.box();
    test::PlainPicture expected(a.frame->biWidth, a.frame->biHeight);
    for (int y = box.top; y < box.bottom; ++y) {
      for (int x = box.left; x < box.right; ++x) {
        if (!a.shows(x, y)) continue;
        const DWORD under = b.shows(x, y) ? b.colour(x, y) : fromColorRef(colour);
        const DWORD mixed = byteBlend(a.colour(x, y), under, opacity);
        expected.put(x - box.left, y - box.top, mixed);
        expected.note(mixed);
      }
    }
    ASSERT_EQ(got.result, 1);
    ASSERT_TRUE(test::sameBytes(expected.finish(), got.image.get())) << "round " << round;
    ASSERT_TRUE(test::sameBytes(a.mask, got.mask.get()));
  }
}

/// MergeFrames and AlphaBlendByFrame2 inside a rectangle; `mix` makes the pixels where A shows.
template <class Mix>
void expectLaidOver(const Given& got, const Layer& a, const Layer& b, const RECT& area, Mix&& mix) {
  const int width = area.right - area.left;
  const int height = area.bottom - area.top;
  test::PlainPicture expected(width, height);
  const OwnedDib mask = test::newMask(width, height);
  bool transparent = false;
  for (int y = area.top; y < area.bottom; ++y) {
    for (int x = area.left; x < area.right; ++x) {
      if (!a.shows(x, y) && !b.shows(x, y)) {
        test::setPixel(mask, x - area.left, y - area.top, 1);
        transparent = true;
        continue;
      }
      const DWORD colour = a.shows(x, y) ? mix(x, y) : b.colour(x, y);
      expected.put(x - area.left, y - area.top, colour);
      expected.note(colour);
    }
  }
  ASSERT_EQ(got.result, 1);
  ASSERT_EQ(got.position.x, area.left);
  ASSERT_EQ(got.position.y, area.top);
  ASSERT_TRUE(test::sameBytes(expected.finish(), got.image.get()));
  ASSERT_TRUE(
      test::sameBytes(transparent ? OwnedDib(CBitmapCreator::Clone(mask.get())) : nullptr, got.mask.get()));
}

TEST(MergeFrames, EqualsThePlainUnion) {
  test::Random random(63);
  for (int round = 0; round < 400; ++round) {
    SCOPED_TRACE(round);
    const Layer a(random, round % 5 == 0);
    const Layer b(random, round % 5 == 0);
    const Given got = test::given([&](auto image, auto mask, POINT* position) {
      return MergeFrames(a.frame.get(), a.mask.get(), a.position, b.frame.get(), b.mask.get(), b.position,
                         image, mask, position);
    });
    const RECT boxA = a.box();
    const RECT boxB = b.box();
    RECT area;
    UnionRect(&area, &boxA, &boxB);
    expectLaidOver(got, a, b, area, [&](int x, int y) { return a.colour(x, y); });
  }
}

TEST(AlphaBlendByFrame2, EqualsThePlainBlendOnTheCanvas) {
  test::Random random(64);
  for (int round = 0; round < 600; ++round) {
    SCOPED_TRACE(round);
    const Layer a(random, round % 5 == 0);
    const Layer b(random, round % 5 == 0);
    const auto colour = static_cast<DWORD>(random());
    // Above 256 the low byte of the shifted sum stands.
    const WORD opacity = static_cast<WORD>(round % 3 == 0 ? random() : random() % 257);
    const SIZE canvas{test::below(random, 30), test::below(random, 20)};
    const Given got = test::given([&](auto image, auto mask, POINT* position) {
      return AlphaBlendByFrame2(a.frame.get(), a.mask.get(), a.position, b.frame.get(), b.mask.get(),
                                b.position, colour, opacity, canvas, image, mask, position);
    });
    const RECT boxA = a.box();
    const RECT boxB = b.box();
    const RECT whole{0, 0, canvas.cx, canvas.cy};
    RECT area;
    UnionRect(&area, &boxA, &boxB);
    IntersectRect(&area, &area, &whole);
    expectLaidOver(got, a, b, area, [&](int x, int y) {
      return wordBlend(a.colour(x, y), b.shows(x, y) ? b.colour(x, y) : fromColorRef(colour), opacity);
    });
  }
}

TEST(AlphaBlendByFrame2, KeepsTheLowByteAboveFullOpacity) {
  const OwnedDib a = test::imageOf(1, 1, 24, {0xFF8000});
  const OwnedDib b = test::imageOf(1, 1, 24, {0x000000});
  const Given got = test::given([&](auto image, auto mask, POINT* position) {
    return AlphaBlendByFrame2(a.get(), nullptr, {0, 0}, b.get(), nullptr, {0, 0}, 0, 300, {1, 1}, image, mask,
                              position);
  });
  // 255 x 300 >> 8 = 298, low byte 42; 128 x 300 >> 8 = 150.
  EXPECT_EQ(test::colourAt(got.image.get(), 0, 0), 0x2A9600U);
}

/// A 24-bit frame with the given number of colours.
OwnedDib colours(int count) {
  OwnedDib frame = test::image(count, 1, 24);
  for (int x = 0; x < count; ++x) test::setPixel(frame, x, 0, static_cast<DWORD>(x) * 0x101 + 1);
  return frame;
}

TEST(Blends, EndAsPaletteImagesUpTo256Colours) {
  const std::pair<int, int> cases[] = {{1, 1}, {2, 1}, {3, 4}, {16, 4}, {17, 8}, {256, 8}, {257, 24}};
  for (const auto& [count, depth] : cases) {
    const OwnedDib frame = colours(count);
    const Given got = test::given([&](auto image, auto mask, POINT*) {
      return AlphaBlendByColor(frame.get(), nullptr, 0, 255, image, mask);
    });
    EXPECT_EQ(got.image->biBitCount, depth) << count;
    EXPECT_EQ(got.image->biClrUsed, static_cast<DWORD>(depth == 24 ? 0 : count));
    EXPECT_EQ(test::colourAt(got.image.get(), count - 1, 0), static_cast<DWORD>(count - 1) * 0x101 + 1);
    EXPECT_FALSE(got.mask);
  }
}

TEST(Blends, GiveOneBlackEntryWhenEverythingIsLeftOut) {
  const OwnedDib frame = test::imageOf(2, 1, 24, {0xABCDEF, 0x123456});
  const OwnedDib mask = test::imageOf(2, 1, 1, {1, 1});
  const Given got = test::given([&](auto image, auto outMask, POINT*) {
    return AlphaBlendByColor(frame.get(), mask.get(), 0xFFFFFF, 9, image, outMask);
  });
  EXPECT_EQ(got.image->biBitCount, 1);
  EXPECT_EQ(got.image->biClrUsed, 1U);
  EXPECT_EQ(test::pixelsOf(got.image), (std::vector<DWORD>{0, 0}));
}

TEST(Blends, GiveAnEmptyImageForAnEmptyArea) {
  const OwnedDib frame = test::image(3, 3, 24);
  const Given got = test::given([&](auto image, auto mask, POINT* position) {
    return AlphaBlendByFrame2(frame.get(), nullptr, {50, 50}, frame.get(), nullptr, {60, 60}, 0, 9, {10, 10},
                              image, mask, position);
  });
  EXPECT_EQ(got.result, 1);
  EXPECT_EQ(got.image->biWidth, 0);
  EXPECT_EQ(got.image->biHeight, 0);
  EXPECT_EQ(got.position.x, 0);
  EXPECT_FALSE(got.mask);
}

TEST(Blends, RefuseWhatCannotBe) {
  const OwnedDib frame = test::image(3, 3, 24);
  const POINT far{INT32_MAX, INT32_MAX};
  const POINT near{INT32_MIN, INT32_MIN};
  const std::vector<std::function<int(BITMAPINFOHEADER**, BITMAPINFOHEADER**, POINT*)>> calls{
      [&](auto image, auto mask, POINT*) { return AlphaBlendByColor(nullptr, nullptr, 0, 0, image, mask); },
      [&](auto image, auto mask, POINT*) {
        return AlphaBlendByColor(frame.get(), frame.get(), 0, 0, image, mask);
      },
      [&](auto image, auto mask, POINT*) {
        return AlphaBlendByFrame(frame.get(), nullptr, far, nullptr, nullptr, far, 0, 0, image, mask);
      },
      [&](auto image, auto mask, POINT* position) {
        return MergeFrames(frame.get(), nullptr, near, frame.get(), nullptr, far, image, mask, position);
      },
      [&](auto, auto mask, POINT* position) {
        return MergeFrames(frame.get(), nullptr, far, frame.get(), nullptr, far, nullptr, mask, position);
      },
  };
  for (const auto& call : calls) {
    const Given got = test::given(call);
    EXPECT_EQ(got.result, 0);
    EXPECT_FALSE(got.image);
    EXPECT_FALSE(got.mask);
    EXPECT_EQ(got.position.x, -77);
  }
}

}  // namespace
