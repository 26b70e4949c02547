#include <gtest/gtest.h>

#include "plain_finish.h"

namespace {

using dibkit::OwnedDib;
using test::Given;

DWORD entry(const OwnedDib& dib, DWORD index) {
  DWORD value;
  std::memcpy(&value, reinterpret_cast<BYTE*>(dib.get()) + 40 + index * 4, 4);
  return value;
}

struct Growth {
  int bitCount;
  int colours;   // entries of the frame's palette
  bool hasFill;  // the last one is the fill colour
  int newBitCount;
  DWORD newColours;  // biClrUsed of the result
};

TEST(InflateDib, GrowsThePaletteByOneColour) {
  const Growth cases[] = {
      {1, 2, true, 1, 2},     {1, 2, false, 4, 3},    {1, 1, false, 1, 2},   {4, 3, false, 4, 4},
      {4, 16, false, 8, 17},  {4, 16, true, 4, 16},   {8, 10, false, 8, 11}, {8, 255, false, 8, 256},
      {8, 256, true, 8, 256}, {8, 256, false, 24, 0},
  };
  for (const Growth& growth : cases) {
    SCOPED_TRACE(testing::Message() << growth.colours << " colours at " << growth.bitCount);
    std::vector<DWORD> palette;
    for (int i = 0; i < growth.colours; ++i)
      palette.push_back(0x77000000U | static_cast<DWORD>(i) * 0x010203);
    if (growth.hasFill) palette.back() = 0x77332211;
    const DWORD last = static_cast<DWORD>(growth.colours - 1);
    const OwnedDib frame = test::imageOf(2, 1, growth.bitCount, {last, 0}, palette);
    const OwnedDib mask = test::imageOf(2, 1, 1, {0, 1});
    const OwnedDib result(InflateDib(frame.get(), mask.get(), 0x99112233, 1, 2, 0, 1));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->biBitCount, growth.newBitCount);
    EXPECT_EQ(result->biClrUsed, growth.newColours);
    EXPECT_EQ(result->biWidth, 3);
    EXPECT_EQ(result->biHeight, 4);
    const DWORD own = test::colourAt(frame.get(), 0, 0);
    for (int y = 0; y < 4; ++y) {
      for (int x = 0; x < 3; ++x) {
        EXPECT_EQ(test::colourAt(result.get(), x, y), x == 1 && y == 2 ? own : 0x332211U) << x << ", " << y;
      }
    }
    if (growth.newBitCount == 24) continue;
    EXPECT_EQ(entry(result, 0), palette[0]);
    EXPECT_EQ(test::pixel(result, 1, 2), last);
    // The fill's entry: the one found with its reserved byte, a new one with 0.
    EXPECT_EQ(entry(result, test::pixel(result, 0, 0)), growth.hasFill ? 0x77332211U : 0x332211U);
  }
}

TEST(InflateDib, KeepsAFullPaletteThatIsNotCounted) {
  const OwnedDib frame = test::image(3, 3, 8);  // biClrUsed 0: 256 entries, all black
  const OwnedDib result(InflateDib(frame.get(), nullptr, 0, 0, 0, 0, 0));
  EXPECT_EQ(test::bytesOf(result), test::bytesOf(frame));
  // The first of equal entries serves.
  const OwnedDib twice = test::imageOf(1, 1, 8, {2}, {0x010101, 0x020202, 0x020202});
  const OwnedDib grown(InflateDib(twice.get(), nullptr, 0x020202, 1, 0, 0, 0));
  EXPECT_EQ(test::pixelsOf(grown), (std::vector<DWORD>{1, 2}));
}

TEST(InflateDib, EncodesDeepFramesAnew) {
  const OwnedDib words = test::imageOf(1, 1, 16, {0xFFFF});
  const OwnedDib grown16(InflateDib(words.get(), nullptr, 0x0000FF, 1, 0, 0, 0));
  EXPECT_EQ(test::pixelsOf(grown16), (std::vector<DWORD>{0x7C00, 0x7FFF}));
  const OwnedDib quads = test::imageOf(1, 1, 32, {0xAB123456});
  const OwnedDib grown32(InflateDib(quads.get(), nullptr, 0x0000FF, 0, 0, 1, 0));
  EXPECT_EQ(test::pixelsOf(grown32), (std::vector<DWORD>{0x00123456, 0x00FF0000}));
}

