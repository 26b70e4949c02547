#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "dib32/placed.h"
#include "support/bitmap_regions.h"

/// The operations that give each pixel of an image a value of its own.
namespace {

using dibkit::OwnedDib;
using dibkit::OwnedRegion;
using Dib = BITMAPINFOHEADER*;
using test::colourBits;
using test::oneOf;

constexpr DWORD alphaBits = ~colourBits;

struct Scene {
  OwnedDib image;
  BYTE a = 0, b = 0, c = 0;
  int x = 0, y = 0, k = 0;
  RECT rect{};
  OwnedRegion region{};

  COLORREF colour() const { return RGB(a, b, c) | 0xFF000000; }
  DWORD rgb() const { return DWORD{a} << 16 | DWORD{b} << 8 | c; }
};

// The pixel at (x, y) afterwards, by the pixel p before.

DWORD coloured(const Scene& s, DWORD p, int, int) { return (p & alphaBits) | s.rgb(); }
DWORD background(const Scene& s, DWORD, int, int) { return alphaBits | s.rgb(); }
DWORD withAlpha(const Scene& s, DWORD p, int, int) { return (p & colourBits) | DWORD{s.a} << 24; }
DWORD reduced(const Scene& s, DWORD p, int, int) {
  return (p & colourBits) | ((p >> 24) * (255U - s.a) / 255) << 24;
}
DWORD withAlphaInRect(const Scene& s, DWORD p, int x, int y) {
  return PtInRect(&s.rect, {x, y}) ? withAlpha(s, p, x, y) : p;
}
DWORD withAlphaInRegion(const Scene& s, DWORD p, int x, int y) {
  return PtInRegion(s.region.get(), x, y) ? withAlpha(s, p, x, y) : p;
}
DWORD transparency(const Scene&, DWORD p, int, int) { return p >> 24 == 0; }

/// Cells of eight pixels; the quotients and remainders are truncated, so that the kinds are -1, 0 and 1.
DWORD checkered(const Scene& s, DWORD p, int x, int y) {
  const bool same = (std::int64_t{x} + s.x) / 8 % 2 == (std::int64_t{y} + s.y) / 8 % 2;
  return (p & alphaBits) | (same ? s.rgb() : 0x030201);
}

/// Diagonals both ways. Positions count from the offset's remainder, which may be negative, and start again
/// at 0 after 7.
DWORD hatched(const Scene& s, DWORD p, int x, int y) {
  const auto position = [](int offset, int steps) {
    int at = offset % 8;
    for (; steps > 0; --steps) at = at == 7 ? 0 : at + 1;
    return at;
  };
  const int px = position(s.x, x), py = position(s.y, y);
  return px == py || px + py == 7 ? (p & alphaBits) | s.rgb() : p;
}

/// ((k + 8) pixel - its eight neighbours) / max(k, 1), with the edge pixels repeated outside the image.
DWORD sharpened(const Scene& s, DWORD p, int x, int y) {
  DWORD value = p & alphaBits;
  for (const int shift : {0, 8, 16}) {
    std::int64_t sum = 0;
    test::forEachPixel({x - 1, y - 1, x + 2, y + 2}, [&](LONG nx, LONG ny) {
      const DWORD nearby = test::pixel(s.image, std::clamp<LONG>(nx, 0, s.image->biWidth - 1),
                                       std::clamp<LONG>(ny, 0, s.image->biHeight - 1));
      sum += (nx == x && ny == y ? std::int64_t{s.k} + 8 : -1) * (nearby >> shift & 255);
    });
    value |= static_cast<DWORD>(std::clamp<std::int64_t>(sum / std::max(s.k, 1), 0, 255)) << shift;
  }
  return value;
}

struct Operation {
  const char* name;
  DWORD (*rule)(const Scene& s, DWORD p, int x, int y);
  void (*change)(Dib image, const Scene& s);
  /// Makes a new image instead.
  Dib (*make)(Dib image, const Scene& s) = nullptr;
  int bitCount = 32;
};

template <auto function, auto... arguments>
void change(Dib image, const Scene& s) {
  function(image, s.*arguments...);
}

const Operation reduce{"Reduce32BitsDIBOpacity", reduced, change<CDIB32::Reduce32BitsDIBOpacity, &Scene::a>};
const Operation sharpen{"Sharpen32BitsImage", sharpened, change<CDIB32::Sharpen32BitsImage, &Scene::k>};
const Operation operations[] = {
    reduce,
    sharpen,
    {"MakeAllPixelsSameOpacity", withAlpha, change<CDIB32::MakeAllPixelsSameOpacity, &Scene::a>},
    {"Fill32DIBBackground", background, change<CDIB32::Fill32DIBBackground, &Scene::a, &Scene::b, &Scene::c>},
    {"Make32BitsSimpleColorDIB", coloured,
     [](Dib image, const Scene& s) { CDIB32::Make32BitsSimpleColorDIB(image, s.colour()); }},
    {"CreateParaShadowDIB", coloured, nullptr,
     [](Dib image, const Scene& s) { return CDIB32::CreateParaShadowDIB(image, s.colour()); }},
    {"CreateIconMaskFromAlphaChannel", transparency, nullptr,
     [](Dib image, const Scene&) { return CDIB32::CreateIconMaskFromAlphaChannel(image); }, 1},
    {"Fill32DIBOpacityArea, rectangle", withAlphaInRect,
     [](Dib image, const Scene& s) { CDIB32::Fill32DIBOpacityArea(image, s.rect, s.a); }},
    {"Fill32DIBOpacityArea, region", withAlphaInRegion,
     [](Dib image, const Scene& s) { CDIB32::Fill32DIBOpacityArea(image, s.region.get(), s.a); }},
    {"Init32DIBBackground", checkered,
     [](Dib image, const Scene& s) { CDIB32::Init32DIBBackground(image, s.a, s.b, s.c, 3, 2, 1, s.x, s.y); }},
    {"Init32DIBWithHatedLines", hatched,
     [](Dib image, const Scene& s) { CDIB32::Init32DIBWithHatedLines(image, CPoint(s.x, s.y), s.colour()); }},
};

void expectRule(const Operation& operation, const Scene& s) {
  OwnedDib result = test::copyOf(s.image);
  if (operation.change != nullptr) operation.change(result.get(), s);
  if (operation.make != nullptr) result.reset(operation.make(s.image.get(), s));
  const OwnedDib expected =
      test::drawn(s.image->biWidth, s.image->biHeight, operation.bitCount,
                  [&](int x, int y) { return operation.rule(s, test::pixel(s.image, x, y), x, y); });
  ASSERT_TRUE(test::bytesOf(result) == test::bytesOf(expected)) << operation.name;
}

TEST(PixelOperations, FollowTheirRules) {
  test::Random random(41);
  const int offsets[] = {0, 1, 3, 7, 8, 9, 16, 1000003, -1, -5, -7, -8, -9, -30, INT32_MAX, INT32_MIN};
  const int factors[] = {1, 2, 3, 10, 0, -1, -7, -8, -9, 1 << 30, INT32_MAX, INT32_MAX - 7, INT32_MIN};
  const LONG edges[] = {INT32_MIN, -3, 0, 1, 2, 4, 15, 31, INT32_MAX};
  for (int round = 0; round < 3300; ++round) {
    const int width = oneOf(random, test::sizes), height = oneOf(random, test::sizes);
    const auto byte = [&] { return test::byteOf(test::below(random, 256)); };
    Scene scene{test::randomImage(width, height, 32, random),
                byte(),
                byte(),
                byte(),
                oneOf(random, offsets),
                oneOf(random, offsets),
                oneOf(random, factors)};
    scene.rect = {oneOf(random, edges), oneOf(random, edges), oneOf(random, edges), oneOf(random, edges)};
    scene.region = test::Bitmap(width + 3, height + 3, random).region();
    OffsetRgn(scene.region.get(), test::below(random, 5) - 3, test::below(random, 5) - 3);
    SCOPED_TRACE(testing::Message() << "round " << round << ", offset " << scene.x << ' ' << scene.y);
    expectRule(operations[round % std::size(operations)], scene);
    if (HasFatalFailure()) return;
  }
}

TEST(Sharpen32BitsImage, DividesExactlyByEveryK) {
  // A white pixel in black, a black one in white and noise give sums all over the range.
  test::Random random(52);
  Scene scene{test::randomImage(12, 4, 32, random)};
  test::forEachPixel({0, 0, 8, 3},
                     [&](int x, int y) { test::setPixel(scene.image, x, y, x > 3 ? 0xFFFFFF : 0); });
  test::setPixel(scene.image, 1, 1, 0xFFFFFFFF);
  test::setPixel(scene.image, 6, 1, 0);
  for (scene.k = -12; scene.k <= 2060; ++scene.k) expectRule(sharpen, scene);
}

TEST(Reduce32BitsDIBOpacity, TruncatesForEveryPair) {
  Scene scene{test::drawn(256, 1, 32, [](int x, int) { return static_cast<DWORD>(x) << 24 | 0x123456; })};
  for (int reduction = 0; reduction < 256; ++reduction) {
    scene.a = test::byteOf(reduction);
    expectRule(reduce, scene);
  }
}

}  // namespace
