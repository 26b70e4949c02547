#include <functional>

#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "support/images.h"

namespace {

using dibkit::OwnedDib;
using test::pixel;
using test::Random;
using test::setPixel;

int channelOf(DWORD value, int shift) { return static_cast<int>(value >> shift & 255); }

/// The colour with red in the low byte laid over a pixel, in plain integers.
DWORD layOver(DWORD below, COLORREF colour, int opacity) {
  const int ad = channelOf(below, 24);
  const int ao = 255 - (255 - ad) * (255 - opacity) / 255;
  DWORD result = static_cast<DWORD>(ao) << 24;
  for (const int shift : {0, 8, 16}) {
    int value =
        channelOf(below, shift) * ad * (255 - opacity) / 255 + channelOf(colour, 16 - shift) * opacity;
    if (ao > 0) value /= ao;
    result |= static_cast<DWORD>(std::min(value, 255)) << shift;
  }
  return result;
}

DWORD colourWithAlpha(COLORREF colour, int alpha) {
  return static_cast<DWORD>(alpha) << 24 | (colour & 255) << 16 | (colour & 0xFF00) | (colour >> 16 & 255);
}

bool isLike(DWORD value, DWORD target, std::int64_t tolerance) {
  if (value >> 24 != target >> 24) return false;
  for (const int shift : {0, 8, 16}) {
    const std::int64_t v = channelOf(target, shift);
    const int c = channelOf(value, shift);
    if (c < std::max<std::int64_t>(v - tolerance, 0) || c > std::min<std::int64_t>(v + tolerance, 255)) {
      return false;
    }
  }
  return true;
}

/// The mask's byte for an image point by plain address arithmetic, -1 where the mask does not reach.
struct MaskBytes {
  const BITMAPINFOHEADER* dib;
  POINT origin;

  int covered(int x, int y) const {
    const int mx = x - origin.x;
    const int my = y - origin.y;
    if (mx < 0 || mx >= dib->biWidth || my < 0 || my >= dib->biHeight) return -1;
    return static_cast<int>(pixel(dib, mx, my));
  }
  int byAddress(int x, int y) const {
    const int stride = (dib->biWidth + 3) / 4 * 4;
    const std::ptrdiff_t bits = GetDIBBits(dib) - reinterpret_cast<const BYTE*>(dib);
    const std::ptrdiff_t at =
        bits + (dib->biHeight - 1 - (y - origin.y)) * std::ptrdiff_t{stride} + (x - origin.x);
    if (at < 0 || at >= bits + std::ptrdiff_t{stride} * dib->biHeight) return 0;
    return reinterpret_cast<const BYTE*>(dib)[at];
  }
};

/// The fill as a stack of points, one pixel at a time.
/// \param enter whether the fill may enter an unpainted pixel by its value
/// \param mask null for none; a pixel that it shuts out is not marked as visited
RECT plainFill(BITMAPINFOHEADER* image, POINT seed, const std::function<bool(DWORD)>& enter,
               const std::function<void(int, int)>& paint, const MaskBytes* mask) {
  std::vector<bool> visited(static_cast<std::size_t>(image->biWidth * image->biHeight));
  const auto index = [&](POINT p) { return static_cast<std::size_t>(p.y * image->biWidth + p.x); };
  std::vector<POINT> stack{seed};
  visited[index(seed)] = true;
  RECT bounds{seed.x, seed.y, seed.x + 1, seed.y + 1};
  while (!stack.empty()) {
    const POINT at = stack.back();
    stack.pop_back();
    paint(at.x, at.y);
    bounds = {std::min(bounds.left, at.x), std::min(bounds.top, at.y), std::max(bounds.right, at.x + 1),
              std::max(bounds.bottom, at.y + 1)};
    for (const POINT& next :
         {POINT{at.x, at.y + 1}, POINT{at.x + 1, at.y}, POINT{at.x, at.y - 1}, POINT{at.x - 1, at.y}}) {
      if (next.x < 0 || next.x >= image->biWidth || next.y < 0 || next.y >= image->biHeight) continue;
      if (visited[index(next)]) continue;
      const bool like = enter(pixel(image, next.x, next.y));
      if (like && mask != nullptr && mask->covered(next.x, next.y) <= 0) continue;
      if (like) stack.push_back(next);
      visited[index(next)] = true;
    }
  }
  return bounds;
}

/// A random picture of few colours and opacities, so that areas form, with a random mask and arguments.
struct Scene {
  OwnedDib image, expected, mask;
  MaskBytes maskBytes{};
  POINT seed{};
  DWORD target = 0;
  COLORREF fill = 0;
  int opacity = 0;
  int tolerance = 0;