TEST(InflateDib, PlacesRandomFramesOfEveryDepth) {
  test::Random random(73);
  for (int round = 0; round < 300; ++round) {
    const int width = 1 + test::below(random, 20);
    const int height = 1 + test::below(random, 8);
    const OwnedDib frame = test::anyFrame(width, height, random);
    const OwnedDib mask = test::maybeMask(width, height, random);
    const int left = test::below(random, 16) - 5;
    const int top = test::below(random, 8) - 3;
    const int right = test::below(random, 16) - 5;
    const int bottom = test::below(random, 8) - 3;
    const auto fill = static_cast<DWORD>(random());
    const OwnedDib result(InflateDib(frame.get(), mask.get(), fill, left, top, right, bottom));
    const int newWidth = left + width + right;
    const int newHeight = top + height + bottom;
    if (newWidth < 0 || newHeight < 0) {
      ASSERT_FALSE(result);
      continue;
    }
    const auto five = [&](int shift) {
      const DWORD value = fill >> shift & 255;
      return frame->biBitCount == 16 ? value & 0xF8 : value;
    };
    const DWORD shown = five(0) << 16 | five(8) << 8 | five(16);
    ASSERT_EQ(result->biWidth, newWidth);
    ASSERT_EQ(result->biHeight, newHeight);
    for (int y = 0; y < newHeight; ++y) {
      for (int x = 0; x < newWidth; ++x) {
        const int sx = x - left;
        const int sy = y - top;
        const bool own =
            sx >= 0 && sy >= 0 && sx < width && sy < height && !test::transparentAt(mask.get(), sx, sy);
        ASSERT_EQ(test::colourAt(result.get(), x, y), own ? test::colourAt(frame.get(), sx, sy) : shown)
            << "round " << round;
      }
    }
  }
}

TEST(InflateDib, RefusesWhatCannotBe) {
  const OwnedDib frame = test::image(2, 2, 24);
  EXPECT_EQ(InflateDib(nullptr, nullptr, 0, 1, 1, 1, 1), nullptr);
  EXPECT_EQ(InflateDib(frame.get(), frame.get(), 0, 1, 1, 1, 1), nullptr);
  EXPECT_EQ(InflateDib(frame.get(), nullptr, 0, -3, 0, 0, 0), nullptr);
  EXPECT_EQ(InflateDib(frame.get(), nullptr, 0, INT32_MAX, 0, INT32_MAX, 0), nullptr);
  const OwnedDib odd = test::image(2, 2, 2);
  EXPECT_EQ(InflateDib(odd.get(), nullptr, 0, 1, 1, 1, 1), nullptr);
}

TEST(ExclusiveWhiteFill2BitsDib, SetsWhatLiesOutside) {
  test::Random random(74);
  for (int round = 0; round < 100; ++round) {
    const int width = 1 + test::below(random, 70);
    const int height = 1 + test::below(random, 6);
    const OwnedDib image = test::randomImage(width, height, 1, random);
    RECT rect{test::below(random, 80) - 5, test::below(random, 8) - 2, test::below(random, 80) - 5,
              test::below(random, 8) - 2};
    const OwnedDib result(CBitmapCreator::Clone(image.get()));
    ExclusiveWhiteFill2BitsDib(GetDIBBits(result.get()), width, height, rect);
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        const bool inside = x >= rect.left && x < rect.right && y >= rect.top && y < rect.bottom;
        ASSERT_EQ(test::pixel(result, x, y), inside ? test::pixel(image, x, y) : 1U);
      }
    }
  }
  RECT rect{0, 0, 1, 1};
  ExclusiveWhiteFill2BitsDib(nullptr, 5, 5, rect);
}

