#include <functional>

#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "support/images.h"

namespace {

using dibkit::OwnedDib;

int luminance(DWORD value) {
  return static_cast<int>((117 * (value & 255) + 601 * (value >> 8 & 255) + 306 * (value >> 16 & 255)) /
                          1024);
}

/// Whether a pixel is one of the n x n around (x, y), off centre to the top left for an even n, whose
/// luminance is at index count / 2 of those in the image.
bool isMedian(DWORD found, const OwnedDib& image, int x, int y, int n) {
  std::vector<int> around;
  bool has = false;
  const int left = x - n / 2, top = y - n / 2;
  const RECT box{std::max(left, 0), std::max(top, 0), std::min<LONG>(left + n, image->biWidth),
                 std::min<LONG>(top + n, image->biHeight)};
  test::forEachPixel(box, [&](int nx, int ny) {
    const DWORD value = test::pixel(image, nx, ny);
    around.push_back(luminance(value));
    has = has || value == found;
  });
  std::sort(around.begin(), around.end());
  return has && luminance(found) == around[around.size() / 2];
}

TEST(MedianFilter32BitsImage, TakesAMedianOfEachNeighbourhood) {
  test::Random random(41);
  constexpr int huge[] = {1000, 65536, INT32_MAX};
  for (int round = 0; round < 320; ++round) {
    // Few gray levels or many, so that medians are found from above and from below.
    const DWORD bits = round % 3 == 0 ? 0x03C0C0C0 : 0xFFFFFFFF;
    const OwnedDib before =
        test::drawn(test::oneOf(random, {1, 2, 3, 4, 7, 8, 9, 15, 33, 300}), 1 + test::below(random, 12), 32,
                    [&](int, int) { return static_cast<DWORD>(random()) & bits; });
    const OwnedDib image = test::copyOf(before);
    const int n = round % 16 == 15 ? huge[round / 16 % 3] : round % 2 == 0 ? 3 : 1 + test::below(random, 14);
    CDIB32::MedianFilter32BitsImage(image.get(), n);
    test::forEachPixel(test::boundsOf(image), [&](int x, int y) {
      ASSERT_TRUE(isMedian(test::pixel(image, x, y), before, x, y, std::min(n, 700)))
          << x << ", " << y << " of " << image->biWidth << " x " << image->biHeight << " by " << n;
    });
    if (HasFatalFailure()) return;
  }
}

TEST(MedianFilter32BitsImage, IsQuickWithLongImagesAndHugeNeighbourhoods) {
  // Columns of a million pixels, added and removed one by one, would never come to an end.
  for (const bool tall : {false, true}) {
    const OwnedDib image(
        CDIB32::CreateSimple32BitsDIB(tall ? 1 : 1 << 20, tall ? 1 << 20 : 1, RGB(9, 9, 9), 255));
    test::setPixel(image, tall ? 0 : 77, tall ? 77 : 0, 0);
    CDIB32::MedianFilter32BitsImage(image.get(), INT32_MAX);
    EXPECT_EQ(test::pixelsOf(image), std::vector<DWORD>(1 << 20, 0xFF090909));
  }
}

}  // namespace
