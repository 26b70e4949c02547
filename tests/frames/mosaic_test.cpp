#include <gtest/gtest.h>

#include "random_frames.h"

namespace {

using dibkit::OwnedDib;

/// Block after block, each painting over its neighbours' shared edge.
OwnedDib plainMosaic(const OwnedDib& source, int blockSize) {
  const int width = source->biWidth;
  const int height = source->biHeight;
  const int n = std::min({blockSize, width, height});
  OwnedDib result = test::image(width, height, 32);
  for (int by = 0; by * n < height; ++by) {
    for (int bx = 0; bx * n < width; ++bx) {
      const int right = std::min(bx * n + n, width - 1);
      const int bottom = std::min(by * n + n, height - 1);
      DWORD sums[3] = {};
      DWORD count = 0;
      for (int y = by * n; y <= bottom; ++y) {
        for (int x = bx * n; x <= right; ++x, ++count) {
          const DWORD pixel = test::pixel(source, x, y);
          for (int i = 0; i < 3; ++i) sums[i] += pixel >> (8 * i) & 255;
        }
      }
      const DWORD average = 0xFF000000 | sums[2] / count << 16 | sums[1] / count << 8 | sums[0] / count;
      for (int y = by * n; y <= bottom; ++y) {
        for (int x = bx * n; x <= right; ++x) test::setPixel(result, x, y, average);
      }
    }
  }
  return result;
}

TEST(Mosaic32BitsDIB, EqualsPaintingBlockAfterBlock) {
  test::Random random(54);
  for (int round = 0; round < 300; ++round) {
    const OwnedDib source =
        test::randomImage(1 + test::below(random, 40), 1 + test::below(random, 40), 32, random);
    const int blockSize = 1 + test::below(random, 45);
    const OwnedDib result(Mosaic32BitsDIB(source.get(), blockSize));
    ASSERT_TRUE(result);
    ASSERT_EQ(test::bytesOf(result), test::bytesOf(plainMosaic(source, blockSize))) << "block " << blockSize;
  }
}

TEST(Mosaic32BitsDIB, AveragesOverTheNeighboursEdges) {
  // Blocks of 1: every pixel is the average of itself and its right and lower neighbours.
  const OwnedDib source = test::imageOf(2, 2, 32, {0x000000, 0x000004, 0x000008, 0xFF00000F});
  const OwnedDib result(Mosaic32BitsDIB(source.get(), 1));
  EXPECT_EQ(test::pixelsOf(result), (std::vector<DWORD>{0xFF000006, 0xFF000009, 0xFF00000B, 0xFF00000F}));
}

TEST(Mosaic32BitsDIB, RefusesWhatHasNoBlocks) {
  const OwnedDib source = test::image(3, 3, 32);
  EXPECT_EQ(Mosaic32BitsDIB(source.get(), 0), nullptr);
  EXPECT_EQ(Mosaic32BitsDIB(source.get(), INT32_MIN), nullptr);
  EXPECT_EQ(Mosaic32BitsDIB(nullptr, 2), nullptr);
  const OwnedDib empty = test::image(0, 3, 32);
  EXPECT_EQ(Mosaic32BitsDIB(empty.get(), 2), nullptr);
  const OwnedDib shallow = test::image(3, 3, 8);
  EXPECT_EQ(Mosaic32BitsDIB(shallow.get(), 2), nullptr);
  EXPECT_TRUE(OwnedDib(Mosaic32BitsDIB(source.get(), INT32_MAX)));
}

}  // namespace
