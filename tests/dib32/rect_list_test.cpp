#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "support/images.h"

namespace {

using Rects = std::vector<std::array<int, 4>>;

RECT toRect(const std::array<int, 4>& r) { return {r[0], r[1], r[2], r[3]}; }

/// The list after adding all rectangles in turn to an empty one.
Rects listOf(const Rects& added) {
  std::vector<RECT> list(added.size() + 1);
  int count = 0;
  for (const auto& rect : added) count = CDIB32::AddRect(list.data(), count, toRect(rect));
  Rects result;
  for (int i = 0; i < count; ++i) {
    const RECT& r = list[static_cast<std::size_t>(i)];
    result.push_back({r.left, r.top, r.right, r.bottom});
  }
  return result;
}

TEST(AddRect, MergesWholeEdgesInChains) {
  struct Case {
    const char* what;
    Rects added;
    Rects list;
  };
  const Case cases[] = {
      {"the first", {{0, 0, 1, 1}}, {{0, 0, 1, 1}}},
      {"a row", {{0, 0, 1, 1}, {1, 0, 2, 1}, {2, 0, 3, 1}}, {{0, 0, 3, 1}}},
      {"a column", {{0, 0, 1, 1}, {0, 1, 1, 2}}, {{0, 0, 1, 2}}},
      {"the same again", {{0, 0, 1, 1}, {5, 5, 6, 6}, {0, 0, 1, 1}}, {{0, 0, 1, 1}, {5, 5, 6, 6}}},
      {"other spans", {{0, 1, 1, 2}, {0, 0, 2, 1}}, {{0, 1, 1, 2}, {0, 0, 2, 1}}},
      {"overlaps", {{0, 0, 4, 4}, {1, 1, 2, 2}, {0, 2, 4, 6}}, {{0, 0, 4, 4}, {1, 1, 2, 2}, {0, 2, 4, 6}}},
      {"a gap closed",
       {{0, 0, 1, 1}, {2, 0, 3, 1}, {9, 9, 10, 10}, {1, 0, 2, 1}},
       {{9, 9, 10, 10}, {0, 0, 3, 1}}},
      {"rows that stack",
       {{0, 0, 2, 1}, {7, 7, 8, 8}, {0, 1, 1, 2}, {1, 1, 2, 2}},
       {{7, 7, 8, 8}, {0, 0, 2, 2}}},
      {"four quarters", {{0, 0, 1, 1}, {1, 1, 2, 2}, {1, 0, 2, 1}, {0, 1, 1, 2}}, {{0, 0, 2, 2}}},
      // An empty rectangle merges with its neighbour into that neighbour, meets it again in the slot that the
      // removal left behind, and is taken for a repetition: the neighbour is lost.
      {"empty at the end of the list", {{5, 5, 6, 6}, {0, 0, 1, 1}, {0, 0, 1, 0}}, {{5, 5, 6, 6}}},
      {"empty before the end", {{0, 0, 1, 1}, {5, 5, 6, 6}, {0, 0, 1, 0}}, {{5, 5, 6, 6}, {0, 0, 1, 1}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(listOf(c.added), c.list);
  }
}

TEST(AddRect, KeepsThePixelsOfARegion) {
  test::Random random(21);
  for (int round = 0; round < 300; ++round) {
    std::vector<RECT> list(65);
    int count = 0;
    std::vector<int> covered(64);
    for (int i = 0; i < 64; ++i) {
      if (test::below(random, 100) >= 75) continue;
      covered[static_cast<std::size_t>(i)] = 1;
      count = CDIB32::AddRect(list.data(), count, {i % 8, i / 8, i % 8 + 1, i / 8 + 1});
    }
    for (int i = 0; i < count; ++i) {
      const RECT& r = list[static_cast<std::size_t>(i)];
      for (int y = r.top; y < r.bottom; ++y) {
        for (int x = r.left; x < r.right; ++x) --covered[static_cast<std::size_t>(y * 8 + x)];
      }
    }
    ASSERT_EQ(covered, std::vector<int>(64)) << "round " << round;
  }
}

TEST(AddRect, TakesARectangleOfTheListItself) {
  std::vector<RECT> list{{0, 0, 1, 1}, {1, 0, 2, 1}, {}};
  EXPECT_EQ(CDIB32::AddRect(list.data() + 1, 0, list[0]), 1);
  EXPECT_EQ(CDIB32::AddRect(list.data(), 2, list[1]), 2);
}

}  // namespace
