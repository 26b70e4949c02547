#include <gtest/gtest.h>

#include "plain.h"

namespace {

using dibkit::OwnedDib;

/// Block after block, each painting over its neighbours' shared edge.
OwnedDib plainMosaic(const OwnedDib& source, int blockSize) {
  const int width = source->biWidth, height = source->biHeight, n = std::min({blockSize, width, height});
  OwnedDib result = test::image(width, height, 32);
  for (int top = 0; top < height; top += n) {
    for (int left = 0; left < width; left += n) {
      const RECT block{left, top, std::min(left + n + 1, width), std::min(top + n + 1, height)};
      DWORD sums[3] = {}, count = 0;
      test::forEachPixel(block, [&](int x, int y) {
        for (int i = 0; i < 3; ++i) sums[i] += test::pixel(source, x, y) >> (8 * i) & 255;
        ++count;
      });
      const DWORD average = 0xFF000000 | sums[2] / count << 16 | sums[1] / count << 8 | sums[0] / count;
      test::forEachPixel(block, [&](int x, int y) { test::setPixel(result, x, y, average); });
    }
  }
  return result;
}

TEST(Mosaic32BitsDIB, EqualsPaintingBlockAfterBlock) {
  test::Random random(54);
  for (int round = 0; round < 300; ++round) {
    const OwnedDib source =
        test::randomImage(1 + test::below(random, 40), 1 + test::below(random, 40), 32, random);
    const int blockSize = round == 0 ? INT32_MAX : 1 + test::below(random, 45);
    ASSERT_TRUE(
        test::same(OwnedDib(Mosaic32BitsDIB(source.get(), blockSize)), plainMosaic(source, blockSize)))
        << "block " << blockSize;
  }
}

OwnedDib withoutNoise(const OwnedDib& source, const OwnedDib& mask) {
  return OwnedDib(RemoveNoiseDIB(source.get(), mask.get(), nullptr));
}

TEST(RemoveNoiseDIB, EqualsTheSortedNeighbourhoods) {
  test::Random random(55);
  for (int round = 0; round < 300; ++round) {
    const int width = 1 + test::below(random, round % 10 == 0 ? 140 : 20),
              height = 1 + test::below(random, 12);
    const OwnedDib source = test::randomImage(width, height, 24, random);
    const OwnedDib mask = round % 3 == 0 ? nullptr : test::randomMask(width, height, round % 3 * 30, random);
    const OwnedDib expected = test::copyOf(source);
    test::forEachPixel(test::boundsOf(source), [&](int x, int y) {
      std::vector<DWORD> samples[3];
      test::forEachPixel(
          {std::max(x - 1, 0), std::max(y - 1, 0), std::min(x + 2, width), std::min(y + 2, height)},
          [&](int nx, int ny) {
            if (test::marked(mask, nx, ny)) return;
            for (int i = 0; i < 3; ++i) samples[i].push_back(test::pixel(source, nx, ny) >> (8 * i) & 255);
          });
      if (test::marked(mask, x, y) || samples[0].size() <= 1) return;
      DWORD median = 0;
      for (int i = 0; i < 3; ++i) {
        std::sort(samples[i].begin(), samples[i].end());
        median |= samples[i][samples[i].size() / 2] << (8 * i);  // the upper one of two
      }
      test::setPixel(expected, x, y, median);
    });
    ASSERT_TRUE(test::same(withoutNoise(source, mask), expected)) << width << "x" << height;
  }
}

TEST(RemoveNoiseDIB, ReportsLinesAndCancels) {
  const OwnedDib source = test::image(4, 3, 24);
  test::Progress progress, cancelling(1);
  EXPECT_TRUE(OwnedDib(RemoveNoiseDIB(source.get(), nullptr, &progress)));
  EXPECT_EQ(progress.fractions, (std::vector<float>{0.33F, 0.66F, 1.0F}));
  EXPECT_FALSE(OwnedDib(RemoveNoiseDIB(source.get(), nullptr, &cancelling)));
  EXPECT_EQ(cancelling.fractions.size(), 2U);
}

}  // namespace
