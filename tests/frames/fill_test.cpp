#include <gtest/gtest.h>

#include "plain_finish.h"

namespace {

using dibkit::OwnedDib;
using test::Given;

/// Strength, tolerance and colours of a fill; red in the lowest byte of the colours.
struct Fill {
  DWORD target, colour;
  int percent, tolerance;

  bool matches(DWORD pixel) const {
    for (int i = 0; i < 3; ++i) {
      const int centre = test::channel(target, 8 * i);
      const int value = test::channel(pixel, 16 - 8 * i);
      if (value < std::max(centre - tolerance, 0) || value > std::min(centre + tolerance, 255)) return false;
    }
    return true;
  }
  DWORD tinted(DWORD pixel) const {
    const int s = percent * 256 / 100;
    DWORD result = 0;
    for (int i = 0; i < 3; ++i) {
      const int old = test::channel(pixel, 16 - 8 * i);
      const int value = (old * 256 + (test::channel(colour, 8 * i) - old) * s) >> 8;
      result |= static_cast<DWORD>(value & 255) << (16 - 8 * i);
    }
    return result;
  }
};

DWORD asColorRef(DWORD pixel) {
  return static_cast<DWORD>(test::channel(pixel, 16) | test::channel(pixel, 8) << 8 |
                            test::channel(pixel, 0) << 16);
}

Fill randomFill(const OwnedDib& frame, test::Random& random) {
  // A colour of the frame, sometimes with a byte above it that counts for nothing.
  const DWORD pixel =
      test::colourAt(frame.get(), test::below(random, frame->biWidth), test::below(random, frame->biHeight));
  return {asColorRef(pixel) | 0xC9000000, static_cast<DWORD>(random()), test::below(random, 101),
          test::below(random, 5) * 30 - 1};
}

TEST(ExtFillFrame, EqualsThePlainFill) {
  test::Random random(71);
  for (int round = 0; round < 400; ++round) {
    const int width = 1 + test::below(random, 40);
    const int height = 1 + test::below(random, 12);
    const OwnedDib frame = test::anyFrame(width, height, random);
    const OwnedDib mask = test::maybeMask(width, height, random);
    const Fill fill = randomFill(frame, random);
    const Given got = test::given([&](auto image, auto outMask, POINT*) {
      return ExtFillFrame(frame.get(), mask.get(), fill.target, fill.colour, fill.percent, fill.tolerance,
                          image, outMask);
    });
    test::PlainPicture expected(width, height);
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        if (test::transparentAt(mask.get(), x, y)) continue;
        const DWORD pixel = test::colourAt(frame.get(), x, y);
        const DWORD result = fill.matches(pixel) ? fill.tinted(pixel) : pixel;
        expected.put(x, y, result);
        expected.note(result);
      }
    }
    ASSERT_EQ(got.result, 1);
    ASSERT_TRUE(test::sameBytes(expected.finish(), got.image.get())) << "round " << round;
    ASSERT_TRUE(test::sameBytes(mask, got.mask.get()));
  }
}

/// The literal walk with a stack of single pixels.
OwnedDib plainAdjacent(const OwnedDib& frame, const BITMAPINFOHEADER* mask, const Fill& fill, POINT seed) {
  const int width = frame->biWidth;
  const int height = frame->biHeight;
  test::PlainPicture work(width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      if (!test::transparentAt(mask, x, y)) work.put(x, y, test::colourAt(frame.get(), x, y));
    }
  }
  std::vector<bool> visited(static_cast<std::size_t>(width * height));
  std::vector<POINT> stack{seed};
  visited[static_cast<std::size_t>(seed.y * width + seed.x)] = true;
  while (!stack.empty()) {
    const POINT at = stack.back();
    stack.pop_back();
    work.put(at.x, at.y, fill.tinted(work.at(at.x, at.y)));
    for (const POINT& next :
         {POINT{at.x, at.y + 1}, POINT{at.x + 1, at.y}, POINT{at.x, at.y - 1}, POINT{at.x - 1, at.y}}) {
      if (next.x < 0 || next.y < 0 || next.x >= width || next.y >= height) continue;
      const auto index = static_cast<std::size_t>(next.y * width + next.x);
      if (visited[index]) continue;
      visited[index] = true;
      if (!test::transparentAt(mask, next.x, next.y) && fill.matches(work.at(next.x, next.y)))
        stack.push_back(next);
    }
  }
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      if (!test::transparentAt(mask, x, y)) work.note(work.at(x, y));
    }
  }
  return work.finish();
}