  explicit Scene(Random& random) {
    const auto draw = [&](std::initializer_list<int> values) {
      return *(values.begin() + test::below(random, static_cast<int>(values.size())));
    };
    const int width = draw({1, 2, 5, 9, 33, 70});
    const int height = draw({1, 2, 4, 7, 12});
    image = test::image(width, height, 32);
    const DWORD base = static_cast<DWORD>(random());
    const DWORD palette[] = {base, base, base, base ^ 0x03, base ^ 0x0700, base ^ 0x01000000, 0, 0x00AABBCC};
    const int colours = draw({1, 3, 6, 8});
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) setPixel(image, x, y, palette[test::below(random, colours)]);
    }
    if (test::below(random, 3) == 0) {
      CDIB32::MakeAllPixelsSameOpacity(image.get(), static_cast<BYTE>(draw({0, 1, 128, 254, 255})));
    }
    expected.reset(CBitmapCreator::Clone(image.get()));
    mask = test::image(draw({1, 3, 8, 40}), draw({1, 5, 13}), 8);
    test::fillRandom(mask.get(), random);
    maskBytes = {mask.get(), {test::below(random, 9) - 4, test::below(random, 9) - 4}};
    seed = draw({0, 1}) != 0 ? POINT{draw({0, width - 1}), draw({0, height - 1})}
                             : POINT{test::below(random, width), test::below(random, height)};
    target = draw({0, 0, 0, 1}) != 0 ? base : pixel(image, seed.x, seed.y);
    fill = static_cast<COLORREF>(random());
    opacity = draw({0, 1, 77, 128, 254, 255, 256, 511, -1});
    tolerance = draw({0, 0, 1, 5, 255, -1, INT32_MAX, INT32_MIN});
  }
  CPoint maskOrigin() const { return CPoint(maskBytes.origin); }
  void lay(int x, int y, int scale) {
    setPixel(expected, x, y, layOver(pixel(expected, x, y), fill, (opacity & 255) * scale / 255));
  }
  void put(int x, int y, int scale) {
    setPixel(expected, x, y, colourWithAlpha(fill, (opacity & 255) * scale / 255));
  }
  int seedOr(int x, int y) const {
    return x == seed.x && y == seed.y ? maskBytes.byAddress(x, y) : maskBytes.covered(x, y);
  }
  template <class Paint>
  void paintEverywhere(const std::function<bool(DWORD)>& enter, bool masked, Paint&& paint) {
    for (int y = 0; y < image->biHeight; ++y) {
      for (int x = 0; x < image->biWidth; ++x) {
        const int scale = masked ? maskBytes.covered(x, y) : 255;
        if (scale > 0 && enter(pixel(image, x, y))) paint(x, y, scale);
      }
    }
  }
  void expectSame(int round) const {
    ASSERT_EQ(test::bytesOf(image), test::bytesOf(expected)) << "round " << round;
  }
};

constexpr int rounds = 1500;

