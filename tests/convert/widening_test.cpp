#include <gtest/gtest.h>

#include "convert/convert.h"
#include "support/images.h"

namespace {

using test::OwnedDib;
using Conversion = BITMAPINFOHEADER* (*)(BITMAPINFOHEADER*, CQorCommonProgress*);

struct Converter {
  const char* name;
  Conversion convert;
  int from, to;
};

const Converter converters[] = {
    {"1 to 24", CBitmapConverter::Convert1BitsTo24Bits, 1, 24},
    {"4 to 24", CBitmapConverter::Convert4BitsTo24Bits, 4, 24},
    {"8 to 24", CBitmapConverter::Convert8BitsTo24Bits, 8, 24},
    {"16 to 24", CBitmapConverter::Convert16BitsTo24Bits, 16, 24},
    {"32 to 24", CBitmapConverter::Convert32BitsTo24Bits, 32, 24},
    {"1 to 16", CBitmapConverter::Convert1BitsTo16Bits, 1, 16},
    {"4 to 16", CBitmapConverter::Convert4BitsTo16Bits, 4, 16},
    {"8 to 16", CBitmapConverter::Convert8BitsTo16Bits, 8, 16},
    {"24 to 16", CBitmapConverter::Convert24BitsTo16Bits, 24, 16},
    {"32 to 16", CBitmapConverter::Convert32BitsTo16Bits, 32, 16},
};

std::vector<DWORD> randomPalette(int count, test::Random& random) {
  std::vector<DWORD> palette(static_cast<std::size_t>(count));
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
      SCOPED_TRACE(testing::Message() << converter.name << ", width " << width);
      const int height = 3;
      const auto palette =
          converter.from <= 8 ? randomPalette(1 << converter.from, random) : std::vector<DWORD>{};
      const OwnedDib source = test::randomImage(width, height, converter.from, random, palette);
      const std::vector<BYTE> before = test::bytesOf(source);
      const OwnedDib result(converter.convert(source.get(), nullptr));
      ASSERT_TRUE(result);

      OwnedDib expected = test::image(width, height, converter.to);
      for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
          const DWORD colour = colourOf(test::pixel(source, x, y), converter.from, palette);
          test::setPixel(expected, x, y, storedAs(colour, converter.to));
        }
      }
      EXPECT_EQ(test::bytesOf(result), test::bytesOf(expected));
      EXPECT_EQ(test::bytesOf(source), before);
    }
  }
}

TEST(Widening, KeepsTheTopFiveBitsOfEachChannel) {
  const OwnedDib narrow = test::imageOf(4, 1, 16, {0x7FFF, 0x0000, 0x8000, 0x0421});
  const OwnedDib wide(CBitmapConverter::Convert16BitsTo24Bits(narrow.get(), nullptr));
  EXPECT_EQ(test::pixelsOf(wide.get()), (std::vector<DWORD>{0xF8F8F8, 0, 0, 0x080808}));
  const OwnedDib colours = test::imageOf(3, 1, 24, {0x80FF07, 0xFFFFFF, 0x070707});
  const OwnedDib back(CBitmapConverter::Convert24BitsTo16Bits(colours.get(), nullptr));
  EXPECT_EQ(test::pixelsOf(back.get()), (std::vector<DWORD>{0x43E0, 0x7FFF, 0}));
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

TEST(Dispatchers, ChooseByDepthAndCloneTheirOwn) {
  test::Random random(11);
  for (const int target : {16, 24}) {
    const Conversion any =
        target == 24 ? CBitmapConverter::ConvertDIBTo24Bits : CBitmapConverter::ConvertDIBTo16Bits;
    for (const Converter& converter : converters) {
      if (converter.to != target) continue;
      const auto palette =
          converter.from <= 8 ? randomPalette(1 << converter.from, random) : std::vector<DWORD>{};
      const OwnedDib source = test::randomImage(9, 4, converter.from, random, palette);
      const OwnedDib named(converter.convert(source.get(), nullptr));
      const OwnedDib chosen(any(source.get(), nullptr));
      EXPECT_EQ(test::bytesOf(chosen), test::bytesOf(named)) << converter.name;
    }
    OwnedDib own = test::randomImage(5, 4, target, random);
    own->biClrUsed = 7;
    own->biXPelsPerMeter = 2835;
    test::Progress cancelling(0);
    const OwnedDib clone(any(own.get(), &cancelling));
    ASSERT_TRUE(clone);
    EXPECT_EQ(test::bytesOf(clone), test::bytesOf(own));
    EXPECT_TRUE(cancelling.fractions.empty());

    OwnedDib odd = test::image(4, 4, 2);
    EXPECT_EQ(any(odd.get(), nullptr), nullptr);
    EXPECT_EQ(any(nullptr, nullptr), nullptr);
  }
}

TEST(Widening, RefusesNullAnotherDepthAndBrokenHeaders) {
  for (const Converter& converter : converters) {
    SCOPED_TRACE(converter.name);
    EXPECT_EQ(converter.convert(nullptr, nullptr), nullptr);
    for (const int depth : {1, 2, 4, 8, 16, 24, 32}) {
      if (depth == converter.from) continue;
      EXPECT_EQ(converter.convert(test::image(4, 4, depth).get(), nullptr), nullptr) << depth;
    }
    BITMAPINFOHEADER broken{40, 4, -4, 1, static_cast<WORD>(converter.from), 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(converter.convert(&broken, nullptr), nullptr);
  }
  EXPECT_EQ(CBitmapConverter::Convert24BitsTo32Bits(nullptr, 0, nullptr), nullptr);
  EXPECT_EQ(CBitmapConverter::Convert24BitsTo32Bits(test::image(4, 4, 32).get(), 0, nullptr), nullptr);
}

TEST(Widening, ReportsEachLineAndGivesNullWhenCancelled) {
  test::Random random(3);
  for (const Converter& converter : converters) {
    SCOPED_TRACE(converter.name);
    const auto palette =
        converter.from <= 8 ? randomPalette(1 << converter.from, random) : std::vector<DWORD>{};
    const OwnedDib source = test::randomImage(5, 3, converter.from, random, palette);
    test::Progress progress;
    EXPECT_TRUE(OwnedDib(converter.convert(source.get(), &progress)));
    EXPECT_EQ(progress.fractions, (std::vector<float>{0.33F, 0.66F, 1.0F}));
    for (const int cancelAt : {0, 1, 2}) {  // the last line counts as well
      test::Progress cancelling(cancelAt);
      EXPECT_EQ(converter.convert(source.get(), &cancelling), nullptr);
      EXPECT_EQ(cancelling.fractions.size(), static_cast<std::size_t>(cancelAt) + 1);
    }
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
  test::Progress cancelling(2);
  EXPECT_EQ(CBitmapConverter::Convert24BitsTo32Bits(test::image(2, 3, 24).get(), 0, &cancelling), nullptr);
}

}  // namespace
