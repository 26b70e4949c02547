#include <cstdlib>

#include "effects/stage.h"

namespace {

using namespace test;

struct Cell {
  int x, y;
};

/// The pool in the order of a direction; -1 is the mosaic without one.
std::vector<Cell> poolOf(int columns, int rows, int cw, int ch, int direction) {
  std::vector<Cell> pool;
  if (direction == 0 || direction == 2) {
    for (int i = 0; i < columns; ++i) {
      for (int j = 0; j < rows; ++j) pool.push_back({(direction == 0 ? i : columns - 1 - i) * cw, j * ch});
    }
  } else {
    for (int j = 0; j < rows; ++j) {
      for (int i = 0; i < columns; ++i) pool.push_back({i * cw, (direction == 3 ? rows - 1 - j : j) * ch});
    }
  }
  return pool;
}

Stage mosaicPlainly(const OwnedDib& source, int direction, int percent) {
  const int w = source->biWidth;
  const int h = source->biHeight;
  const int test = direction < 0 ? 100 : 10;
  const int columns = 10 + (w % test != 0 ? 1 : 0);
  const int rows = 10 + (h % test != 0 ? 1 : 0);
  std::vector<Cell> pool = poolOf(columns, rows, w / 10, h / 10, direction);
  const int span = direction < 0 ? columns * rows : 2 * (direction % 2 == 0 ? rows : columns);
  std::srand(static_cast<unsigned>(direction >= 0 && direction % 2 == 1 ? h : w));
  OwnedRegion region;
  for (int i = 0; i < percent * columns * rows / 100; ++i) {
    const auto k = static_cast<std::size_t>(std::rand() % std::min(span, static_cast<int>(pool.size())));
    const Cell cell = pool[k];
    join(region, rectangle(cell.x, cell.y, cell.x + w / 10, cell.y + h / 10));
    if (direction < 0) {
      std::swap(pool[k], pool.back());
      pool.pop_back();
    } else {
      pool.erase(pool.begin() + static_cast<std::ptrdiff_t>(k));
    }
  }
  if (!region) return {};
  clip(region, source);
  return cutPlainly(source, region);
}

TEST(Mosaics, MatchTheirPlainTwin) {
  for (const auto& [w, h] :
       {std::pair{1, 1}, {7, 12}, {19, 33}, {50, 50}, {95, 95}, {100, 200}, {110, 64}, {200, 100}}) {
    const OwnedDib picture = numberedPicture(w, h);
    for (const int percent : {0, 1, 9, 33, 50, 99, 100}) {
      SCOPED_TRACE(testing::Message() << w << 'x' << h << ' ' << percent);
      expectStage(render(5, picture, percent, 3), mosaicPlainly(picture, -1, percent));
      for (int direction = 0; direction < 4; ++direction) {
        SCOPED_TRACE(direction);
        expectStage(render(6, picture, direction, percent), mosaicPlainly(picture, direction, percent));
      }
    }
  }
}

TEST(Mosaics, FullAmountShowsThePictureWhereTheCellsReachItsSides) {
  for (const auto& [w, h] : {std::pair{50, 50}, {95, 95}, {200, 100}}) {
    const OwnedDib picture = numberedPicture(w, h);
    EXPECT_EQ(pixelsOf(render(5, picture, 100, 0).image), pixelsOf(picture));
    EXPECT_EQ(pixelsOf(render(6, picture, 3, 100).image), pixelsOf(picture));
  }
  // 19 columns are eleven cells of one column each: eight columns are left over until more than everything
  // shows.
  const OwnedDib narrow = numberedPicture(19, 20);
  EXPECT_EQ(render(5, narrow, 100, 0).rect, (RECT{0, 0, 11, 20}));
  for (const long amount : {101L, 1000L, LONG_MAX})
    EXPECT_EQ(pixelsOf(render(5, narrow, amount, 0).image), pixelsOf(narrow));
}

TEST(Mosaics, SweepStartsInTheTwoNearestLines) {
  EXPECT_LE(render(6, numberedPicture(95, 95), 0, 3).rect.right, 18);
  EXPECT_GE(render(6, numberedPicture(95, 95), 3, 3).rect.top, 81);
}

TEST(Mosaics, NothingDrawnIsNothingMade) {
  const OwnedDib picture = numberedPicture(40, 40);
  for (const long amount : {0L, -1L, -1000L, LONG_MIN}) {
    EXPECT_EQ(render(5, picture, amount, 0).result, 0);
    EXPECT_EQ(render(6, picture, 1, amount).result, 0);
  }
  EXPECT_EQ(render(6, picture, 4, 50).result, 0);
  EXPECT_EQ(render(6, picture, -1, 50).result, 0);
}

TEST(Thawing, PixelatesByTwoFifthsOfItsAmount) {
  struct Case {
    int w, h;
    long amount;
    int block;
  };
  for (const Case& c : {Case{100, 100, 50, 20},
                        {30, 20, 100, 20},
                        {20, 30, 100, 20},
                        {100, 100, 3, 1},
                        {100, 100, 99, 39},
                        {60, 50, 1000, 50},
                        {60, 50, LONG_MAX, 50}}) {
    const OwnedDib picture = numberedPicture(c.w, c.h);
    Stage expected{1, OwnedDib(Mosaic32BitsDIB(picture.get(), c.block)), {0, 0, c.w, c.h}};
    expectStage(render(16, picture, c.amount, 0), expected);
  }
}

TEST(Thawing, BelowABlockOfOneThePictureIsUntouched) {
  const OwnedDib picture = numberedPicture(30, 20);
  for (const long amount : {2L, 0L, -1L, LONG_MIN}) {
    const Stage stage = render(16, picture, amount, 0);
    EXPECT_EQ(stage.result, 1);
    EXPECT_EQ(stage.rect, (RECT{0, 0, 30, 20}));
    EXPECT_EQ(pixelsOf(stage.image), pixelsOf(picture));
  }
}

}  // namespace
