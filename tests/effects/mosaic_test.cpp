#include <cstdlib>

#include "effects/stage.h"

namespace {

using namespace test;

struct Cell {
  int x, y;
};

/// The pool in the order of a direction; -1 is the mosaic without one.
std::vector<Cell> poolOf(int columns, int rows, int cw, int ch, long direction) {
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

Stage mosaicPlainly(const OwnedDib& source, long direction, long percent) {
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
  return region ? cutPlainly(source, region) : Stage{};
}

TEST(Mosaics, MatchTheirPlainTwin) {
  const std::vector<SIZE> sizes = {{1, 1},   {7, 12},    {19, 33},  {50, 50},
                                   {95, 95}, {100, 200}, {110, 64}, {200, 100}};
  const std::vector<long> percents = {0, 1, 9, 33, 50, 99, 100};
  expectTwin(5, sizes, percents, {3},
             [](const OwnedDib& source, long percent, long) { return mosaicPlainly(source, -1, percent); });
  expectTwin(6, sizes, {0, 1, 2, 3}, percents, mosaicPlainly);
}

TEST(Mosaics, CellsOfASmallPictureLeaveItsRightSideOver) {
  // 19 columns are eleven cells of one column each: eight columns are left over until more than everything
  // shows.
  const OwnedDib narrow = numberedPicture(19, 20);
  EXPECT_EQ(render(5, narrow, 100, 0).rect, (RECT{0, 0, 11, 20}));
  EXPECT_EQ(pixelsOf(render(5, narrow, 101, 0).image), pixelsOf(narrow));
}

TEST(Thawing, PixelatesByTwoFifthsOfItsAmount) {
  struct Case {
    int w, h;
    long amount;
    int block;  ///< 0 for the picture as it is
  };
  for (const Case& c : {Case{100, 100, 50, 20},
                        {30, 20, 100, 20},
                        {20, 30, 100, 20},
                        {100, 100, 99, 39},
                        {60, 50, LONG_MAX, 50},
                        {100, 100, 3, 1},
                        {30, 20, 2, 0},
                        {30, 20, LONG_MIN, 0}}) {
    const OwnedDib picture = numberedPicture(c.w, c.h);
    const Stage stage = render(16, picture, c.amount, 0);
    EXPECT_EQ(stage.result, 1);
    EXPECT_EQ(stage.rect, (RECT{0, 0, c.w, c.h}));
    const OwnedDib blocks(Mosaic32BitsDIB(picture.get(), c.block));
    EXPECT_EQ(pixelsOf(stage.image), pixelsOf(c.block > 0 ? blocks : picture));
  }
}

}  // namespace
