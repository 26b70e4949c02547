#include <gtest/gtest.h>

#include "convert/convert.h"
#include "support/images.h"

namespace {

using test::OwnedDib;
using Conversion = BITMAPINFOHEADER* (*)(BITMAPINFOHEADER*, CQorCommonProgress*);

struct Converter {
  int from, to;
  Conversion named, byDepth;
};

using Convert = CBitmapConverter;
const Converter converters[] = {
    {1, 24, Convert::Convert1BitsTo24Bits, Convert::ConvertDIBTo24Bits},
    {4, 24, Convert::Convert4BitsTo24Bits, Convert::ConvertDIBTo24Bits},
    {8, 24, Convert::Convert8BitsTo24Bits, Convert::ConvertDIBTo24Bits},
    {16, 24, Convert::Convert16BitsTo24Bits, Convert::ConvertDIBTo24Bits},
    {32, 24, Convert::Convert32BitsTo24Bits, Convert::ConvertDIBTo24Bits},
    {1, 16, Convert::Convert1BitsTo16Bits, Convert::ConvertDIBTo16Bits},
    {4, 16, Convert::Convert4BitsTo16Bits, Convert::ConvertDIBTo16Bits},
    {8, 16, Convert::Convert8BitsTo16Bits, Convert::ConvertDIBTo16Bits},
    {24, 16, Convert::Convert24BitsTo16Bits, Convert::ConvertDIBTo16Bits},
    {32, 16, Convert::Convert32BitsTo16Bits, Convert::ConvertDIBTo16Bits},
};

/// All entries that a depth can index.
std::vector<DWORD> randomPalette(int bits, test::Random& random) {
  std::vector<DWORD> palette(bits <= 8 ? std::size_t{1} << bits : 0);
  for (DWORD& entry : palette) entry = static_cast<DWORD>(random());
  return palette;
}

/// The colour of a stored pixel in plain arithmetic, 0xRRGGBB.
DWORD colourOf(DWORD stored, int bits, const std::vector<DWORD>& palette) {
  if (bits <= 8) return palette.at(stored) & 0xFFFFFF;
  if (bits != 16) return stored & 0xFFFFFF;
  return (stored / 1024 % 32 * 8) << 16 | (stored / 32 % 32 * 8) << 8 | stored % 32 * 8;
}

DWORD storedAs(DWORD colour, int bits) {
  if (bits == 24) return colour;
  return (colour >> 16 & 255) / 8 * 1024 + (colour >> 8 & 255) / 8 * 32 + (colour & 255) / 8;
}

TEST(Widening, MatchesPlainArithmeticAtEveryDepthAndWidth) {
  test::Random random(7);
  for (const Converter& converter : converters) {
    for (const int width : {1, 4, 7, 8, 9, 15, 33, 511, 513, 1031}) {
      SCOPED_TRACE(testing::Message() << converter.from << " to " << converter.to << ", width " << width);
      const int height = 3;
      const std::vector<DWORD> palette = randomPalette(converter.from, random);
      const OwnedDib source = test::randomImage(width, height, converter.from, random, palette);
      const std::vector<BYTE> before = test::bytesOf(source);
      OwnedDib expected = test::image(width, height, converter.to);
      for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
          const DWORD colour = colourOf(test::pixel(source, x, y), converter.from, palette);
          test::setPixel(expected, x, y, storedAs(colour, converter.to));
        }
      }
      for (const Conversion convert : {converter.named, converter.byDepth}) {
        const OwnedDib result(convert(source.get(), nullptr));
        ASSERT_TRUE(result);
        EXPECT_EQ(test::bytesOf(result), test::bytesOf(expected));
      }
      EXPECT_EQ(test::bytesOf(source), before);
    }
  }
}

/// The same image with a header that is 4 bytes longer.
std::vector<BYTE> withLongerHeader(const OwnedDib& dib, DWORD extra) {
  std::vector<BYTE> block = test::bytesOf(dib);
  block.insert(block.begin() + 40, {BYTE(extra), BYTE(extra >> 8), BYTE(extra >> 16), BYTE(extra >> 24)});
  block[0] = 44;
  return block;
}

