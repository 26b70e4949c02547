#include <string_view>

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
  void lay(int x, int y, int scale) {
    setPixel(expected, x, y, layOver(pixel(expected, x, y), fill, (opacity & 255) * scale / 255));
  }
  void put(int x, int y, int scale) {
    setPixel(expected, x, y, colourWithAlpha(fill, (opacity & 255) * scale / 255));
  }

  /// The fill as a stack of points. A pixel that only the mask shuts out is not marked as visited.
  template <class Enter, class Paint>
  RECT plainFill(const Enter& enter, bool masked, const Paint& paint) {
    const int width = image->biWidth;
    std::vector<bool> visited(static_cast<std::size_t>(width * image->biHeight));
    const auto index = [&](POINT p) { return static_cast<std::size_t>(p.y * width + p.x); };
    std::vector<POINT> stack{seed};
    visited[index(seed)] = true;
    RECT bounds{seed.x, seed.y, seed.x + 1, seed.y + 1};
    while (!stack.empty()) {
      const POINT at = stack.back();
      stack.pop_back();
      const bool isSeed = at.x == seed.x && at.y == seed.y;
      paint(at.x, at.y,
            !masked  ? 255
            : isSeed ? maskBytes.byAddress(at.x, at.y)
                     : maskBytes.covered(at.x, at.y));
      bounds = {std::min(bounds.left, at.x), std::min(bounds.top, at.y), std::max(bounds.right, at.x + 1),
                std::max(bounds.bottom, at.y + 1)};
      for (const auto& [dx, dy] : {std::pair{0, 1}, std::pair{1, 0}, std::pair{0, -1}, std::pair{-1, 0}}) {
        const POINT next{at.x + dx, at.y + dy};
        if (next.x < 0 || next.x >= width || next.y < 0 || next.y >= image->biHeight) continue;
        if (visited[index(next)]) continue;
        const bool like = enter(pixel(expected, next.x, next.y));
        if (like && masked && maskBytes.covered(next.x, next.y) <= 0) continue;
        if (like) stack.push_back(next);
        visited[index(next)] = true;
      }
    }
    return bounds;
  }

  template <class Enter, class Paint>
  void paintEverywhere(const Enter& enter, bool masked, const Paint& paint) {
    for (int y = 0; y < image->biHeight; ++y) {
      for (int x = 0; x < image->biWidth; ++x) {
        const int scale = masked ? maskBytes.covered(x, y) : 255;
        if (scale > 0 && enter(pixel(image, x, y))) paint(x, y, scale);
      }
    }
  }
};

bool transparent(DWORD value) { return value >> 24 == 0; }

