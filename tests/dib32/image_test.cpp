#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "support/images.h"

namespace {

using dibkit::OwnedDib;
using test::imageOf;
using test::pixelsOf;
using Pixels = std::vector<DWORD>;

TEST(CreateSimple32BitsDIB, FillsEveryPixel) {
  // Red in a COLORREF's lowest byte: in memory 0, 0, 255, 200.
  const OwnedDib simple(CDIB32::CreateSimple32BitsDIB(3, 2, 0x000000FF, 200));
  EXPECT_EQ(pixelsOf(simple), Pixels(6, 0xC8FF0000));
  const OwnedDib blank(CDIB32::CreateBlank32BitsDIB(3, 2));
  EXPECT_EQ(test::bytesOf(blank), test::bytesOf(test::image(3, 2, 32)));
}

TEST(ConvertTo32BitsDIB, ReadsEveryDepth) {
  const struct {
    int bitCount;
    Pixels palette, stored, shown;
  } cases[] = {
      {1, {0x112233, 0xA0B0C0}, {0, 1}, {0x07112233, 0x07A0B0C0}},
      {4, {0x010203, 0x040506, 0xFF0708}, {2, 0}, {0x07FF0708, 0x07010203}},
      {8, {0x010203, 0x040506}, {1, 0}, {0x07040506, 0x07010203}},
      {16, {}, {0x7FFF, 0xFC01}, {0x07F8F8F8, 0x07F80008}},  // the low three bits of a channel stay 0
      {24, {}, {0x123456, 0xFFFFFF}, {0x07123456, 0x07FFFFFF}},
      {32, {}, {0xAA123456, 0x00FFFFFF}, {0x07123456, 0x07FFFFFF}},  // its own fourth byte never counts
  };
  for (const auto& expected : cases) {
    const OwnedDib source = imageOf(2, 1, expected.bitCount, expected.stored, expected.palette);
    const OwnedDib result(CDIB32::ConvertTo32BitsDIB(source.get(), nullptr, 7, 9));
    EXPECT_EQ(pixelsOf(result), expected.shown) << expected.bitCount;
  }
}

TEST(ConvertTo32BitsDIB, PairsTheMaskFromTheTopLeftPixel) {
  test::Random random(1);
  const OwnedDib source = test::image(9, 2, 24);
  for (const POINT& size : {POINT{9, 2}, {1, 1}, {8, 1}, {40, 3}}) {  // lacking bits count as clear
    const OwnedDib mask = test::randomImage(size.x, size.y, 1, random);
    const OwnedDib result(CDIB32::ConvertTo32BitsDIB(source.get(), mask.get(), 7, 9));
    test::forEachPixel({0, 0, 9, 2}, [&](int x, int y) {
      const bool masked = x < size.x && y < size.y && test::pixel(mask, x, y) != 0;
      EXPECT_EQ(test::pixel(result, x, y), masked ? 0x09000000U : 0x07000000U) << x << ", " << y;
    });
  }
}

/// A 16-bit image of two pixels with masks behind its header.
OwnedDib bitFields(const DWORD (&masks)[3], WORD pixel) {
  auto* block = new BYTE[40 + 12 + 4];
  const BITMAPINFOHEADER header{40, 2, 1, 1, 16, BI_BITFIELDS, 0, 0, 0, 0, 0};
  const WORD words[2] = {pixel, pixel};
  std::memcpy(block, &header, 40);
  std::memcpy(block + 40, masks, 12);
  std::memcpy(block + 52, words, 4);
  return OwnedDib(reinterpret_cast<BITMAPINFOHEADER*>(block));
}

TEST(ConvertBitField16BitsDIB, FindsFieldsByTheirLengths) {
  const struct {
    DWORD masks[3];
    WORD pixel;
    DWORD shown;
  } cases[] = {
      {{0xF800, 0x07E0, 0x001F}, 0xFFFF, 0xF8FCF8},
      {{0xF800, 0x07E0, 0x001F}, 0x0821, 0x080408},
      {{0x7C00, 0x03E0, 0x001F}, 0xFFFF, 0xF8F8F8},
      {{0xF800, 0x03E0, 0x001F}, 0x8800, 0x100000},  // a gap below red: twice as large, top bit lost
      {{0x001F, 0x07E0, 0xF800}, 0xFFFF, 0x00FC00},  // blue on top: red and blue shift out of their bytes
      {{0x7F00, 0x0000, 0x01FF}, 0x7FFF, 0x7E0000},  // nine bits, and none
      {{0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF}, 0xFFFF, 0x000000},
  };
  const OwnedDib mask = imageOf(2, 1, 1, {1, 0});
  for (const auto& expected : cases) {
    const OwnedDib source = bitFields(expected.masks, expected.pixel);
    // The alphas of the call are not used: 0 where masked, 255 elsewhere.
    const OwnedDib result(CDIB32::ConvertTo32BitsDIB(source.get(), mask.get(), 7, 9));
    EXPECT_EQ(pixelsOf(result), (Pixels{expected.shown, 0xFF000000 | expected.shown}));
  }
}

TEST(CalcuMaskShift, FindsTheLowestRun) {
  const struct {
    DWORD mask;
    int shift, length;
  } cases[] = {{0x1F, 0, 5}, {0x80000000, 31, 1}, {0xFFFFFFFF, 0, 32}, {0xF00FF000, 12, 8}, {0, 0, 0}};
  for (const auto& expected : cases) {
    int shift = -1, length = -1;
    CDIB32::CalcuMaskShift(expected.mask, shift, length);
    EXPECT_EQ(std::pair(shift, length), std::pair(expected.shift, expected.length)) << expected.mask;
  }
}

TEST(Alphas, AreOpaqueTranslucentOrVisible) {
  const struct {
    Pixels pixels;
    BOOL opaque, translucent;
  } cases[] = {{{0xFF000000, 0xFF000000}, TRUE, FALSE},
               {{0xFF000000, 0x00000000}, FALSE, FALSE},
               {{0xFF000000, 0xFE000000}, FALSE, TRUE},
               {{0x01000000, 0xFF000000}, FALSE, TRUE},
               {{0x00FFFFFF, 0x00FFFFFF}, FALSE, FALSE}};
  for (const auto& expected : cases) {
    for (const int width : {1, 2}) {  // one above the other and side by side
      const OwnedDib image = imageOf(width, 2 / width, 32, expected.pixels);
      EXPECT_EQ(CDIB32::IsFullOpacity32BitsImage(image.get()), expected.opaque);
      EXPECT_EQ(CDIB32::IsTranslucence32BitsImage(image.get()), expected.translucent);
    }
  }
  const OwnedDib image = imageOf(2, 2, 32, {0x01000000, 0x00FFFFFF, 0xFF000000, 0x00000000});
  test::forEachPixel({-1, -1, 3, 3}, [&](int x, int y) {
    EXPECT_EQ(CDIB32::IsIn32BitsDIB(image.get(), {x, y}), x == 0 && (y == 0 || y == 1)) << x << ", " << y;
  });
}

TEST(CompareColors, SubtractsLuminances) {
  const BYTE black[] = {0, 0, 0}, blue[] = {255, 0, 0}, green[] = {0, 255, 0}, red[] = {0, 0, 255};
  EXPECT_EQ(CDIB32::CompareColors(black, blue), -29);   // 255 x 117 = 29835, over 1024
  EXPECT_EQ(CDIB32::CompareColors(green, black), 149);  // 255 x 601 = 153255
  EXPECT_EQ(CDIB32::CompareColors(red, black), 76);     // 255 x 306 = 78030
}

}  // namespace