TEST(ConnectedFills, EqualTheStackOfPoints) {
  Random random(11);
  for (int round = 0; round < rounds; ++round) {
    Scene s(random);
    const auto like = [&](DWORD value) { return isLike(value, s.target, s.tolerance); };
    const auto transparent = [](DWORD value) { return value >> 24 == 0; };
    const int erase = round % 5 == 0 ? 7 : 0;
    RECT bounds{};
    switch (round % 4) {
      case 0: {
        const RECT expectedBounds = plainFill(
            s.expected.get(), s.seed, like,
            [&](int x, int y) {
              if (erase != 0) {
                setPixel(s.expected, x, y, pixel(s.expected, x, y) & 0xFFFFFF);
              } else {
                s.lay(x, y, 255);
              }
            },
            nullptr);
        ASSERT_TRUE(CDIB32::ExtFillConnectedPixels(s.image.get(), s.target, s.fill, erase, s.opacity,
                                                   s.tolerance, s.seed, &bounds));
        ASSERT_TRUE(EqualRect(&bounds, &expectedBounds));
        break;
      }
      case 1:
        plainFill(
            s.expected.get(), s.seed, like, [&](int x, int y) { s.lay(x, y, s.seedOr(x, y)); }, &s.maskBytes);
        ASSERT_TRUE(CDIB32::ExtFillConnectedPixels_Mask(s.image.get(), s.target, s.fill, s.opacity,
                                                        s.tolerance, s.seed, s.mask.get(), s.maskOrigin()));
        break;
      case 2:
        plainFill(
            s.expected.get(), s.seed, transparent, [&](int x, int y) { s.put(x, y, 255); }, nullptr);
        ASSERT_TRUE(CDIB32::ExtFillConnectedTransPixels(s.image.get(), s.fill, s.opacity, s.seed));
        break;
      default:
        plainFill(
            s.expected.get(), s.seed, transparent,
            [&](int x, int y) {
              if (s.seedOr(x, y) != 0) s.put(x, y, s.seedOr(x, y));
            },
            &s.maskBytes);
        ASSERT_TRUE(CDIB32::ExtFillConnectedTransPixels_Mask(s.image.get(), s.fill, s.opacity, s.seed,
                                                             s.mask.get(), s.maskOrigin()));
    }
    s.expectSame(round);
  }
}

TEST(SimilarFills, EqualALookAtEveryPixel) {
  Random random(12);
  for (int round = 0; round < rounds; ++round) {
    Scene s(random);
    const auto like = [&](DWORD value) { return isLike(value, s.target, s.tolerance); };
    const auto transparent = [](DWORD value) { return value >> 24 == 0; };
    const auto lay = [&](int x, int y, int scale) { s.lay(x, y, scale); };
    const auto put = [&](int x, int y, int scale) { s.put(x, y, scale); };
    BITMAPINFOHEADER* const image = s.image.get();
    switch (round % 4) {
      case 0:
        s.paintEverywhere(like, false, lay);
        ASSERT_TRUE(CDIB32::ExtFill32BitsDIB(image, s.target, s.fill, s.opacity, s.tolerance));
        break;
      case 1:
        s.paintEverywhere(like, true, lay);
        ASSERT_TRUE(CDIB32::ExtFill32BitsDIB_Mask(image, s.target, s.fill, s.opacity, s.tolerance,
                                                  s.mask.get(), s.maskOrigin()));
        break;
      case 2:
        s.paintEverywhere(transparent, false, put);
        ASSERT_TRUE(CDIB32::ExtFillTransBlock(image, s.fill, s.opacity));
        break;
      default:
        s.paintEverywhere(transparent, true, put);
        ASSERT_TRUE(CDIB32::ExtFillTransBlock_Mask(image, s.fill, s.opacity, s.mask.get(), s.maskOrigin()));
    }
    s.expectSame(round);
  }
}

TEST(SimilarFills, TakeLongRowsPieceByPiece) {
  // Runs that cross the pieces in which a row is searched, with the odd pixel left out.
  for (const int width : {1023, 1024, 1025, 3000}) {
    const OwnedDib image(CDIB32::CreateSimple32BitsDIB(width, 1, RGB(9, 9, 9), 200));
    setPixel(image, 1000, 0, 0);
    ASSERT_TRUE(CDIB32::ExtFill32BitsDIB(image.get(), 0xC8090909, RGB(1, 2, 3), 255, 0));
    std::vector<DWORD> expected(static_cast<std::size_t>(width), 0xFF010203);
    expected[1000] = 0;
    EXPECT_EQ(test::pixelsOf(image), expected);
  }
}