TEST(Fills, EqualTheStackOfPointsAndTheLookAtEveryPixel) {
  Random random(11);
  for (int round = 0; round < 3000; ++round) {
    Scene s(random);
    const auto like = [&](DWORD value) { return isLike(value, s.target, s.tolerance); };
    const auto lay = [&](int x, int y, int scale) { s.lay(x, y, scale); };
    const auto put = [&](int x, int y, int scale) { s.put(x, y, scale); };
    const int erase = round % 5 == 0 ? 7 : 0;
    const auto eraseOrLay = [&](int x, int y, int scale) {
      if (erase == 0) return s.lay(x, y, scale);
      setPixel(s.expected, x, y, pixel(s.expected, x, y) & 0xFFFFFF);
    };
    const auto putUnlessMasked = [&](int x, int y, int scale) {
      if (scale != 0) s.put(x, y, scale);
    };
    BITMAPINFOHEADER* const image = s.image.get();
    BITMAPINFOHEADER* const mask = s.mask.get();
    const CPoint origin(s.maskBytes.origin);
    RECT bounds{}, expectedBounds{};
    BOOL done = FALSE;
    switch (round % 8) {
      case 0:
        expectedBounds = s.plainFill(like, false, eraseOrLay);
        done = CDIB32::ExtFillConnectedPixels(image, s.target, s.fill, erase, s.opacity, s.tolerance, s.seed,
                                              &bounds);
        break;
      case 1:
        s.plainFill(like, true, lay);
        done = CDIB32::ExtFillConnectedPixels_Mask(image, s.target, s.fill, s.opacity, s.tolerance, s.seed,
                                                   mask, origin);
        break;
      case 2:
        s.plainFill(transparent, false, put);
        done = CDIB32::ExtFillConnectedTransPixels(image, s.fill, s.opacity, s.seed);
        break;
      case 3:
        s.plainFill(transparent, true, putUnlessMasked);
        done = CDIB32::ExtFillConnectedTransPixels_Mask(image, s.fill, s.opacity, s.seed, mask, origin);
        break;
      case 4:
        s.paintEverywhere(like, false, lay);
        done = CDIB32::ExtFill32BitsDIB(image, s.target, s.fill, s.opacity, s.tolerance);
        break;
      case 5:
        s.paintEverywhere(like, true, lay);
        done = CDIB32::ExtFill32BitsDIB_Mask(image, s.target, s.fill, s.opacity, s.tolerance, mask, origin);
        break;
      case 6:
        s.paintEverywhere(transparent, false, put);
        done = CDIB32::ExtFillTransBlock(image, s.fill, s.opacity);
        break;
      default:
        s.paintEverywhere(transparent, true, put);
        done = CDIB32::ExtFillTransBlock_Mask(image, s.fill, s.opacity, mask, origin);
    }
    ASSERT_TRUE(done);
    ASSERT_TRUE(EqualRect(&bounds, &expectedBounds));
    ASSERT_EQ(test::bytesOf(s.image), test::bytesOf(s.expected)) << "round " << round;
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

/// A picture of 3 x 3 pixels from letters: a, the target; n, one step away in red and green; t, the target at
/// another opacity; F, the fill at full opacity; e, the target erased; 0, nothing at all.
std::vector<DWORD> picture(std::string_view letters) {
  std::vector<DWORD> pixels;
  for (const char letter : letters) {
    pixels.push_back(letter == 'a'   ? 0xFF102030
                     : letter == 'n' ? 0xFF112130
                     : letter == 't' ? 0xFE102030
                     : letter == 'F' ? 0xFF030201
                     : letter == 'e' ? 0x00102030
                                     : 0);
  }
  return pixels;
}

TEST(ExtFillConnectedPixels, KeepsToTheRulesOfItsNeighbourhood) {
  struct Case {
    const char* what;
    std::string_view before;
    POINT seed;
    int erase, opacity, tolerance;
    std::string_view after;
    RECT bounds;
  };
  const Case cases[] = {
      {"corners do not join", "anananana", {1, 1}, 0, 255, 0, "ananFnana", {1, 1, 2, 2}},
      {"one step of tolerance", "ananattta", {0, 0}, 0, 255, 1, "FFFFFttta", {0, 0, 3, 2}},
      {"opacity knows no tolerance", "ttttatttt", {1, 1}, 0, 255, 255, "ttttFtttt", {1, 1, 2, 2}},
      {"a seed unlike the target", "aananntna", {2, 0}, 0, 255, 0, "FFFFnntna", {0, 0, 3, 2}},
      {"erasing keeps the colour", "anaanaaaa", {0, 0}, 1, 255, 0, "eneeneeee", {0, 0, 3, 3}},
      {"no opacity changes nothing", "aaannnttt", {1, 0}, 0, 0, 0, "aaannnttt", {0, 0, 3, 1}},
      {"nothing meets a negative tolerance", "aaaaaaaaa", {1, 2}, 0, 255, -1, "aaaaaaaFa", {1, 2, 2, 3}},
      {"no opacity over none takes the colour", "ennnnnnnn", {0, 0}, 0, 256, 0, "0nnnnnnnn", {0, 0, 1, 1}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const OwnedDib image = test::imageOf(3, 3, 32, picture(c.before));
    const OwnedDib again = test::imageOf(3, 3, 32, picture(c.before));
    RECT bounds{-1, -1, -1, -1};
    const auto fill = [&](const OwnedDib& dib, RECT* out) {
      return CDIB32::ExtFillConnectedPixels(dib.get(), 0xFF102030, RGB(3, 2, 1), c.erase, c.opacity,
                                            c.tolerance, c.seed, out);
    };
    EXPECT_TRUE(fill(image, &bounds) && fill(again, nullptr));
    EXPECT_EQ(test::pixelsOf(image), picture(c.after));
    EXPECT_EQ(test::pixelsOf(again), picture(c.after));
    EXPECT_TRUE(EqualRect(&bounds, &c.bounds));
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

/// How many of the eight fills call themselves complete.
int completed(BITMAPINFOHEADER* image, BITMAPINFOHEADER* mask, const POINT& seed, const CPoint& at = {}) {
  return CDIB32::ExtFillConnectedPixels(image, 0, 0, 0, 0, 0, seed, nullptr) +
         CDIB32::ExtFillConnectedPixels_Mask(image, 0, 0, 0, 0, seed, mask, at) +
         CDIB32::ExtFillConnectedTransPixels(image, 0, 0, seed) +
         CDIB32::ExtFillConnectedTransPixels_Mask(image, 0, 0, seed, mask, at) +
         CDIB32::ExtFill32BitsDIB(image, 0, 0, 0, 0) + CDIB32::ExtFillTransBlock(image, 0, 0) +
         CDIB32::ExtFill32BitsDIB_Mask(image, 0, 0, 0, 0, mask, at) +
         CDIB32::ExtFillTransBlock_Mask(image, 0, 0, mask, at);
}

TEST(Fills, RefuseWrongArguments) {
  const OwnedDib image = test::image(4, 3, 32);
  const OwnedDib mask = test::image(4, 3, 8);
  const OwnedDib empty = test::image(0, 0, 32);
  EXPECT_EQ(completed(image.get(), mask.get(), {3, 2}), 8);
  EXPECT_EQ(completed(image.get(), mask.get(), {3, 2}, CPoint(INT32_MAX, INT32_MIN)), 8);
  EXPECT_EQ(completed(nullptr, mask.get(), {0, 0}), 0);
  EXPECT_EQ(completed(mask.get(), mask.get(), {0, 0}), 0);
  EXPECT_EQ(completed(image.get(), nullptr, {0, 0}), 4);  // those without a mask
  EXPECT_EQ(completed(image.get(), image.get(), {0, 0}), 4);
  EXPECT_EQ(completed(empty.get(), mask.get(), {0, 0}), 4);  // those without a seed
  for (const POINT& outside : {POINT{-1, 0}, POINT{4, 0}, POINT{0, 3}, POINT{0, INT32_MIN}}) {
    EXPECT_EQ(completed(image.get(), mask.get(), outside), 4);
    RECT bounds{1, 2, 3, 4};
    EXPECT_FALSE(CDIB32::ExtFillConnectedPixels(image.get(), 0, 0, 0, 255, 0, outside, &bounds));
    EXPECT_EQ(bounds.left * 1000 + bounds.top * 100 + bounds.right * 10 + bounds.bottom, 1234);
  }
  for (BITMAPINFOHEADER* wrong : {static_cast<BITMAPINFOHEADER*>(nullptr), mask.get()}) {
    EXPECT_FALSE(CDIB32::Fill32DIBOpacityArea(wrong, RECT{0, 0, 1, 1}, 1));
  }
  EXPECT_FALSE(CDIB32::Fill32DIBOpacityArea(image.get(), static_cast<HRGN>(nullptr), 1));
}

}  // namespace