TEST(ExtFillAdjacentArea, EqualsTheWalkPixelByPixel) {
  test::Random random(72);
  for (int round = 0; round < 400; ++round) {
    const int width = 1 + test::below(random, 40);
    const int height = 1 + test::below(random, 12);
    const OwnedDib frame = test::anyFrame(width, height, random);
    const OwnedDib mask = test::maybeMask(width, height, random);
    const Fill fill = randomFill(frame, random);
    const POINT seed{test::below(random, width), test::below(random, height)};
    const Given got = test::given([&](auto image, auto outMask, POINT*) {
      return ExtFillAdjacentArea(frame.get(), mask.get(), fill.target, fill.colour, fill.percent,
                                 fill.tolerance, seed, image, outMask);
    });
    ASSERT_EQ(got.result, 1);
    ASSERT_TRUE(test::sameBytes(plainAdjacent(frame, mask.get(), fill, seed), got.image.get()))
        << "round " << round;
    ASSERT_TRUE(test::sameBytes(mask, got.mask.get()));
  }
}

TEST(ExtFillAdjacentArea, TintsASeedOfAnyColourAndTransparency) {
  const OwnedDib frame = test::imageOf(3, 1, 24, {0x102030, 0x102030, 0x102030});
  const Given opaque = test::given([&](auto image, auto mask, POINT*) {
    return ExtFillAdjacentArea(frame.get(), nullptr, 0xFFFFFF, 0x0000FF, 100, 0, {1, 0}, image, mask);
  });
  EXPECT_EQ(test::colourAt(opaque.image.get(), 0, 0), 0x102030U);
  EXPECT_EQ(test::colourAt(opaque.image.get(), 1, 0), 0xFF0000U);
  EXPECT_EQ(test::colourAt(opaque.image.get(), 2, 0), 0x102030U);
  // A transparent seed is tinted in the work image, but its colour is in no palette: it comes out as index 0.
  const OwnedDib mask = test::imageOf(3, 1, 1, {0, 1, 0});
  const Given hidden = test::given([&](auto image, auto outMask, POINT*) {
    return ExtFillAdjacentArea(frame.get(), mask.get(), 0x302010, 0x0000FF, 100, 0, {1, 0}, image, outMask);
  });
  EXPECT_EQ(hidden.image->biClrUsed, 1U);
  EXPECT_EQ(test::pixelsOf(hidden.image), (std::vector<DWORD>{0, 0, 0}));
  EXPECT_EQ(test::colourAt(hidden.image.get(), 0, 0), 0xFF0000U);
}

TEST(FrameFills, TakeAnyStrengthAndToleranceAndRefuseSeedsOutside) {
  const OwnedDib frame = test::imageOf(1, 1, 24, {0x800000});
  const auto filled = [&](int percent, int tolerance) {
    const Given got = test::given([&](auto image, auto mask, POINT*) {
      return ExtFillFrame(frame.get(), nullptr, 0x000080, 0x000000, percent, tolerance, image, mask);
    });
    return test::colourAt(got.image.get(), 0, 0);
  };
  EXPECT_EQ(filled(0, 0), 0x800000U);
  EXPECT_EQ(filled(50, 0), 0x400000U);
  EXPECT_EQ(filled(100, 0), 0x000000U);
  EXPECT_EQ(filled(100, -1), 0x800000U);
  EXPECT_EQ(filled(100, INT32_MAX), 0x000000U);
  EXPECT_EQ(filled(100, INT32_MIN), 0x800000U);
  // s = 118 x 256 / 100 = 302: (128 x 256 - 128 x 302) >> 8 = -23, low byte 0xE9.
  EXPECT_EQ(filled(118, 0), 0xE90000U);
  filled(INT32_MAX, 0);
  filled(INT32_MIN, 0);
  for (const POINT& seed : {POINT{1, 0}, {0, 1}, {-1, 0}, {0, -1}, {INT32_MIN, INT32_MAX}}) {
    const Given got = test::given([&](auto image, auto mask, POINT*) {
      return ExtFillAdjacentArea(frame.get(), nullptr, 0, 0, 100, 0, seed, image, mask);
    });
    EXPECT_EQ(got.result, 0);
    EXPECT_FALSE(got.image);
  }
}

}  // namespace
