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
Stage slidePlainly(const OwnedDib& source, bool halves, bool vertically, long percent) {
  const int w = source->biWidth;
  const int h = source->biHeight;
  Stage stage{1, image(w, h, 32), {0, 0, w, h}};
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
        setPixel(stage.image, x, y,
                 vertically ? clampedPixel(source, x, from) : clampedPixel(source, from, y));
    }
  }
  return stage;
}

TEST(BarSlides, MatchTheirPlainTwin) {
  for (const int effect : {10, 11}) {
    expectTwin(effect, {{1, 1}, {2, 9}, {7, 5}, {8, 8}, {33, 15}, {15, 33}, {100, 47}}, {0, 1},
               {0, 1, 37, 50, 99, 100, 101, 250, -1, -40, -1000},
               [&](const OwnedDib& source, long style, long percent) {
                 return slidePlainly(source, effect == 10, style == 1, percent);
               });
  }
}

}  // namespace
