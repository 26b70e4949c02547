#include <cstdlib>
#include <numeric>

#include "effects/stage.h"

namespace {

using namespace test;

/// A list that is shifted down by one at each draw, and one region operation a strip.
Stage narrowBarsPlainly(const OwnedDib& source, long style, long percent) {
  const int w = source->biWidth;
  const int h = source->biHeight;
  const bool columns = style == 0 || style == 2 || style == 3;
  const int n = columns ? w : h;
  std::vector<int> pool(static_cast<std::size_t>(n));
  std::iota(pool.begin(), pool.end(), 0);
  if (style == 3 || style == 5) std::reverse(pool.begin(), pool.end());
  std::srand(static_cast<unsigned>(n));
  OwnedRegion region;
  for (long i = 0; i < n * percent / 100; ++i) {
    const int m = static_cast<int>(pool.size());
    const int k = std::rand() % (style >= 2 ? std::min(32, m) : m);
    const int q = pool[static_cast<std::size_t>(k)];
    pool.erase(pool.begin() + k);
    join(region, columns ? rectangle(q, 0, std::min(q + 1, w), h) : rectangle(0, q, w, std::min(q + 1, h)));
  }
  return region ? cutPlainly(source, region) : Stage{};
}

Stage jalousiePlainly(const OwnedDib& source, long style, long percent) {
  const int w = source->biWidth;
  const int h = source->biHeight;
  const int extent = style != 0 ? h : w;
  const int pitch = std::min(8, extent);
  const int slats = extent / pitch + (extent % pitch != 0 ? 1 : 0);
  const int opening = static_cast<int>(pitch * percent / 100);
  OwnedRegion region;
  for (int i = 0; i < slats; ++i) {
    const int s = i * pitch;
    join(region, style != 0 ? rectangle(0, s, w, std::min(s + opening, h))
                            : rectangle(s, 0, std::min(s + opening, w), h));
  }
  return cutPlainly(source, region);
}

TEST(NarrowBar, MatchesItsPlainTwin) {
  expectTwin(14, {{1, 1}, {2, 3}, {7, 5}, {33, 31}, {100, 64}, {65, 130}}, {-1, 0, 1, 2, 3, 4, 5, 6, 7},
             {0, 1, 13, 50, 87, 100}, narrowBarsPlainly);
}

TEST(Jalousie, MatchesItsPlainTwin) {
  expectTwin(15, {{1, 1}, {5, 3}, {8, 8}, {9, 17}, {33, 31}, {100, 64}}, {0, 1, -7},
             {0, 12, 13, 50, 99, 100, 130}, jalousiePlainly);
}

TEST(Jalousie, SlatsAreNoHigherThanThePicture) {
  // 5 rows, one slat of 5: 60 percent open are 3 rows.
  EXPECT_EQ(render(15, numberedPicture(20, 5), 1, 60).rect, (RECT{0, 0, 20, 3}));
}

}  // namespace
