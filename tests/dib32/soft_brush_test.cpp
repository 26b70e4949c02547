#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "support/bitmap_regions.h"
#include "support/images.h"

namespace {

using dibkit::OwnedDib;
using dibkit::OwnedRegion;
using test::pixel;

/// A 32-bit sum, difference or product as a register gives it.
int wrapped(std::int64_t value) { return static_cast<int>(static_cast<std::uint32_t>(value)); }

struct Brush {
  BITMAPINFOHEADER* mask;
  POINT position;
  int amount, size;
  HRGN clip;
};

/// The brushes as they are defined: each box counted by itself.
void plainBrush(BITMAPINFOHEADER* image, const Brush& b, bool fill, const BITMAPINFOHEADER* reference) {
  const int width = b.mask->biWidth;
  const int height = b.mask->biHeight;
  const int n = std::min({b.size, width, height});
  if (n < 1) return;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      int count = 0;
      for (int my = std::max(y - n / 2, 0); my < std::min(y - n / 2 + n, height); ++my) {
        for (int mx = std::max(x - n / 2, 0); mx < std::min(x - n / 2 + n, width); ++mx) {
          count += pixel(b.mask, mx, my) != 0;
        }
      }
      const int each = fill ? wrapped(255LL - b.amount) : b.amount;
      const int strength = wrapped(std::int64_t{each} * count) / (n * n);
      const std::int64_t dx = std::int64_t{b.position.x} + x;
      const std::int64_t dy = std::int64_t{b.position.y} + y;
      if (dx < 0 || dx >= image->biWidth || dy < 0 || dy >= image->biHeight) continue;
      const auto at = POINT{static_cast<LONG>(dx), static_cast<LONG>(dy)};
      if (b.clip != nullptr && !PtInRegion(b.clip, at.x, at.y)) continue;
      if (reference != nullptr && (at.y >= reference->biHeight || pixel(reference, at.x, at.y) >> 24 == 0))
        continue;
      const DWORD value = pixel(image, at.x, at.y);
      const int alpha = static_cast<int>(value >> 24);
      const int result = fill ? std::min(wrapped(std::int64_t{alpha} + strength), 255)
                              : std::max(wrapped(std::int64_t{alpha} - strength), 0);
      test::setPixel(image, at.x, at.y, (value & 0xFFFFFF) | static_cast<DWORD>(result & 255) << 24);
    }
  }
}

TEST(SoftBrushes, EqualBoxesCountedOneByOne) {
  test::Random random(61);
  constexpr int amounts[] = {0, 1, 60, 128, 254, 255};
  constexpr int oddAmounts[] = {256, 1000, -1, -255, 0x40000001, INT32_MAX, INT32_MIN, -0x7FFFFF00};
  for (int round = 0; round < 1200; ++round) {
    const OwnedDib image =
        test::randomImage(1 + test::below(random, 34), 1 + test::below(random, 20), 32, random);
    const OwnedDib mask = test::image(1 + test::below(random, 20), 1 + test::below(random, 16), 8);
    for (int y = 0; y < mask->biHeight; ++y) {
      for (int x = 0; x < mask->biWidth; ++x) {
        test::setPixel(mask, x, y,
                       test::below(random, 3) == 0 ? 0 : static_cast<DWORD>(1 + test::below(random, 255)));
      }
    }
    const OwnedDib reference = test::randomImage(image->biWidth, 1 + test::below(random, 24), 32, random);
    const OwnedRegion clip = test::ellipse(test::below(random, 9) - 4, test::below(random, 9) - 4,
                                           5 + test::below(random, 30), 5 + test::below(random, 20));
    const OwnedDib expected(CBitmapCreator::Clone(image.get()));
    const Brush b{mask.get(),
                  {test::below(random, 40) - 15, test::below(random, 30) - 12},
                  round % 4 == 0 ? oddAmounts[test::below(random, 8)] : amounts[test::below(random, 6)],
                  round % 7 == 0 ? INT32_MAX : 1 + test::below(random, 12),
                  round % 2 == 0 ? clip.get() : nullptr};
    switch (round % 3) {
      case 0:
        plainBrush(expected.get(), b, false, nullptr);
        CDIB32::SmoothBlock(image.get(), b.mask, b.position, b.amount, b.size, b.clip);
        break;
      case 1:
        plainBrush(expected.get(), b, true, nullptr);
        CDIB32::SmoothFillBlock(image.get(), b.mask, b.position, b.amount, b.size, b.clip);
        break;
      default:
        plainBrush(expected.get(), b, true, reference.get());
        CDIB32::SmoothFillBlock(image.get(), b.mask, reference.get(), b.position, b.amount, b.size, b.clip);
    }
    ASSERT_EQ(test::bytesOf(image), test::bytesOf(expected)) << "round " << round;
  }
}

/// Opacities of an image of 6 x 3 pixels of one colour after a touch of a full brush of 4 x 3 at (1, 0).
std::vector<int> touched(int before, bool fill, int amount, int size) {
  const OwnedDib image(CDIB32::CreateSimple32BitsDIB(6, 3, RGB(1, 2, 3), static_cast<BYTE>(before)));
  const OwnedDib mask = test::imageOf(4, 3, 8, std::vector<DWORD>(12, 1));
  (fill ? static_cast<void (*)(BITMAPINFOHEADER*, BITMAPINFOHEADER*, const POINT&, int, int, HRGN)>(
              &CDIB32::SmoothFillBlock)
        : &CDIB32::SmoothBlock)(image.get(), mask.get(), {1, 0}, amount, size, nullptr);
  std::vector<int> alphas;
  for (const DWORD value : test::pixelsOf(image)) {
    EXPECT_EQ(value & 0xFFFFFF, 0x010203U);
    alphas.push_back(static_cast<int>(value >> 24));
  }
  return alphas;
}

TEST(SoftBrushes, FeatherOverTheWholeAreaAtTheEdgesToo) {
  using Alphas = std::vector<int>;
  // Size 2: the box has the pixel, its left, its upper and its upper left neighbour. 100 x 1, 2 or 4 / 4.
  EXPECT_EQ(touched(200, false, 100, 2), (Alphas{200, 175, 150, 150, 150, 200,  //
                                                 200, 150, 100, 100, 100, 200,  //
                                                 200, 150, 100, 100, 100, 200}));
  // 255 - 155 = 100 a byte of the brush, size 3: 4, 6 or 9 of 9 give 44, 66 and 100; 255 is the limit.
  EXPECT_EQ(touched(190, true, 155, 3), (Alphas{190, 234, 255, 255, 234, 190,  //
                                                190, 255, 255, 255, 255, 190,  //
                                                190, 234, 255, 255, 234, 190}));
  // The strongest amounts, and those that do nothing.
  const auto rows = [](int v) { return Alphas{9, v, v, v, v, 9, 9, v, v, v, v, 9, 9, v, v, v, v, 9}; };
  EXPECT_EQ(touched(9, false, 255, 1), rows(0));
  EXPECT_EQ(touched(9, true, 0, 1), rows(255));
  EXPECT_EQ(touched(9, false, 0, 2), rows(9));
  EXPECT_EQ(touched(9, true, 255, 2), rows(9));
}

}  // namespace