/// Everything as told, one pixel at a time.
Given plainBackground(const OwnedDib& frame, const OwnedDib& mask, POINT position, SIZE canvas, DWORD fill,
                      int percent, POINT seed) {
  const int s = percent * 256 / 100;
  DWORD background = 0;
  for (const int shift : {0, 8, 16}) {
    background |= static_cast<DWORD>(((test::channel(fill, shift) - 255) * s + 65280) >> 8 & 255) << shift;
  }
  const int right = canvas.cx - frame->biWidth - position.x;
  const int bottom = canvas.cy - frame->biHeight - position.y;
  OwnedDib image(InflateDib(frame.get(), mask.get(), background, position.x, position.y, right, bottom));
  // A mask that was given keeps its palette as it is counted.
  OwnedDib canvasMask =
      mask ? test::image(canvas.cx, canvas.cy, 1, {0, 0xFFFFFF}) : test::newMask(canvas.cx, canvas.cy);
  for (int y = 0; y < canvas.cy; ++y) {
    for (int x = 0; x < canvas.cx; ++x) {
      const int fx = x - position.x;
      const int fy = y - position.y;
      const bool inside = fx >= 0 && fy >= 0 && fx < frame->biWidth && fy < frame->biHeight;
      test::setPixel(canvasMask, x, y, !inside || test::transparentAt(mask.get(), fx, fy) ? 1 : 0);
    }
  }
  std::vector<bool> visited(static_cast<std::size_t>(canvas.cx * canvas.cy));
  const int first = seed.y * canvas.cx + position.x;
  if (first >= 0 && first < canvas.cx * canvas.cy) visited[static_cast<std::size_t>(first)] = true;
  std::vector<POINT> stack{seed};
  while (!stack.empty()) {
    const POINT at = stack.back();
    stack.pop_back();
    test::setPixel(canvasMask, at.x, at.y, 0);
    for (const POINT& next :
         {POINT{at.x, at.y + 1}, POINT{at.x + 1, at.y}, POINT{at.x, at.y - 1}, POINT{at.x - 1, at.y}}) {
      if (next.x < 0 || next.y < 0 || next.x >= canvas.cx || next.y >= canvas.cy) continue;
      const auto index = static_cast<std::size_t>(next.y * canvas.cx + next.x);
      if (visited[index]) continue;
      if (test::pixel(canvasMask, next.x, next.y) != 0) stack.push_back(next);
      visited[index] = true;
    }
  }
  RECT trim{0, 0, 0, 0};
  int margins[4];
  CaclOpaqueBoundary(canvasMask.get(), &margins[0], &margins[1], &margins[2], &margins[3]);
  trim = {margins[0], margins[1], canvas.cx - margins[2], canvas.cy - margins[3]};
  Given expected;
  expected.position = {trim.left, trim.top};
  expected.result = 1;
  if (margins[0] + margins[1] + margins[2] + margins[3] == 0) {
    expected.image = std::move(image);
    expected.mask = std::move(canvasMask);
    return expected;
  }
  const dibkit::OwnedRegion region(CreateRectRgn(trim.left, trim.top, trim.right, trim.bottom));
  BITMAPINFOHEADER* cut = nullptr;
  BITMAPINFOHEADER* cutMask = nullptr;
  expected.result = CropFrame(image.get(), canvasMask.get(), region.get(), &cut, &cutMask);
  expected.image.reset(cut);
  expected.mask.reset(cutMask);
  return expected;
}

