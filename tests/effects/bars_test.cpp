#include <algorithm>

#include "effects/stage.h"

namespace {

using namespace test;

DWORD clampedPixel(const OwnedDib& dib, long long x, long long y) {
  return pixel(dib, static_cast<int>(std::clamp<long long>(x, 0, dib->biWidth - 1)),
               static_cast<int>(std::clamp<long long>(y, 0, dib->biHeight - 1)));
}

/// What both effects do, one pixel after the other. Along the axis of motion a place p of extent n shows what
/// lies n - d further back when it comes from the far end, n - d further on when it comes from the near one.
OwnedDib slidePlainly(const OwnedDib& source, bool halves, bool vertically, long percent) {
  const int w = source->biWidth;
  const int h = source->biHeight;
  OwnedDib out = image(w, h, 32);
  for (int y = 0; y < h; ++y) {
    for (int x = 0; x < w; ++x) {
      const long long n = vertically ? h : w;
      const long long p = vertically ? y : x;
      const long long d = n * percent / 100;
      const int across = vertically ? x : y;
      const bool fromFarEnd = halves ? across < (vertically ? w : h) / 2 : across / 4 % 2 == 1;
      const bool shows = fromFarEnd ? p >= n - d : halves ? p <= d : p < d;
      const long long from = fromFarEnd ? p - (n - d) : p + (n - d);
      if (shows)
        setPixel(out, x, y, vertically ? clampedPixel(source, x, from) : clampedPixel(source, from, y));
    }
  }
  return out;
}

TEST(BarSlides, MatchTheirPlainTwin) {
  for (const auto& [w, h] : {std::pair{1, 1}, {2, 9}, {7, 5}, {8, 8}, {33, 15}, {15, 33}, {100, 47}}) {
    const OwnedDib picture = numberedPicture(w, h);
    for (const long percent : {0L, 1L, 37L, 50L, 99L, 100L, 101L, 250L, -1L, -40L, -1000L}) {
      for (const int effect : {10, 11}) {
        for (const long style : {0L, 1L}) {
          SCOPED_TRACE(testing::Message()
                       << effect << '/' << style << ' ' << w << 'x' << h << ' ' << percent);
          const Stage stage = render(effect, picture, style, percent);
          ASSERT_EQ(stage.result, 1);
          EXPECT_EQ(stage.rect, (RECT{0, 0, w, h}));
          EXPECT_TRUE(bytesOf(stage.image) ==
                      bytesOf(slidePlainly(picture, effect == 10, style == 1, percent)));
        }
      }
    }
  }
}

TEST(BarSlides, HalvesShowTheLastColumnBeforeTheyStart) {
  const OwnedDib picture = numberedPicture(10, 4);
  const Stage stage = render(10, picture, 0, 0);
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 10; ++x) {
      EXPECT_EQ(pixel(stage.image, x, y), x == 0 && y >= 2 ? pixel(picture, 9, y) : 0);
    }
  }
}

TEST(BarSlides, BarsEndAsThePicture) {
  const OwnedDib picture = numberedPicture(21, 13);
  EXPECT_EQ(pixelsOf(render(11, picture, 0, 100).image), pixelsOf(picture));
  EXPECT_EQ(pixelsOf(render(11, picture, 1, 100).image), pixelsOf(picture));
}

TEST(BarSlides, StandAnyAmount) {
  const OwnedDib picture = numberedPicture(9, 7);
  for (const int effect : {10, 11}) {
    for (const long style : {0L, 1L}) {
      for (const long amount : {LONG_MIN, LONG_MAX})
        EXPECT_EQ(render(effect, picture, style, amount).result, 1);
    }
  }
}

}  // namespace
