#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "support/images.h"

namespace {

using Rects = std::vector<std::array<LONG, 4>>;

/// The list after all rectangles were added in turn to an empty one.
Rects listOf(const Rects& added) {
  std::vector<RECT> list(added.size() + 1);
  int count = 0;
  for (const auto& r : added) count = CDIB32::AddRect(list.data(), count, {r[0], r[1], r[2], r[3]});
  list.resize(static_cast<std::size_t>(count));
  Rects result;
  for (const RECT& r : list) result.push_back({r.left, r.top, r.right, r.bottom});
  return result;
}

TEST(AddRect, MergesWholeEdgesInChains) {
  const struct {
    const char* what;
    Rects added, list;
  } cases[] = {
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
      // The union of two empty ones is the empty rectangle at the origin, which merges with the first once
      // more.
      {"two empty ones", {{0, 0, 0, 5}, {0, 5, 0, 9}}, {}},
      {"empty before the end", {{0, 0, 1, 1}, {5, 5, 6, 6}, {0, 0, 1, 0}}, {{5, 5, 6, 6}, {0, 0, 1, 1}}},
  };
  for (const auto& expected : cases) EXPECT_EQ(listOf(expected.added), expected.list) << expected.what;
  std::vector<RECT> own{{0, 0, 1, 1}, {1, 0, 2, 1}, {}};  // a rectangle of the list itself
  EXPECT_EQ(CDIB32::AddRect(own.data() + 1, 0, own[0]), 1);
  EXPECT_EQ(CDIB32::AddRect(own.data(), 2, own[1]), 2);
}

TEST(AddRect, KeepsEachPixelOnce) {
  test::Random random(21);
  for (int round = 0; round < 300; ++round) {
    Rects added;
    std::vector<int> missing(64);
    for (LONG i = 0; i < 64; ++i) {
      if (test::below(random, 100) >= 75) continue;
      missing[static_cast<std::size_t>(i)] = 1;
      added.push_back({i % 8, i / 8, i % 8 + 1, i / 8 + 1});
    }
    for (const auto& r : listOf(added)) {
      test::forEachPixel({r[0], r[1], r[2], r[3]},
                         [&](int x, int y) { --missing[static_cast<std::size_t>(y * 8 + x)]; });
    }
    ASSERT_EQ(missing, std::vector<int>(64)) << "round " << round;
  }
}

}  // namespace
