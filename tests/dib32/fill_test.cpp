#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "literal_rules.h"
#include "support/bitmap_regions.h"

namespace {

using dibkit::OwnedDib;
using test::below;
using test::image;
using test::pixel;
using test::Random;
using test::setPixel;

/// What the fills work on.
struct Scene {
  OwnedDib image, mask;
  POINT maskOrigin{}, seed{};
  DWORD target = 0;
  COLORREF colour = 0;
  int erase = 0, opacity = 0, tolerance = 0;

  /// The mask's byte for a pixel of the image, 0 where it does not reach.
  int maskByte(int x, int y) const {
    const int mx = x - maskOrigin.x, my = y - maskOrigin.y;
    return covers(x, y) ? static_cast<int>(pixel(mask, mx, my)) : 0;
  }
  bool covers(int x, int y) const {
    const RECT box{maskOrigin.x, maskOrigin.y, maskOrigin.x + mask->biWidth, maskOrigin.y + mask->biHeight};
    return PtInRect(&box, {x, y}) != FALSE;
  }
};

/// Few colours and opacities, so that areas form.
Scene randomScene(Random& random) {
  const auto draw = [&](std::initializer_list<int> values) {
    return *(values.begin() + below(random, static_cast<int>(values.size())));
  };
  // Now and then longer than the pieces in which rows are searched.
  const int width = below(random, 40) == 0 ? draw({1023, 1024, 1100}) : draw({1, 2, 5, 9, 33, 70});
  const int height = draw({1, 2, 4, 7, 12});
  Scene s{image(width, height, 32), image(draw({1, 3, 8, 40, width}), draw({1, 5, 13}), 8)};
  const auto base = static_cast<DWORD>(random());
  const DWORD palette[] = {base, base, base, base ^ 0x03, base ^ 0x0700, base ^ 0x01000000, 0, 0x00AABBCC};
  const int colours = draw({1, 3, 6, 8});
  for (int i = 0; i < width * height; ++i)
    setPixel(s.image, i % width, i / width, palette[below(random, colours)]);
  if (below(random, 5) == 0) {
    CDIB32::MakeAllPixelsSameOpacity(s.image.get(), static_cast<BYTE>(draw({0, 1, 128, 254, 255})));
  }
  test::fillRandom(s.mask.get(), random);
  s.maskOrigin = {below(random, 9) - 4, below(random, 9) - 4};
  s.seed = {draw({0, width - 1, below(random, width)}), draw({0, height - 1, below(random, height)})};
  if (below(random, 3) == 0) setPixel(s.image, s.seed.x, s.seed.y, palette[5 + below(random, 3)]);
  s.target = draw({0, 0, 1}) != 0 ? pixel(s.image, s.seed.x, s.seed.y) : base;
  s.colour = static_cast<COLORREF>(random());
  s.erase = draw({0, 0, 0, 7});
  s.opacity = draw({0, 1, 77, 128, 254, 255, 256, 511, -1});
  s.tolerance = draw({0, 0, 1, 5, 255, -1, INT32_MAX, INT32_MIN});
  return s;
}

struct Fill {
  bool connected, masked;
  /// Takes transparent pixels and replaces them, instead of laying over those like the target.
  bool transparent;
  BOOL (*run)(const Scene& s, RECT* bounds);
};

const Fill fills[] = {
    {true, false, false,
     [](const Scene& s, RECT* bounds) {
       return CDIB32::ExtFillConnectedPixels(s.image.get(), s.target, s.colour, s.erase, s.opacity,
                                             s.tolerance, s.seed, bounds);
     }},
    {true, true, false,
     [](const Scene& s, RECT*) {
       return CDIB32::ExtFillConnectedPixels_Mask(s.image.get(), s.target, s.colour, s.opacity, s.tolerance,
                                                  s.seed, s.mask.get(), CPoint(s.maskOrigin));
     }},
    {true, false, true,
     [](const Scene& s, RECT*) {
       return CDIB32::ExtFillConnectedTransPixels(s.image.get(), s.colour, s.opacity, s.seed);
     }},
    {true, true, true,
     [](const Scene& s, RECT*) {
       return CDIB32::ExtFillConnectedTransPixels_Mask(s.image.get(), s.colour, s.opacity, s.seed,
                                                       s.mask.get(), CPoint(s.maskOrigin));
     }},
    {false, false, false,
     [](const Scene& s, RECT*) {
       return CDIB32::ExtFill32BitsDIB(s.image.get(), s.target, s.colour, s.opacity, s.tolerance);
     }},
    {false, true, false,
     [](const Scene& s, RECT*) {
       return CDIB32::ExtFill32BitsDIB_Mask(s.image.get(), s.target, s.colour, s.opacity, s.tolerance,
                                            s.mask.get(), CPoint(s.maskOrigin));
     }},
    {false, false, true,
     [](const Scene& s, RECT*) { return CDIB32::ExtFillTransBlock(s.image.get(), s.colour, s.opacity); }},
    {false, true, true,
     [](const Scene& s, RECT*) {
       return CDIB32::ExtFillTransBlock_Mask(s.image.get(), s.colour, s.opacity, s.mask.get(),
                                             CPoint(s.maskOrigin));
     }},
};

bool isLike(DWORD value, DWORD target, std::int64_t tolerance) {
  bool all = value >> 24 == target >> 24;
  for (const int shift : {0, 8, 16}) {
    const std::int64_t v = target >> shift & 255, c = value >> shift & 255;
    all = all && c >= std::max<std::int64_t>(v - tolerance, 0) &&
          c <= std::min<std::int64_t>(v + tolerance, 255);
  }
  return all;
}

DWORD layerOf(COLORREF colour, int opacity) {
  return static_cast<DWORD>(opacity) << 24 | (colour & 255) << 16 | (colour & 0xFF00) | (colour >> 16 & 255);
}

/// A pixel that a fill takes, under a mask byte, after the fill.
DWORD filled(const Scene& s, const Fill& fill, DWORD before, int maskByte) {
  if (&fill == &fills[0] && s.erase != 0) return before & 0xFFFFFF;
  DWORD layer = layerOf(s.colour, (s.opacity & 255) * maskByte / 255);
  if (fill.transparent) return maskByte != 0 ? layer : before;
  test::combine(reinterpret_cast<BYTE*>(&before), reinterpret_cast<BYTE*>(&layer), 0);
  return before;
}

TEST(Fills, EqualTheWalkAndTheLookPixelByPixel) {
  Random random(11);
  for (int round = 0; round < 3000; ++round) {
    const Scene s = randomScene(random);
    const Fill& fill = fills[round % 8];
    const int width = s.image->biWidth, height = s.image->biHeight;
    const auto takes = [&](int x, int y) {
      const DWORD value = pixel(s.image, x, y);
      return (fill.transparent ? value >> 24 == 0 : isLike(value, s.target, s.tolerance)) &&
             (!fill.masked || s.maskByte(x, y) != 0);
    };
    const test::Bitmap taken =
        fill.connected ? test::reachedFrom(s.seed, width, height, takes) : test::Bitmap(width, height, takes);
    const OwnedDib expected(CBitmapCreator::Clone(s.image.get()));
    RECT bounds{}, expectedBounds{};
    taken.forEachRun([&](int y, int left, int right) {
      const RECT run{left, y, right, y + 1};
      UnionRect(&expectedBounds, &expectedBounds, &run);
      for (int x = left; x < right; ++x) {
        setPixel(expected, x, y, filled(s, fill, pixel(s.image, x, y), fill.masked ? s.maskByte(x, y) : 255));
      }
    });
    const bool wantsBounds = round % 16 == 0;
    ASSERT_TRUE(fill.run(s, wantsBounds ? &bounds : nullptr));
    // A seed beside the mask has its own test.
    if (fill.connected && fill.masked && !s.covers(s.seed.x, s.seed.y)) {
      setPixel(expected, s.seed.x, s.seed.y, pixel(s.image, s.seed.x, s.seed.y));
    }
    ASSERT_EQ(test::bytesOf(s.image), test::bytesOf(expected)) << "round " << round;
    ASSERT_TRUE(!wantsBounds || EqualRect(&bounds, &expectedBounds));
  }
}

TEST(MaskedFills, ReadTheSeedsByteByAddress) {
  // A mask of 3 x 2 bytes: rows of four, the fourth being padding; in memory the lower row comes first.
  const OwnedDib mask = test::imageOf(3, 2, 8, {10, 20, 30, 40, 50, 60});
  test::rowOf(mask.get(), 0)[3] = 255;
  test::rowOf(mask.get(), 1)[3] = 128;
  struct Case {
    POINT origin;
    int byte;  // what the seed at (4, 4) gets
  };
  const Case cases[] = {
      {{4, 4}, 10},        {{2, 3}, 60},                        // covered
      {{1, 4}, 255},       {{1, 3}, 128},                       // padding
      {{5, 4}, 128},       {{0, 3}, 10},        {{-1, 3}, 20},  // the row before or after in memory
      {{0, 4}, 0},         {{4, 5}, 0},                         // beyond the last byte of the block
      {{4, INT32_MIN}, 0}, {{4, INT32_MAX}, 0}, {{INT32_MIN, 4}, 0}, {{INT32_MAX, INT32_MAX}, 0},
  };
  for (const Case& c : cases) {
    const OwnedDib laid(CDIB32::CreateSimple32BitsDIB(9, 9, RGB(7, 7, 7), 0));
    // No pixel is like this target, so the seed alone is painted.
    EXPECT_TRUE(CDIB32::ExtFillConnectedPixels_Mask(laid.get(), 0x55000000, RGB(1, 2, 3), 255, 0, {4, 4},
                                                    mask.get(), CPoint(c.origin)));
    EXPECT_EQ(pixel(laid, 4, 4), c.byte == 0 ? 0 : layerOf(RGB(1, 2, 3), c.byte))
        << c.origin.x << ", " << c.origin.y;
  }
}

TEST(Fill32DIBOpacityArea, KeepsToTheImageAndTheRegion) {
  constexpr DWORD o = 0x01050607, X = 0xC8050607;
  using Pixels = std::vector<DWORD>;
  const auto filled = [](const auto& area) {
    const OwnedDib dib(CDIB32::CreateSimple32BitsDIB(4, 3, RGB(5, 6, 7), 1));
    EXPECT_TRUE(CDIB32::Fill32DIBOpacityArea(dib.get(), area, 200));
    return test::pixelsOf(dib);
  };
  EXPECT_EQ(filled(RECT{1, 1, 3, 2}), (Pixels{o, o, o, o, o, X, X, o, o, o, o, o}));
  EXPECT_EQ(filled(RECT{2, -5, INT32_MAX, 2}), (Pixels{o, o, X, X, o, o, X, X, o, o, o, o}));
  EXPECT_EQ(filled(RECT{INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX}), Pixels(12, X));
  EXPECT_EQ(filled(RECT{3, 0, 1, 3}), Pixels(12, o));
  EXPECT_EQ(filled(RECT{-9, 0, 0, 3}), Pixels(12, o));

  const dibkit::OwnedRegion region(CreateRectRgn(-3, 0, 2, 2)), hole(CreateRectRgn(0, 0, 1, 1));
  CombineRgn(region.get(), region.get(), hole.get(), RGN_DIFF);
  EXPECT_EQ(filled(region.get()), (Pixels{o, X, o, o, X, X, o, o, o, o, o, o}));

  EXPECT_FALSE(CDIB32::Fill32DIBOpacityArea(nullptr, RECT{0, 0, 1, 1}, 1));
  EXPECT_FALSE(CDIB32::Fill32DIBOpacityArea(image(4, 3, 8).get(), RECT{0, 0, 1, 1}, 1));
  EXPECT_FALSE(CDIB32::Fill32DIBOpacityArea(image(4, 3, 32).get(), static_cast<HRGN>(nullptr), 1));
}

}  // namespace