constexpr DWORD a = 0xFF102030;  // the target
constexpr DWORD n = 0xFF112130;  // one step away in red and green
constexpr DWORD t = 0xFE102030;  // the target's colour, another opacity
constexpr DWORD F = 0xFF030201;  // the fill, laid at full opacity
constexpr DWORD e = 0x00102030;  // the target, erased

TEST(ExtFillConnectedPixels, KeepsToTheRulesOfItsNeighbourhood) {
  struct Case {
    const char* what;
    std::vector<DWORD> before;  // 3 x 3
    POINT seed;
    int erase, opacity, tolerance;
    std::vector<DWORD> after;
    RECT bounds;
  };
  const Case cases[] = {
      {"corners do not join",
       {a, n, a, n, a, n, a, n, a},
       {1, 1},
       0,
       255,
       0,
       {a, n, a, n, F, n, a, n, a},
       {1, 1, 2, 2}},
      {"one step of tolerance",
       {a, n, a, n, a, t, t, t, a},
       {0, 0},
       0,
       255,
       1,
       {F, F, F, F, F, t, t, t, a},
       {0, 0, 3, 2}},
      {"opacity knows no tolerance",
       {t, t, t, t, a, t, t, t, t},
       {1, 1},
       0,
       255,
       255,
       {t, t, t, t, F, t, t, t, t},
       {1, 1, 2, 2}},
      {"a seed unlike the target",
       {a, a, n, a, n, n, t, n, a},
       {2, 0},
       0,
       255,
       0,
       {F, F, F, F, n, n, t, n, a},
       {0, 0, 3, 2}},
      {"erasing keeps the colour",
       {a, n, a, a, n, a, a, a, a},
       {0, 0},
       1,
       255,
       0,
       {e, n, e, e, n, e, e, e, e},
       {0, 0, 3, 3}},
      {"no opacity changes nothing",
       {a, a, a, n, n, n, t, t, t},
       {1, 0},
       0,
       0,
       0,
       {a, a, a, n, n, n, t, t, t},
       {0, 0, 3, 1}},
      {"a negative tolerance is met by nothing",
       {a, a, a, a, a, a, a, a, a},
       {1, 2},
       0,
       255,
       -1,
       {a, a, a, a, a, a, a, F, a},
       {1, 2, 2, 3}},
      {"no opacity over none takes the colour",
       {0x00102030, n, n, n, n, n, n, n, n},
       {0, 0},
       0,
       256,
       0,
       {0, n, n, n, n, n, n, n, n},
       {0, 0, 1, 1}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const OwnedDib image = test::imageOf(3, 3, 32, c.before);
    RECT bounds{-1, -1, -1, -1};
    EXPECT_TRUE(CDIB32::ExtFillConnectedPixels(image.get(), a, RGB(3, 2, 1), c.erase, c.opacity, c.tolerance,
                                               c.seed, &bounds));
    EXPECT_EQ(test::pixelsOf(image), c.after);
    EXPECT_TRUE(EqualRect(&bounds, &c.bounds));
    EXPECT_TRUE(CDIB32::ExtFillConnectedPixels(image.get(), a, RGB(3, 2, 1), c.erase, 0, 0, c.seed, nullptr));
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
    SCOPED_TRACE(testing::Message() << c.origin.x << ", " << c.origin.y);
    const auto origin = CPoint(c.origin);
    const OwnedDib laid(CDIB32::CreateSimple32BitsDIB(9, 9, RGB(7, 7, 7), 0));
    // No pixel is like this target, so the seed alone is painted.
    EXPECT_TRUE(CDIB32::ExtFillConnectedPixels_Mask(laid.get(), 0x55000000, RGB(1, 2, 3), 255, 0, {4, 4},
                                                    mask.get(), origin));
    EXPECT_EQ(pixel(laid, 4, 4), c.byte == 0 ? 0 : colourWithAlpha(RGB(1, 2, 3), c.byte));
    const OwnedDib put(CDIB32::CreateSimple32BitsDIB(9, 9, RGB(7, 7, 7), 0));
    setPixel(put, 4, 4, 0xFF070707);
    EXPECT_TRUE(
        CDIB32::ExtFillConnectedTransPixels_Mask(put.get(), RGB(1, 2, 3), 255, {4, 4}, mask.get(), origin));
    EXPECT_EQ(pixel(put, 4, 4), c.byte == 0 ? 0xFF070707 : colourWithAlpha(RGB(1, 2, 3), c.byte));
  }
}

TEST(TransparentFills, TakeOpacityZeroOnly) {
  const std::vector<DWORD> before{0x00FFFFFF, 0x01000000, 0x00000000, 0xFF000000};
  const OwnedDib block = test::imageOf(4, 1, 32, before);
  EXPECT_TRUE(CDIB32::ExtFillTransBlock(block.get(), RGB(1, 2, 3), 0x180));
  EXPECT_EQ(test::pixelsOf(block), (std::vector<DWORD>{0x80010203, 0x01000000, 0x80010203, 0xFF000000}));

  const OwnedDib opaqueSeed = test::imageOf(4, 1, 32, before);
  EXPECT_TRUE(CDIB32::ExtFillConnectedTransPixels(opaqueSeed.get(), RGB(1, 2, 3), 9, {3, 0}));
  EXPECT_EQ(test::pixelsOf(opaqueSeed), (std::vector<DWORD>{0x00FFFFFF, 0x01000000, 0x09010203, 0x09010203}));
}

TEST(Fill32DIBOpacityArea, KeepsToTheImageAndTheRegion) {
  const auto filled = [](const RECT& rect) {
    const OwnedDib image(CDIB32::CreateSimple32BitsDIB(4, 3, RGB(5, 6, 7), 1));
    EXPECT_TRUE(CDIB32::Fill32DIBOpacityArea(image.get(), rect, 200));
    std::vector<int> alphas;
    for (const DWORD value : test::pixelsOf(image)) {
      EXPECT_EQ(value & 0xFFFFFF, 0x050607U);
      alphas.push_back(static_cast<int>(value >> 24));
    }
    return alphas;
  };
  constexpr int o = 1, X = 200;
  EXPECT_EQ(filled({1, 1, 3, 2}), (std::vector<int>{o, o, o, o, o, X, X, o, o, o, o, o}));
  EXPECT_EQ(filled({2, -5, INT32_MAX, 2}), (std::vector<int>{o, o, X, X, o, o, X, X, o, o, o, o}));
  EXPECT_EQ(filled({INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX}), std::vector<int>(12, X));
  EXPECT_EQ(filled({3, 0, 1, 3}), std::vector<int>(12, o));
  EXPECT_EQ(filled({-9, 0, 0, 3}), std::vector<int>(12, o));

  const dibkit::OwnedRegion region(CreateRectRgn(-3, 0, 2, 2));
  const dibkit::OwnedRegion hole(CreateRectRgn(0, 0, 1, 1));
  CombineRgn(region.get(), region.get(), hole.get(), RGN_DIFF);
  const OwnedDib image(CDIB32::CreateSimple32BitsDIB(3, 2, RGB(5, 6, 7), 1));
  EXPECT_TRUE(CDIB32::Fill32DIBOpacityArea(image.get(), region.get(), 0));
  EXPECT_EQ(test::pixelsOf(image),
            (std::vector<DWORD>{0x01050607, 0x00050607, 0x01050607, 0x00050607, 0x00050607, 0x01050607}));
}

TEST(Fills, LeaveWrongArgumentsAlone) {
  const OwnedDib image(CDIB32::CreateSimple32BitsDIB(4, 3, RGB(5, 6, 7), 0));
  const OwnedDib before(CBitmapCreator::Clone(image.get()));
  const OwnedDib mask = test::image(4, 3, 8);
  const OwnedDib empty = test::image(0, 0, 32);
  const CPoint at(0, 0);
  for (BITMAPINFOHEADER* wrong : {static_cast<BITMAPINFOHEADER*>(nullptr), mask.get()}) {
    EXPECT_FALSE(CDIB32::ExtFillConnectedPixels(wrong, 0, 0, 0, 255, 0, {0, 0}, nullptr));
    EXPECT_FALSE(CDIB32::ExtFillConnectedPixels_Mask(wrong, 0, 0, 255, 0, {0, 0}, mask.get(), at));
    EXPECT_FALSE(CDIB32::ExtFillConnectedTransPixels(wrong, 0, 255, {0, 0}));
    EXPECT_FALSE(CDIB32::ExtFillConnectedTransPixels_Mask(wrong, 0, 255, {0, 0}, mask.get(), at));
    EXPECT_FALSE(CDIB32::ExtFill32BitsDIB(wrong, 0, 0, 255, 0));
    EXPECT_FALSE(CDIB32::ExtFill32BitsDIB_Mask(wrong, 0, 0, 255, 0, mask.get(), at));
    EXPECT_FALSE(CDIB32::ExtFillTransBlock(wrong, 0, 255));
    EXPECT_FALSE(CDIB32::ExtFillTransBlock_Mask(wrong, 0, 255, mask.get(), at));
    EXPECT_FALSE(CDIB32::Fill32DIBOpacityArea(wrong, RECT{0, 0, 1, 1}, 1));
  }
  for (BITMAPINFOHEADER* wrong : {static_cast<BITMAPINFOHEADER*>(nullptr), image.get()}) {
    EXPECT_FALSE(CDIB32::ExtFillConnectedPixels_Mask(image.get(), 0, 0, 255, 0, {0, 0}, wrong, at));
    EXPECT_FALSE(CDIB32::ExtFillConnectedTransPixels_Mask(image.get(), 0, 255, {0, 0}, wrong, at));
    EXPECT_FALSE(CDIB32::ExtFill32BitsDIB_Mask(image.get(), 0, 0, 255, 0, wrong, at));
    EXPECT_FALSE(CDIB32::ExtFillTransBlock_Mask(image.get(), 0, 255, wrong, at));
  }
  RECT bounds{1, 2, 3, 4};
  for (const POINT& outside : {POINT{-1, 0}, POINT{4, 0}, POINT{0, 3}, POINT{0, INT32_MIN}}) {
    EXPECT_FALSE(CDIB32::ExtFillConnectedPixels(image.get(), 0, 0, 0, 255, 0, outside, &bounds));
    EXPECT_FALSE(CDIB32::ExtFillConnectedTransPixels(image.get(), 0, 255, outside));
    EXPECT_FALSE(CDIB32::ExtFillConnectedTransPixels_Mask(image.get(), 0, 255, outside, mask.get(), at));
  }
  EXPECT_EQ(bounds.left * 1000 + bounds.top * 100 + bounds.right * 10 + bounds.bottom, 1234);
  EXPECT_FALSE(CDIB32::ExtFillConnectedTransPixels(empty.get(), 0, 255, {0, 0}));
  EXPECT_FALSE(CDIB32::Fill32DIBOpacityArea(image.get(), static_cast<HRGN>(nullptr), 1));
  // A mask that lies elsewhere is no wrong argument.
  EXPECT_TRUE(CDIB32::ExtFillTransBlock_Mask(image.get(), 0, 255, mask.get(), CPoint(INT32_MAX, INT32_MIN)));
  EXPECT_EQ(test::bytesOf(image), test::bytesOf(before));
}

}  // namespace
