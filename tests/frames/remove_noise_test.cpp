#include <gtest/gtest.h>

#include "random_frames.h"

namespace {

using dibkit::OwnedDib;

OwnedDib plainFilter(const OwnedDib& source, const BITMAPINFOHEADER* mask) {
  OwnedDib result(CBitmapCreator::Clone(source.get()));
  for (int y = 0; y < source->biHeight; ++y) {
    for (int x = 0; x < source->biWidth; ++x) {
      if (test::transparentAt(mask, x, y)) continue;
      std::vector<int> samples[3];
      for (int ny = std::max(y - 1, 0); ny <= std::min<int>(y + 1, source->biHeight - 1); ++ny) {
        for (int nx = std::max(x - 1, 0); nx <= std::min<int>(x + 1, source->biWidth - 1); ++nx) {
          if (test::transparentAt(mask, nx, ny)) continue;
          for (int i = 0; i < 3; ++i) samples[i].push_back(test::channel(test::pixel(source, nx, ny), 8 * i));
        }
      }
      if (samples[0].size() <= 1) continue;
      DWORD pixel = 0;
      for (int i = 0; i < 3; ++i) {
        std::sort(samples[i].begin(), samples[i].end());
        pixel |= static_cast<DWORD>(samples[i][samples[i].size() / 2]) << (8 * i);
      }
      test::setPixel(result, x, y, pixel);
    }
  }
  return result;
}

TEST(RemoveNoiseDIB, EqualsTheSortedNeighbourhoods) {
  test::Random random(55);
  for (int round = 0; round < 300; ++round) {
    const int width = 1 + test::below(random, round % 10 == 0 ? 140 : 20);
    const int height = 1 + test::below(random, 12);
    const OwnedDib source = test::randomImage(width, height, 24, random);
    const OwnedDib mask = test::maybeMask(width, height, random);
    const OwnedDib result(RemoveNoiseDIB(source.get(), mask.get(), nullptr));
    ASSERT_TRUE(result);
    ASSERT_EQ(test::bytesOf(result), test::bytesOf(plainFilter(source, mask.get())))
        << width << "x" << height;
  }
}

TEST(RemoveNoiseDIB, TakesTheUpperOfTwoMiddleSamples) {
  const OwnedDib pair = test::imageOf(2, 1, 24, {0x102030, 0x405010});
  const OwnedDib result(RemoveNoiseDIB(pair.get(), nullptr, nullptr));
  EXPECT_EQ(test::pixelsOf(result), (std::vector<DWORD>{0x405030, 0x405030}));
}

TEST(RemoveNoiseDIB, LeavesLonelyPixelsAndWhatIsTransparent) {
  const OwnedDib source = test::imageOf(3, 1, 24, {0x111111, 0x222222, 0x333333});
  const OwnedDib mask = test::imageOf(3, 1, 1, {0, 1, 0});
  const OwnedDib result(RemoveNoiseDIB(source.get(), mask.get(), nullptr));
  EXPECT_EQ(test::bytesOf(result), test::bytesOf(source));
}

TEST(RemoveNoiseDIB, ReportsLinesAndCancels) {
  const OwnedDib source = test::image(4, 3, 24);
  test::Progress progress;
  EXPECT_TRUE(OwnedDib(RemoveNoiseDIB(source.get(), nullptr, &progress)));
  EXPECT_EQ(progress.fractions, (std::vector<float>{0.33F, 0.66F, 1.0F}));
  for (const int cancelAt : {0, 1, 2}) {
    test::Progress cancelling(cancelAt);
    EXPECT_EQ(RemoveNoiseDIB(source.get(), nullptr, &cancelling), nullptr);
    EXPECT_EQ(cancelling.fractions.size(), static_cast<std::size_t>(cancelAt) + 1);
  }
}

TEST(RemoveNoiseDIB, RefusesWhatIsNoFrame) {
  const OwnedDib source = test::image(3, 3, 24);
  const OwnedDib shallow = test::image(3, 3, 8);
  EXPECT_EQ(RemoveNoiseDIB(nullptr, nullptr, nullptr), nullptr);
  EXPECT_EQ(RemoveNoiseDIB(shallow.get(), nullptr, nullptr), nullptr);
  EXPECT_EQ(RemoveNoiseDIB(source.get(), shallow.get(), nullptr), nullptr);
  const OwnedDib empty = test::image(3, 0, 24);
  EXPECT_TRUE(OwnedDib(RemoveNoiseDIB(empty.get(), nullptr, nullptr)));
}

}  // namespace