TEST(ExtFillBkgnd, EqualsThePlainFillOnTheCanvas) {
  test::Random random(75);
  for (int round = 0; round < 500; ++round) {
    SCOPED_TRACE(round);
    const int width = 1 + test::below(random, 20);
    const int height = 1 + test::below(random, 10);
    const OwnedDib frame = test::anyFrame(width, height, random);
    const OwnedDib mask = test::maybeMask(width, height, random);
    const POINT position{test::below(random, 16) - 5, test::below(random, 12) - 4};
    const SIZE canvas{1 + test::below(random, 30), 1 + test::below(random, 16)};
    const POINT seed{test::below(random, canvas.cx), test::below(random, canvas.cy)};
    const auto fill = static_cast<DWORD>(random());
    const int percent = test::below(random, 101);
    const Given got = test::given([&](auto image, auto outMask, POINT* outPosition) {
      return ExtFillBkgnd(frame.get(), mask.get(), position, canvas, fill, percent, 12345, seed, image,
                          outMask, outPosition);
    });
    const Given expected = plainBackground(frame, mask, position, canvas, fill, percent, seed);
    ASSERT_EQ(got.result, expected.result);
    ASSERT_EQ(got.position.x, expected.position.x);
    ASSERT_EQ(got.position.y, expected.position.y);
    ASSERT_TRUE(test::sameBytes(expected.image, got.image.get()));
    ASSERT_TRUE(test::sameBytes(expected.mask, got.mask.get()));
  }
}

TEST(ExtFillBkgnd, StopsAtTheFramesColumnOnTheSeedsLine) {
  // A wholly transparent line with the frame at x = 2 and the seed at its left end: the pixel at x = 2 counts
  // as visited, so nothing beyond it is reached, and what stays transparent is cut off.
  const OwnedDib frame = test::image(3, 1, 24);
  const OwnedDib mask = test::imageOf(3, 1, 1, {1, 1, 1}, {0, 0xFFFFFF});
  const Given got = test::given([&](auto image, auto outMask, POINT* position) {
    return ExtFillBkgnd(frame.get(), mask.get(), {2, 0}, {5, 1}, 0x0000FF, 100, 0, {0, 0}, image, outMask,
                        position);
  });
  ASSERT_EQ(got.result, 1);
  EXPECT_EQ(test::pixelsOf(got.image), (std::vector<DWORD>{0xFF0000, 0xFF0000}));
  EXPECT_FALSE(got.mask);
  EXPECT_EQ(got.position.x, 0);
}

TEST(ExtFillBkgnd, GivesTheMaskOfAWhollyOpaqueCanvas) {
  const OwnedDib frame = test::imageOf(1, 1, 24, {0x123456});
  const Given got = test::given([&](auto image, auto mask, POINT* position) {
    return ExtFillBkgnd(frame.get(), nullptr, {1, 0}, {2, 1}, 0x0000FF, 0, 0, {0, 0}, image, mask, position);
  });
  ASSERT_EQ(got.result, 1);
  EXPECT_EQ(test::pixelsOf(got.image), (std::vector<DWORD>{0xFFFFFF, 0x123456}));  // percent 0 is white
  ASSERT_TRUE(got.mask);
  EXPECT_EQ(test::pixelsOf(got.mask), (std::vector<DWORD>{0, 0}));
}

TEST(ExtFillBkgnd, RefusesWhatCannotBe) {
  const OwnedDib frame = test::image(2, 2, 24);
  const OwnedDib darkMask = test::imageOf(2, 2, 1, {1, 1, 1, 1}, {0, 0});  // no white entry
  const auto call = [&](const OwnedDib& mask, POINT position, SIZE canvas, POINT seed) {
    return test::given([&](auto image, auto outMask, POINT* outPosition) {
             return ExtFillBkgnd(frame.get(), mask.get(), position, canvas, 0, 50, 0, seed, image, outMask,
                                 outPosition);
           })
        .result;
  };
  EXPECT_EQ(call(nullptr, {0, 0}, {2, 2}, {2, 0}), 0);
  EXPECT_EQ(call(nullptr, {0, 0}, {0, 0}, {0, 0}), 0);
  EXPECT_EQ(call(nullptr, {0, 0}, {-5, -5}, {-6, -6}), 0);
  EXPECT_EQ(call(darkMask, {0, 0}, {4, 4}, {3, 3}), 0);
  EXPECT_EQ(call(nullptr, {INT32_MAX, INT32_MAX}, {4, 4}, {3, 3}), 1);
  EXPECT_EQ(call(nullptr, {INT32_MIN, INT32_MIN}, {4, 4}, {3, 3}), 1);
}

}  // namespace
