#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "support/images.h"

namespace {

using dibkit::OwnedDib;

/// The kernel as it is defined, in wide integers.
std::vector<DWORD> plainSharpen(const OwnedDib& image, std::int64_t k) {
  std::vector<DWORD> result;
  for (int y = 0; y < image->biHeight; ++y) {
    for (int x = 0; x < image->biWidth; ++x) {
      DWORD value = test::pixel(image, x, y) & 0xFF000000;
      for (const int shift : {0, 8, 16}) {
        std::int64_t sum = 0;
        for (int dy = -1; dy <= 1; ++dy) {
          for (int dx = -1; dx <= 1; ++dx) {
            const DWORD nearby = test::pixel(image, std::clamp<LONG>(x + dx, 0, image->biWidth - 1),
                                             std::clamp<LONG>(y + dy, 0, image->biHeight - 1));
            sum += (dx == 0 && dy == 0 ? k + 8 : -1) * std::int64_t{nearby >> shift & 255};
          }
        }
        value |= static_cast<DWORD>(std::clamp<std::int64_t>(sum / (k >= 1 ? k : 1), 0, 255)) << shift;
      }
      result.push_back(value);
    }
  }
  return result;
}

void expectSharpened(const OwnedDib& image, int k) {
  const OwnedDib copy(CBitmapCreator::Clone(image.get()));
  CDIB32::Sharpen32BitsImage(copy.get(), k);
  ASSERT_EQ(test::pixelsOf(copy), plainSharpen(image, k)) << "k " << k;
}

TEST(Sharpen32BitsImage, EqualsTheKernelForImagesOfAnySize) {
  test::Random random(51);
  for (const int width : {1, 2, 3, 4, 7, 8, 9, 15, 33}) {
    for (const int height : {1, 2, 3, 6}) {
      const OwnedDib image = test::randomImage(width, height, 32, random);
      for (const int k : {1, 2, 3, 10, 0, -1, -7, -8, -9}) expectSharpened(image, k);
    }
  }
}

TEST(Sharpen32BitsImage, DividesExactlyByEveryK) {
  // Rows of 0 and 255 around single levels give sums all over the range, the extremes among them.
  test::Random random(52);
  const OwnedDib image = test::randomImage(12, 4, 32, random);
  for (int x = 0; x < 8; ++x) {
    for (int y = 0; y < 3; ++y)
      test::setPixel(image, x, y, x == 1 && y == 1 ? 0xFFFFFFFF : 0x00FFFFFF * (x > 3));
  }
  test::setPixel(image, 6, 1, 0);
  for (int k = -12; k <= 2060; ++k) expectSharpened(image, k);
  for (const int k : {4096, 65535, 65536, 1 << 30, INT32_MAX, INT32_MAX - 7, -4096, -65536, INT32_MIN}) {
    expectSharpened(image, k);
  }
}

}  // namespace
