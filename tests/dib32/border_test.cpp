#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "support/images.h"

namespace {

using dibkit::OwnedDib;
using test::pixelsOf;
using Pixels = std::vector<DWORD>;

constexpr int untouched = -77;

struct Margins {
  int left = untouched;
  int top = untouched;
  int right = untouched;
  int bottom = untouched;
  friend bool operator==(const Margins&, const Margins&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Margins& m) {
    return out << m.left << " " << m.top << " " << m.right << " " << m.bottom;
  }
};

Margins marginsOf(BITMAPINFOHEADER* image) {
  Margins margins;
  CDIB32::CheckBlankBorder(image, &margins.left, &margins.top, &margins.right, &margins.bottom);
  return margins;
}

/// Row by row and column by column.
Margins literally(const OwnedDib& image) {
  const int width = image->biWidth;
  const int height = image->biHeight;
  const auto blank = [&](int x0, int y0, int x1, int y1) {
    for (int y = y0; y < y1; ++y) {
      for (int x = x0; x < x1; ++x) {
        if (test::pixel(image, x, y) >> 24 != 0) return false;
      }
    }
    return true;
  };
  Margins m;
  m.top = 0;
  while (m.top < height && blank(0, m.top, width, m.top + 1)) ++m.top;
  if (m.top == height) return m;
  m.left = 0;
  while (blank(m.left, m.top, m.left + 1, height)) ++m.left;
  m.right = 0;
  while (blank(width - m.right - 1, m.top, width - m.right, height)) ++m.right;
  m.bottom = 0;
  while (blank(m.left, height - m.bottom - 1, width - m.right, height - m.bottom)) ++m.bottom;
  return m;
}

TEST(CheckBlankBorder, EqualsItsTwin) {
  test::Random random(31);
  for (int round = 0; round < 500; ++round) {
    const int width = 1 + test::below(random, round % 10 == 0 ? 200 : 12);
    const int height = 1 + test::below(random, 12);
    const OwnedDib image = test::image(width, height, 32);
    // Colour without opacity everywhere, a few visible pixels.
    for (int i = 0; i < width * height; ++i) test::setPixel(image, i % width, i / width, 0x00FFFFFF);
    for (int i = test::below(random, 4); i > 0; --i) {
      test::setPixel(image, test::below(random, width), test::below(random, height), 0x01000000);
    }
    ASSERT_EQ(marginsOf(image.get()), literally(image)) << width << " x " << height << ", round " << round;
  }
}

TEST(CheckBlankBorder, LeavesThreeOutputsAloneWithoutAVisiblePixel) {
  const OwnedDib image = test::image(5, 5, 32);
  EXPECT_EQ(marginsOf(image.get()), (Margins{untouched, 5, untouched, untouched}));
  test::setPixel(image, 2, 3, 0x01000000);
  EXPECT_EQ(marginsOf(image.get()), (Margins{2, 3, 2, 1}));
  EXPECT_EQ(marginsOf(test::image(5, 0, 32).get()), (Margins{untouched, 0, untouched, untouched}));
  EXPECT_EQ(marginsOf(nullptr), Margins{});
  EXPECT_EQ(marginsOf(test::image(5, 5, 24).get()), Margins{});
  CDIB32::CheckBlankBorder(image.get(), nullptr, nullptr, nullptr, nullptr);
}

TEST(Trim32BitsDIB, CutsMarginsOff) {
  const OwnedDib image = test::imageOf(3, 3, 32, {1, 2, 3, 4, 5, 0x80000006, 7, 8, 9});
  const auto trimmed = [&](int left, int top, int right, int bottom) {
    return OwnedDib(CDIB32::Trim32BitsDIB(image.get(), left, top, right, bottom));
  };
  EXPECT_EQ(test::bytesOf(trimmed(0, 0, 0, 0)), test::bytesOf(image));
  EXPECT_EQ(pixelsOf(trimmed(1, 1, 0, 1)), (Pixels{5, 0x80000006}));
  EXPECT_EQ(pixelsOf(trimmed(0, 2, 2, 0)), Pixels{7});
  const OwnedDib nothing = trimmed(2, 0, 1, 0);
  ASSERT_TRUE(nothing);
  EXPECT_EQ(nothing->biWidth, 0);
  EXPECT_EQ(trimmed(2, 0, 2, 0), nullptr);
  EXPECT_EQ(trimmed(0, 0, 0, 4), nullptr);
  EXPECT_EQ(trimmed(-1, 0, 0, 0), nullptr);
  EXPECT_EQ(trimmed(0, 0, 0, -1), nullptr);
  EXPECT_EQ(trimmed(INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX), nullptr);
  EXPECT_EQ(CDIB32::Trim32BitsDIB(nullptr, 0, 0, 0, 0), nullptr);
  EXPECT_EQ(CDIB32::Trim32BitsDIB(test::image(1, 1, 16).get(), 0, 0, 0, 0), nullptr);
}

TEST(CreateIconMaskFromAlphaChannel, MarksTransparentPixels) {
  test::Random random(32);
  for (const int width : {1, 4, 7, 8, 9, 15, 33, 64}) {
    const OwnedDib image = test::randomImage(width, 3, 32, random);
    test::setPixel(image, 0, 0, 0x01000000);
    const OwnedDib mask(CDIB32::CreateIconMaskFromAlphaChannel(image.get()));
    ASSERT_TRUE(mask);
    // The same bits in an image whose other bytes are all 0: palette, padding.
    const OwnedDib expected = test::image(width, 3, 1);
    for (int y = 0; y < 3; ++y) {
      for (int x = 0; x < width; ++x) test::setPixel(expected, x, y, test::pixel(image, x, y) >> 24 == 0);
    }
    EXPECT_EQ(test::bytesOf(mask), test::bytesOf(expected)) << width;
    EXPECT_EQ(test::pixel(mask, 0, 0), 0U);
  }
  EXPECT_EQ(CDIB32::CreateIconMaskFromAlphaChannel(nullptr), nullptr);
  EXPECT_EQ(CDIB32::CreateIconMaskFromAlphaChannel(test::image(1, 1, 24).get()), nullptr);
}

TEST(CreateParaShadowDIB, KeepsTheOpacity) {
  const OwnedDib image = test::imageOf(2, 2, 32, {0x00112233, 0x01445566, 0xFF778899, 0x80AABBCC});
  const OwnedDib shadow(CDIB32::CreateParaShadowDIB(image.get(), 0xFF00F010));
  EXPECT_EQ(pixelsOf(shadow), (Pixels{0x0010F000, 0x0110F000, 0xFF10F000, 0x8010F000}));
  EXPECT_EQ(CDIB32::CreateParaShadowDIB(nullptr, 0), nullptr);
  EXPECT_EQ(CDIB32::CreateParaShadowDIB(test::image(1, 1, 8).get(), 0), nullptr);
}

}  // namespace
