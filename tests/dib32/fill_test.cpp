#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "dib32/placed.h"
#include "support/bitmap_regions.h"

namespace {

using dibkit::OwnedDib;
using test::below;
using test::oneOf;
using test::pixel;

/// The arguments of the fills: few colours and alphas, so that areas form.
struct Scene {
  explicit Scene(test::Random& random) {
    // Now and then longer than the pieces in which rows are searched.
    const int width =
        below(random, 40) == 0 ? oneOf(random, {1023, 1024, 1100}) : oneOf(random, {1, 2, 5, 9, 33, 70});
    const int height = oneOf(random, {1, 2, 4, 7, 12});
    const auto base = static_cast<DWORD>(random());
    const DWORD palette[] = {base, base, base, base ^ 0x03, base ^ 0x0700, base ^ 0x01000000, 0, 0x00AABBCC};
    const int colours = oneOf(random, {1, 3, 6, 8});
    picture = test::drawn(width, height, 32, [&](int, int) { return palette[below(random, colours)]; });
    image = picture.get();
    if (below(random, 5) == 0) {
      CDIB32::MakeAllPixelsSameOpacity(image, test::byteOf(oneOf(random, {0, 1, 128, 254, 255})));
    }
    seed = {oneOf(random, {0, width - 1, below(random, width)}),
            oneOf(random, {0, height - 1, below(random, height)})};
    if (below(random, 3) == 0) test::setPixel(image, seed.x, seed.y, palette[5 + below(random, 3)]);
    target = oneOf(random, {base, base, pixel(image, seed.x, seed.y)});
    colour = static_cast<COLORREF>(random());
    cover = test::randomImage(oneOf(random, {1, 3, 8, 40, width}), oneOf(random, {1, 5, 13}), 8, random);
    mask = cover.get();
    maskAt = CPoint(test::randomPoint(random, 4));
    erase = oneOf(random, {0, 0, 0, 7});
    opacity = oneOf(random, {0, 1, 77, 128, 254, 255, 256, 511, -1});
    tolerance = oneOf(random, {0, 0, 1, 5, 255, -1, INT32_MAX, INT32_MIN});
  }
  bool maskCovers(int x, int y) const {
    const RECT box = test::boundsOf(mask);
    return PtInRect(&box, {x - maskAt.x, y - maskAt.y}) != FALSE;
  }
  int maskByte(int x, int y) const {
    return maskCovers(x, y) ? static_cast<int>(pixel(mask, x - maskAt.x, y - maskAt.y)) : 0;
  }

