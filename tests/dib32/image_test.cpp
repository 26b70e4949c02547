#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "support/images.h"

namespace {

using dibkit::OwnedDib;
using test::imageOf;
using test::pixelsOf;
using Pixels = std::vector<DWORD>;

TEST(Create32Bits, FillsEveryPixel) {
  const OwnedDib blank(CDIB32::CreateBlank32BitsDIB(3, 2));
  EXPECT_EQ(pixelsOf(blank), Pixels(6, 0));
  // Red in a COLORREF's lowest byte: in memory 0, 0, 255, 200.
  const OwnedDib simple(CDIB32::CreateSimple32BitsDIB(3, 2, 0x000000FF, 200));
  EXPECT_EQ(pixelsOf(simple), Pixels(6, 0xC8FF0000));
  const BITMAPINFOHEADER header{40, 3, 2, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  EXPECT_EQ(std::memcmp(simple.get(), &header, sizeof(header)), 0);
  EXPECT_EQ(CDIB32::CreateBlank32BitsDIB(-1, 2), nullptr);
  EXPECT_EQ(CDIB32::CreateSimple32BitsDIB(65536, 65536, 0, 0), nullptr);
}

TEST(ConvertTo32BitsDIB, ReadsEveryDepth) {
  struct Case {
    int bitCount;
    Pixels palette, stored, shown;
  };
  const Case cases[] = {
      {1, {0x112233, 0xA0B0C0}, {0, 1, 1}, {0x07112233, 0x07A0B0C0, 0x07A0B0C0}},
      {4, {0x010203, 0x040506, 0xFF0708}, {2, 0, 1}, {0x07FF0708, 0x07010203, 0x07040506}},
      {8, {0x010203, 0x040506}, {1, 1, 0}, {0x07040506, 0x07040506, 0x07010203}},
      // 5-5-5: the low three bits of a channel stay 0.
      {16, {}, {0x7FFF, 0x8000, 0x7C01}, {0x07F8F8F8, 0x07000000, 0x07F80008}},
      {24, {}, {0x123456, 0, 0xFFFFFF}, {0x07123456, 0x07000000, 0x07FFFFFF}},
      // The picture's own fourth byte never counts.
      {32, {}, {0xAA123456, 0x80000000, 0x00FFFFFF}, {0x07123456, 0x07000000, 0x07FFFFFF}},
  };
  for (const Case& expected : cases) {
    SCOPED_TRACE(expected.bitCount);
    const OwnedDib source = imageOf(3, 1, expected.bitCount, expected.stored, expected.palette);
    const std::vector<BYTE> before = test::bytesOf(source);
    const OwnedDib result(CDIB32::ConvertTo32BitsDIB(source.get(), nullptr, 7, 9));
    ASSERT_TRUE(result);
    EXPECT_EQ(pixelsOf(result), expected.shown);
    EXPECT_EQ(test::bytesOf(source), before);
  }
}

TEST(ConvertTo32BitsDIB, PairsTheMaskFromTheTopLeftPixel) {
  const OwnedDib source = test::image(9, 2, 24);
  Pixels bits(18, 0);
  bits[0] = bits[8] = bits[9 + 7] = 1;
  Pixels alphas(18, 0x07000000);
  alphas[0] = alphas[8] = alphas[9 + 7] = 0x09000000;
  const OwnedDib mask = imageOf(9, 2, 1, bits);
  EXPECT_EQ(pixelsOf(OwnedDib(CDIB32::ConvertTo32BitsDIB(source.get(), mask.get(), 7, 9))), alphas);

  // A smaller mask lacks bits, which count as clear; a larger one has some to spare, below and to the right.
  const OwnedDib small = imageOf(1, 1, 1, {1});
  Pixels corner(18, 0x07000000);
  corner[0] = 0x09000000;
  EXPECT_EQ(pixelsOf(OwnedDib(CDIB32::ConvertTo32BitsDIB(source.get(), small.get(), 7, 9))), corner);
  Pixels largeBits(40 * 3, 1);
  largeBits[0] = 0;
  const OwnedDib large = imageOf(40, 3, 1, largeBits);
  Pixels masked(18, 0x09000000);
  masked[0] = 0x07000000;
  EXPECT_EQ(pixelsOf(OwnedDib(CDIB32::ConvertTo32BitsDIB(source.get(), large.get(), 7, 9))), masked);
  // An image of another depth is no mask.
  EXPECT_EQ(pixelsOf(OwnedDib(CDIB32::ConvertTo32BitsDIB(source.get(), source.get(), 7, 9))),
            Pixels(18, 0x07000000));
}

/// A 16-bit image with masks behind its header, of one row.
OwnedDib bitFields(const std::vector<DWORD>& masks, const std::vector<WORD>& words) {
  const auto width = static_cast<LONG>(words.size());
  const std::size_t bytes = 40 + 12 + static_cast<std::size_t>(dibkit::strideOf(width, 16));
  auto* block = new BYTE[bytes]();
  const BITMAPINFOHEADER header{40, width, 1, 1, 16, BI_BITFIELDS, 0, 0, 0, 0, 0};
  std::memcpy(block, &header, 40);
  std::memcpy(block + 40, masks.data(), 12);
  std::memcpy(block + 52, words.data(), words.size() * 2);
  return OwnedDib(reinterpret_cast<BITMAPINFOHEADER*>(block));
}

TEST(ConvertBitField16BitsDIB, FindsFieldsByTheirLengths) {
  struct Case {
    std::vector<DWORD> masks;
    WORD pixel;
    DWORD shown;
  };
  const Case cases[] = {
      {{0xF800, 0x07E0, 0x001F}, 0xFFFF, 0xFFF8FCF8},
      {{0xF800, 0x07E0, 0x001F}, 0x0821, 0xFF080408},
      {{0x7C00, 0x03E0, 0x001F}, 0xFFFF, 0xFFF8F8F8},
      {{0x0F00, 0x00F0, 0x000F}, 0xFA5C, 0xFFA050C0},
      // A gap of one bit below red: red reads twice as large and loses its top bit in the byte.
      {{0xF800, 0x03E0, 0x001F}, 0x8800, 0xFF100000},
      // Blue on top, red at the bottom: red shifts out, blue's byte only sees the bits above.
      {{0x001F, 0x07E0, 0xF800}, 0xFFFF, 0xFF00FC00},
      // Nine bits and no bits.
      {{0x7F00, 0x0000, 0x01FF}, 0x7FFF, 0xFF7E0000},
      {{0, 0, 0}, 0xFFFF, 0xFF000000},
      {{0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF}, 0xFFFF, 0xFF000000},
  };
  for (const Case& expected : cases) {
    const OwnedDib source = bitFields(expected.masks, {expected.pixel});
    const OwnedDib result(CDIB32::ConvertTo32BitsDIB(source.get(), nullptr, 7, 9));
    ASSERT_TRUE(result);
    EXPECT_EQ(test::pixel(result, 0, 0), expected.shown) << std::hex << expected.masks[0];
  }
  const OwnedDib source = bitFields({0xF800, 0x07E0, 0x001F}, {0xFFFF, 0xFFFF});
  const OwnedDib mask = imageOf(2, 1, 1, {1, 0});
  const OwnedDib result(CDIB32::ConvertBitField16BitsDIBTo32BitsDIB(source.get(), mask.get()));
  EXPECT_EQ(pixelsOf(result), (Pixels{0x00F8FCF8, 0xFFF8FCF8}));
  const OwnedDib plain = test::image(2, 2, 16);
  EXPECT_EQ(CDIB32::ConvertBitField16BitsDIBTo32BitsDIB(plain.get(), nullptr), nullptr);
}

TEST(CalcuMaskShift, FindsTheLowestRun) {
  const struct {
    DWORD mask;
    int shift, length;
  } cases[] = {{0x1F, 0, 5},        {0x07E0, 5, 6}, {0xF800, 11, 5},     {0x80000000, 31, 1},
               {0xFFFFFFFF, 0, 32}, {0x0505, 0, 1}, {0xF00FF000, 12, 8}, {0, 0, 0}};
  for (const auto& expected : cases) {
    int shift = -1;
    int length = -1;
    CDIB32::CalcuMaskShift(expected.mask, shift, length);
    EXPECT_EQ(shift, expected.shift) << std::hex << expected.mask;
    EXPECT_EQ(length, expected.length) << std::hex << expected.mask;
  }
}

TEST(WholeImage, ChangesColourOrOpacityAlone) {
  const Pixels pixels{0x00112233, 0x01445566, 0xFF778899, 0x80AABBCC};
  OwnedDib image = imageOf(2, 2, 32, pixels);
  CDIB32::Make32BitsSimpleColorDIB(image.get(), 0xFF102030);
  EXPECT_EQ(pixelsOf(image), (Pixels{0x00302010, 0x01302010, 0xFF302010, 0x80302010}));
  image = imageOf(2, 2, 32, pixels);
  CDIB32::MakeAllPixelsSameOpacity(image.get(), 5);
  EXPECT_EQ(pixelsOf(image), (Pixels{0x05112233, 0x05445566, 0x05778899, 0x05AABBCC}));
  CDIB32::Fill32DIBBackground(image.get(), 1, 2, 3);
  EXPECT_EQ(pixelsOf(image), Pixels(4, 0xFF010203));
}

TEST(Reduce32BitsDIBOpacity, TruncatesForEveryPair) {
  const OwnedDib image = test::image(256, 1, 32);
  for (int reduction = 0; reduction < 256; ++reduction) {
    for (int alpha = 0; alpha < 256; ++alpha) {
      test::setPixel(image, alpha, 0, static_cast<DWORD>(alpha) << 24 | 0x123456);
    }
    CDIB32::Reduce32BitsDIBOpacity(image.get(), static_cast<BYTE>(reduction));
    for (int alpha = 0; alpha < 256; ++alpha) {
      const auto expected = static_cast<DWORD>(alpha * (255 - reduction) / 255) << 24 | 0x123456;
      ASSERT_EQ(test::pixel(image, alpha, 0), expected) << alpha << " by " << reduction;
    }
  }
}

TEST(WholeImage, TellsOpaqueTranslucentAndTransparentApart) {
  const struct {
    Pixels pixels;
    BOOL opaque, translucent;
  } cases[] = {
      {{0xFF000000, 0xFF000000}, TRUE, FALSE},  {{0xFF000000, 0x00000000}, FALSE, FALSE},
      {{0xFF000000, 0xFE000000}, FALSE, TRUE},  {{0x01000000, 0xFF000000}, FALSE, TRUE},
      {{0x00FFFFFF, 0x00FFFFFF}, FALSE, FALSE},
  };
  for (const auto& expected : cases) {
    for (const int width : {1, 2}) {  // side by side and one above the other
      const OwnedDib image = imageOf(width, 2 / width, 32, expected.pixels);
      EXPECT_EQ(CDIB32::IsFullOpacity32BitsImage(image.get()), expected.opaque);
      EXPECT_EQ(CDIB32::IsTranslucence32BitsImage(image.get()), expected.translucent);
    }
  }
}

TEST(IsIn32BitsDIB, AsksForAVisiblePixelInside) {
  const OwnedDib image = imageOf(2, 2, 32, {0x01000000, 0x00FFFFFF, 0xFF000000, 0x00000000});
  const struct {
    POINT point;
    BOOL inside;
  } cases[] = {{{0, 0}, TRUE},   {{1, 0}, FALSE}, {{0, 1}, TRUE},  {{2, 0}, FALSE},
               {{-1, 0}, FALSE}, {{0, 2}, FALSE}, {{0, -1}, FALSE}};
  for (const auto& expected : cases) {
    EXPECT_EQ(CDIB32::IsIn32BitsDIB(image.get(), expected.point), expected.inside)
        << expected.point.x << ", " << expected.point.y;
  }
}

TEST(CompareColors, SubtractsLuminances) {
  const BYTE black[] = {0, 0, 0};
  const BYTE white[] = {255, 255, 255};
  const BYTE blue[] = {255, 0, 0};
  const BYTE green[] = {0, 255, 0};
  const BYTE red[] = {0, 0, 255};
  EXPECT_EQ(CDIB32::CompareColors(white, black), 255);
  EXPECT_EQ(CDIB32::CompareColors(black, white), -255);
  EXPECT_EQ(CDIB32::CompareColors(blue, black), 29);    // 29835 / 1024
  EXPECT_EQ(CDIB32::CompareColors(green, black), 149);  // 153255 / 1024
  EXPECT_EQ(CDIB32::CompareColors(red, black), 76);     // 78030 / 1024
  EXPECT_EQ(CDIB32::CompareColors(red, green), -73);
}

TEST(WholeImage, LeavesWhatIsNo32BitImageAlone) {
  const OwnedDib shallow = imageOf(2, 1, 24, {1, 2});
  BITMAPINFOHEADER hostile{40, 70000, 70000, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  const std::vector<BYTE> before = test::bytesOf(shallow);
  for (BITMAPINFOHEADER* wrong : {static_cast<BITMAPINFOHEADER*>(nullptr), shallow.get(), &hostile}) {
    CDIB32::Make32BitsSimpleColorDIB(wrong, 1);
    CDIB32::MakeAllPixelsSameOpacity(wrong, 1);
    CDIB32::Reduce32BitsDIBOpacity(wrong, 1);
    CDIB32::Fill32DIBBackground(wrong, 1, 1, 1);
    EXPECT_FALSE(CDIB32::IsFullOpacity32BitsImage(wrong));
    EXPECT_FALSE(CDIB32::IsTranslucence32BitsImage(wrong));
    EXPECT_FALSE(CDIB32::IsIn32BitsDIB(wrong, {0, 0}));
  }
  EXPECT_EQ(test::bytesOf(shallow), before);
  EXPECT_EQ(CDIB32::ConvertTo32BitsDIB(nullptr, nullptr, 1, 1), nullptr);
  EXPECT_EQ(CDIB32::ConvertTo32BitsDIB(&hostile, nullptr, 1, 1), nullptr);
  const OwnedDib twoBits(CBitmapCreator::CreateDibImage(2, 2, 2, 0));
  EXPECT_EQ(CDIB32::ConvertTo32BitsDIB(twoBits.get(), nullptr, 1, 1), nullptr);
}

TEST(Class, CopiesNothingAndIsPolymorphic) {
  static_assert(std::is_polymorphic_v<CDIB32> && std::has_virtual_destructor_v<CDIB32>);
  static_assert(sizeof(CDIB32) == sizeof(void*));
  CDIB32 one;
  CDIB32 two(one);
  EXPECT_EQ(&(one = two), &one);
}

}  // namespace
