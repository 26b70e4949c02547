#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "support/images.h"

namespace {

using dibkit::OwnedDib;
using test::pixel;

int lumaOf(DWORD value) {
  return static_cast<int>((117 * (value & 255) + 601 * (value >> 8 & 255) + 306 * (value >> 16 & 255)) >> 10);
}

/// The pixels that the median of a neighbourhood may be: all of it that have the luminance at index count
/// / 2.
std::vector<DWORD> mediansOf(const std::vector<DWORD>& pixels, int width, int height, int x, int y, int n) {
  std::vector<DWORD> around;
  for (std::int64_t dy = -(n / 2); dy < n - n / 2; ++dy) {
    if (y + dy < 0 || y + dy >= height) continue;
    for (std::int64_t dx = -(n / 2); dx < n - n / 2; ++dx) {
      if (x + dx < 0 || x + dx >= width) continue;
      around.push_back(pixels[static_cast<std::size_t>((y + dy) * width + x + dx)]);
    }
  }
  std::sort(around.begin(), around.end(), [](DWORD a, DWORD b) { return lumaOf(a) < lumaOf(b); });
  const int median = lumaOf(around[around.size() / 2]);
  std::erase_if(around, [&](DWORD value) { return lumaOf(value) != median; });
  return around;
}

void expectMedians(const OwnedDib& filtered, const std::vector<DWORD>& before, int n) {
  const int width = filtered->biWidth;
  const int height = filtered->biHeight;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const std::vector<DWORD> allowed = mediansOf(before, width, height, x, y, n);
      const bool found = std::count(allowed.begin(), allowed.end(), pixel(filtered, x, y)) > 0;
      ASSERT_TRUE(found) << x << ", " << y << " of " << width << " x " << height << " by " << n;
    }
  }
}

TEST(MedianFilter32BitsImage, TakesAMedianOfEachNeighbourhood) {
  test::Random random(41);
  constexpr int widths[] = {1, 2, 3, 4, 7, 8, 9, 15, 33};
  for (int round = 0; round < 300; ++round) {
    const int width = widths[round % 9];
    const int height = 1 + test::below(random, 12);
    const int n = round % 2 == 0 ? 3 : 1 + test::below(random, 14);
    // Gray levels set apart or close together, so that medians are found from above and from below.
    const OwnedDib image = test::image(width, height, 32);
    const int levels = round % 3 == 0 ? 4 : 256;
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        const DWORD value = static_cast<DWORD>(random());
        test::setPixel(image, x, y, levels == 4 ? value & 0x03C0C0C0 : value);
      }
    }
    const std::vector<DWORD> before = test::pixelsOf(image);
    CDIB32::MedianFilter32BitsImage(image.get(), n);
    expectMedians(image, before, n);
  }
}

TEST(MedianFilter32BitsImage, CarriesTheWholePixelAndTakesTheUpperOfTwoMedians) {
  // Two samples: index 1 of 2, the brighter one. An even n reaches up and to the left.
  const OwnedDib pair = test::imageOf(3, 1, 32, {0x11303030, 0x22101010, 0x33202020});
  CDIB32::MedianFilter32BitsImage(pair.get(), 2);
  EXPECT_EQ(test::pixelsOf(pair), (std::vector<DWORD>{0x11303030, 0x11303030, 0x33202020}));

  const OwnedDib speck(CDIB32::CreateSimple32BitsDIB(5, 5, RGB(1, 1, 1), 7));
  test::setPixel(speck, 2, 2, 0xFFFFFFFF);
  CDIB32::MedianFilter32BitsImage(speck.get(), 3);
  EXPECT_EQ(test::pixelsOf(speck), std::vector<DWORD>(25, 0x07010101));
}

TEST(MedianFilter32BitsImage, TakesNeighbourhoodsLargerThanTheImage) {
  test::Random random(42);
  for (const int n : {9, 10, 1000, 65536, INT32_MAX}) {
    const OwnedDib image = test::randomImage(7, 5, 32, random);
    const std::vector<DWORD> before = test::pixelsOf(image);
    CDIB32::MedianFilter32BitsImage(image.get(), n);
    expectMedians(image, before, std::min(n, 20));
  }
}

TEST(MedianFilter32BitsImage, IsQuickWithLongImagesAndHugeNeighbourhoods) {
  // Columns of a million pixels, added and removed one by one, would never come to an end.
  const OwnedDib tall(CDIB32::CreateSimple32BitsDIB(1, 1 << 20, RGB(9, 9, 9), 255));
  const OwnedDib wide(CDIB32::CreateSimple32BitsDIB(1 << 20, 1, RGB(9, 9, 9), 255));
  test::setPixel(tall, 0, 77, 0);
  test::setPixel(wide, 77, 0, 0);
  for (const OwnedDib& image : {std::cref(tall), std::cref(wide)}) {
    CDIB32::MedianFilter32BitsImage(image.get(), INT32_MAX);
    EXPECT_EQ(test::pixelsOf(image), std::vector<DWORD>(1 << 20, 0xFF090909));
  }
}

}  // namespace