  OwnedDib picture, cover;
  BITMAPINFOHEADER *image, *mask;
  CPoint maskAt;
  POINT seed;
  DWORD target;
  COLORREF colour;
  int erase, opacity, tolerance;
  RECT* bounds = nullptr;
};

/// Calls an operation with members of the scene as its arguments.
template <auto function, auto... arguments>
BOOL run(Scene& s) {
  return function(s.*arguments...);
}
using S = Scene;

struct Fill {
  bool connected, masked;
  bool transparent;  ///< replaces transparent pixels, instead of compositing over those near the target
  BOOL (*run)(Scene& s);
};
const Fill fills[] = {
    {true, false, false,
     run<CDIB32::ExtFillConnectedPixels, &S::image, &S::target, &S::colour, &S::erase, &S::opacity,
         &S::tolerance, &S::seed, &S::bounds>},
    {true, true, false,
     run<CDIB32::ExtFillConnectedPixels_Mask, &S::image, &S::target, &S::colour, &S::opacity, &S::tolerance,
         &S::seed, &S::mask, &S::maskAt>},
    {true, false, true,
     run<CDIB32::ExtFillConnectedTransPixels, &S::image, &S::colour, &S::opacity, &S::seed>},
    {true, true, true,
     run<CDIB32::ExtFillConnectedTransPixels_Mask, &S::image, &S::colour, &S::opacity, &S::seed, &S::mask,
         &S::maskAt>},
    {false, false, false,
     run<CDIB32::ExtFill32BitsDIB, &S::image, &S::target, &S::colour, &S::opacity, &S::tolerance>},
    {false, true, false,
     run<CDIB32::ExtFill32BitsDIB_Mask, &S::image, &S::target, &S::colour, &S::opacity, &S::tolerance,
         &S::mask, &S::maskAt>},
    {false, false, true, run<CDIB32::ExtFillTransBlock, &S::image, &S::colour, &S::opacity>},
    {false, true, true,
     run<CDIB32::ExtFillTransBlock_Mask, &S::image, &S::colour, &S::opacity, &S::mask, &S::maskAt>},
};

/// The same alpha, and each channel within the tolerance; no pixel is within a negative one.
bool isNear(DWORD value, DWORD target, int tolerance) {
  bool all = value >> 24 == target >> 24;
  for (const int shift : {0, 8, 16}) {
    all = all && std::abs(static_cast<int>(value >> shift & 255) - static_cast<int>(target >> shift & 255)) <=
                     tolerance;
  }
  return all;
}

DWORD layerOf(COLORREF colour, int alpha) {
  return static_cast<DWORD>(alpha) << 24 | (colour & 255) << 16 | (colour & 0xFF00) | (colour >> 16 & 255);
}

/// A pixel that a fill takes, under a mask byte, after the fill. Of the opacity only the low byte counts.
DWORD filled(const Scene& s, const Fill& fill, DWORD before, int maskByte) {
  if (&fill == fills && s.erase != 0) return before & test::colourBits;
  const int alpha = (s.opacity & 255) * maskByte / 255;
  if (fill.transparent) return maskByte != 0 ? layerOf(s.colour, alpha) : before;
  return test::over(before, layerOf(s.colour, alpha), alpha);
}

TEST(Fills, TakeWhatAWalkOrALookPixelByPixelTakes) {
  test::Random random(11);
  for (int round = 0; round < 3000; ++round) {
    SCOPED_TRACE(round);
    Scene s(random);
    const Fill& fill = fills[round % 8];
    const OwnedDib before = test::copyOf(s.image);
    const auto maskByte = [&](int x, int y) { return fill.masked ? s.maskByte(x, y) : 255; };
    const auto takes = [&](int x, int y) {
      const DWORD value = pixel(before, x, y);
      return (fill.transparent ? value >> 24 == 0 : isNear(value, s.target, s.tolerance)) &&
             maskByte(x, y) != 0;
    };
    const int width = before->biWidth, height = before->biHeight;
    const test::Bitmap taken =
        fill.connected ? test::reachedFrom(s.seed, width, height, takes) : test::Bitmap(width, height, takes);
    RECT bounds{}, expectedBounds{};
    s.bounds = round % 16 == 0 ? &bounds : nullptr;
    ASSERT_TRUE(fill.run(s));
    const OwnedDib expected = test::drawn(width, height, 32, [&](int x, int y) {
      // A seed beside the mask has its own test.
      const bool isSeed = fill.connected && fill.masked && x == s.seed.x && y == s.seed.y;
      if (isSeed && !s.maskCovers(x, y)) return pixel(s.image, x, y);
      if (!taken.at(x, y)) return pixel(before, x, y);
      const RECT one{x, y, x + 1, y + 1};
      UnionRect(&expectedBounds, &expectedBounds, &one);
      return filled(s, fill, pixel(before, x, y), maskByte(x, y));
    });
    ASSERT_TRUE(test::bytesOf(s.image) == test::bytesOf(expected));
    ASSERT_TRUE(s.bounds == nullptr || EqualRect(&bounds, &expectedBounds));
  }
}

TEST(MaskedFills, ReadTheSeedsByteByAddress) {
  // A mask of 3 x 2 bytes: rows of four, the fourth being padding; in memory the lower row comes first.
  const OwnedDib mask = test::imageOf(3, 2, 8, {10, 20, 30, 40, 50, 60});
  test::rowOf(mask.get(), 0)[3] = 255;
  test::rowOf(mask.get(), 1)[3] = 128;
  const struct {
    POINT origin;
    int byte;  // what the seed at (4, 4) gets
  } cases[] = {
      {{4, 4}, 10},        {{2, 3}, 60},                        // covered
      {{1, 4}, 255},       {{1, 3}, 128},                       // padding
      {{5, 4}, 128},       {{0, 3}, 10},        {{-1, 3}, 20},  // the row before or after in memory
      {{0, 4}, 0},         {{4, 5}, 0},                         // beyond the last byte of the block
      {{4, INT32_MIN}, 0}, {{4, INT32_MAX}, 0}, {{INT32_MIN, 4}, 0}, {{INT32_MAX, INT32_MAX}, 0},
  };
  for (const auto& expected : cases) {
    const OwnedDib image(CDIB32::CreateSimple32BitsDIB(9, 9, RGB(7, 7, 7), 0));
    // No pixel is near this target, so the seed alone is filled.
    EXPECT_TRUE(CDIB32::ExtFillConnectedPixels_Mask(image.get(), 0x55000000, RGB(1, 2, 3), 255, 0, {4, 4},
                                                    mask.get(), CPoint(expected.origin)));
    EXPECT_EQ(pixel(image, 4, 4), expected.byte == 0 ? 0 : layerOf(RGB(1, 2, 3), expected.byte))
        << expected.origin.x << ", " << expected.origin.y;
  }
}

}  // namespace
