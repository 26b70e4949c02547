#include <cstdlib>
#include <numeric>

#include "effects/ordered_pool.h"
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
  for (const auto& [w, h] : {std::pair{1, 1}, {2, 3}, {7, 5}, {33, 31}, {100, 64}, {65, 130}}) {
    const OwnedDib picture = numberedPicture(w, h);
    for (long style = -1; style <= 7; ++style) {
      for (const long percent : {0L, 1L, 13L, 50L, 87L, 100L}) {
        SCOPED_TRACE(testing::Message() << style << ' ' << w << 'x' << h << ' ' << percent);
        expectStage(render(14, picture, style, percent), narrowBarsPlainly(picture, style, percent));
      }
    }
  }
}

TEST(NarrowBar, SweepNeverRunsMoreThan32StripsAhead) {
  const OwnedDib picture = numberedPicture(200, 2);
  for (long percent = 1; percent < 100; ++percent) {
    const Stage stage = render(14, picture, 2, percent);
    int hidden = 0;
    for (int x = stage.rect.left; x < stage.rect.right; ++x) {
      hidden += pixel(stage.image, x - stage.rect.left, 1) >> 24 == 0 ? 1 : 0;
    }
    EXPECT_LT(hidden + stage.rect.left, 32);
  }
}

TEST(NarrowBar, ShowsEverythingWhenAskedForMore) {
  const OwnedDib picture = numberedPicture(40, 30);
  for (const long amount : {101L, 1000L, LONG_MAX}) {
    EXPECT_EQ(pixelsOf(render(14, picture, 0, amount).image), pixelsOf(picture));
  }
  for (const long amount : {-1L, -1000L, LONG_MIN}) EXPECT_EQ(render(14, picture, 0, amount).result, 0);
}

TEST(Jalousie, MatchesItsPlainTwin) {
  for (const auto& [w, h] : {std::pair{1, 1}, {5, 3}, {8, 8}, {9, 17}, {33, 31}, {100, 64}}) {
    const OwnedDib picture = numberedPicture(w, h);
    for (const long style : {0L, 1L, -7L}) {
      for (const long percent : {0L, 12L, 13L, 50L, 99L, 100L, 130L}) {
        SCOPED_TRACE(testing::Message() << style << ' ' << w << 'x' << h << ' ' << percent);
        expectStage(render(15, picture, style, percent), jalousiePlainly(picture, style, percent));
      }
    }
  }
}

TEST(Jalousie, SlatsAreNoHigherThanThePicture) {
  // 5 rows, one slat of 5: 60 percent open are 3 rows.
  EXPECT_EQ(render(15, numberedPicture(20, 5), 1, 60).rect, (RECT{0, 0, 20, 3}));
}

TEST(Jalousie, NegativeAmountsLeaveTheSlatsShut) {
  const Stage stage = render(15, numberedPicture(20, 20), 0, -50);
  EXPECT_EQ(stage.result, 1);
  EXPECT_EQ(stage.rect, RECT{});
}

TEST(OrderedPool, ClosesUpAfterEachDraw) {
  Random random(5);
  for (const int count : {0, 1, 2, 31, 32, 33, 500}) {
    dibkit::OrderedPool pool(count);
    std::vector<int> list(static_cast<std::size_t>(count));
    std::iota(list.begin(), list.end(), 0);
    while (pool.left() > 0) {
      const int place = below(random, pool.left());
      EXPECT_EQ(pool.take(place), list[static_cast<std::size_t>(place)]);
      list.erase(list.begin() + place);
    }
    EXPECT_TRUE(list.empty());
  }
}

}  // namespace