TEST(Widening, LooksForThePaletteAtFortyBytesOrAtTheHeadersEnd) {
  const OwnedDib plain = test::imageOf(2, 1, 8, {0, 1}, {0x112233, 0x445566});
  std::vector<BYTE> block = withLongerHeader(plain, 0xAABBCC);
  auto* dib = reinterpret_cast<BITMAPINFOHEADER*>(block.data());
  const OwnedDib to24(CBitmapConverter::Convert8BitsTo24Bits(dib, nullptr));
  EXPECT_EQ(test::pixelsOf(to24.get()), (std::vector<DWORD>{0xAABBCC, 0x112233}));
  const OwnedDib to16(CBitmapConverter::Convert8BitsTo16Bits(dib, nullptr));
  EXPECT_EQ(test::pixelsOf(to16.get()), (std::vector<DWORD>{storedAs(0x112233, 16), storedAs(0x445566, 16)}));
}

TEST(Widening, ReadsBitFieldImagesBehindTheirMasksAsFiveFiveFive) {
  std::vector<BYTE> block(40 + 12 + 4);
  const BITMAPINFOHEADER header{40, 2, 1, 1, 16, BI_BITFIELDS, 0, 0, 0, 0, 0};
  std::memcpy(block.data(), &header, sizeof(header));
  const DWORD masks[] = {0xF800, 0x07E0, 0x001F};
  std::memcpy(block.data() + 40, masks, sizeof(masks));
  block[53] = 0xF8;  // full red in 5-6-5, 30 of 31 in 5-5-5
  const OwnedDib result(
      CBitmapConverter::ConvertDIBTo24Bits(reinterpret_cast<BITMAPINFOHEADER*>(block.data()), nullptr));
  EXPECT_EQ(test::pixelsOf(result.get()), (std::vector<DWORD>{0xF00000, 0}));
}

TEST(Widening, ReadsAnIndexBeyondThePaletteFromTheRows) {
  const OwnedDib source = test::imageOf(4, 1, 8, {1, 0, 9, 9}, {0x102030});
  const OwnedDib result(CBitmapConverter::Convert8BitsTo24Bits(source.get(), nullptr));
  EXPECT_EQ(test::pixelsOf(result.get()), (std::vector<DWORD>{0x090001, 0x102030, 0, 0}));
}

TEST(Dispatchers, CloneTheirOwnDepthInSilence) {
  test::Random random(11);
  for (const auto& [bits, convert] :
       {std::pair<int, Conversion>{16, Convert::ConvertDIBTo16Bits}, {24, Convert::ConvertDIBTo24Bits}}) {
    OwnedDib own = test::randomImage(5, 4, bits, random);
    own->biClrUsed = 7;
    own->biXPelsPerMeter = 2835;
    test::Progress cancelling(0);
    const OwnedDib clone(convert(own.get(), &cancelling));
    ASSERT_TRUE(clone);
    EXPECT_EQ(test::bytesOf(clone), test::bytesOf(own));
    EXPECT_TRUE(cancelling.fractions.empty());
  }
}

TEST(Convert24BitsTo32Bits, ReversesTheChannelsAndFlips) {
  test::Random random(5);
  for (const int width : {1, 4, 5, 33}) {
    const OwnedDib source = test::randomImage(width, 3, 24, random);
    for (const int flip : {0, 1, -2}) {
      const OwnedDib result(CBitmapConverter::Convert24BitsTo32Bits(source.get(), flip, nullptr));
      ASSERT_TRUE(result);
      for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < width; ++x) {
          const DWORD colour = test::pixel(source, x, flip != 0 ? 2 - y : y);
          const BYTE expected[] = {0, BYTE(colour >> 16), BYTE(colour >> 8 & 255), BYTE(colour & 255)};
          EXPECT_EQ(std::memcmp(test::rowOf(result.get(), y) + 4 * x, expected, 4), 0) << x << ", " << y;
        }
      }
    }
  }
}

}  // namespace
