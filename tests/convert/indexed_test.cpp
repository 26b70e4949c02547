#include <gtest/gtest.h>

#include "convert/convert.h"
#include "support/palettes.h"

namespace {

using Map = test::ColourMap;
using test::entriesOf;
using test::mapOf;
using test::OwnedDib;
using Conversion = BITMAPINFOHEADER* (*)(BITMAPINFOHEADER*, Map*, CQorCommonProgress*);

struct Converter {
  int from, to;
  Conversion convert;
};
const Converter converters[] = {
    {1, 4, CBitmapConverter::Convert1BitsDibTo4BitsDib}, {1, 8, CBitmapConverter::Convert1BitsDibTo8BitsDib},
    {4, 8, CBitmapConverter::Convert4BitsDibTo8BitsDib}, {8, 4, CBitmapConverter::Convert8BitsDibTo4BitsDib},
    {8, 1, CBitmapConverter::Convert8BitsDibTo1BitsDib}, {4, 1, CBitmapConverter::Convert4BitsDibTo1BitsDib},
};

TEST(IndexedConversions, KeepThePictureWithAndWithoutAMap) {
  test::Random random(13);
  for (const Converter& converter : converters) {
    for (const int width : {1, 4, 7, 8, 9, 15, 33, 515, 1025}) {
      SCOPED_TRACE(testing::Message() << converter.from << " to " << converter.to << ", width " << width);
      // No more colours than either depth can index, all different, the reserved byte included.
      std::vector<DWORD> palette;
      for (int i = 0; i < 1 << std::min(converter.from, converter.to); ++i) {
        palette.push_back(static_cast<DWORD>(i) << 24 | (static_cast<DWORD>(random()) & 0xFFFF00));
      }
      OwnedDib source = test::image(width, 3, converter.from, palette);
      for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < width; ++x) {
          test::setPixel(source, x, y, static_cast<DWORD>(random() % palette.size()));
        }
      }
      const std::vector<DWORD> before = test::pixelsOf(source.get());

      const OwnedDib kept(converter.convert(source.get(), nullptr, nullptr));
      ASSERT_TRUE(kept);
      EXPECT_EQ(kept->biClrUsed, 0U);
      std::vector<DWORD> expected = palette;
      expected.resize(std::size_t{1} << converter.to);  // the rest is black
      EXPECT_EQ(entriesOf(kept), expected);
      EXPECT_EQ(test::pixelsOf(kept.get()), before);

      std::vector<DWORD> shared = palette;
      std::reverse(shared.begin(), shared.end());
      Map map = mapOf(shared);
      const OwnedDib mapped(converter.convert(source.get(), &map, nullptr));
      ASSERT_TRUE(mapped);
      EXPECT_EQ(mapped->biClrUsed, shared.size());
      EXPECT_EQ(entriesOf(mapped), shared);
      const std::vector<DWORD> after = test::pixelsOf(mapped.get());
      for (std::size_t i = 0; i < before.size(); ++i) ASSERT_EQ(shared[after[i]], palette[before[i]]);
      EXPECT_EQ(map.GetCount(), static_cast<int>(shared.size()));
    }
  }
}

TEST(NarrowingConversions, SendARepeatedEntryToTheNextNewNumber) {
  std::vector<DWORD> palette(256, 0xFFFFFF);
  palette[0] = 0;
  std::vector<DWORD> all(256);
  for (DWORD i = 0; i < 256; ++i) all[i] = i;
  const OwnedDib source = test::imageOf(256, 1, 8, all, palette);
  const OwnedDib bits(CBitmapConverter::Convert8BitsDibTo1BitsDib(source.get(), nullptr, nullptr));
  EXPECT_EQ(entriesOf(bits), (std::vector<DWORD>{0, 0xFFFFFF}));
  for (int x = 0; x < 256; ++x) EXPECT_EQ(test::pixel(bits, x, 0), static_cast<DWORD>(x > 0)) << x;

  const OwnedDib nibbles(CBitmapConverter::Convert8BitsDibTo4BitsDib(
      test::imageOf(6, 1, 8, {0, 1, 2, 3, 4, 5}, {0xA, 0xB, 0xA, 0xC, 0xB, 0xA}).get(), nullptr, nullptr));
  EXPECT_EQ(test::pixelsOf(nibbles.get()), (std::vector<DWORD>{0, 1, 2, 2, 3, 3}));
  EXPECT_EQ(entriesOf(nibbles)[2], 0xCU);
}

TEST(NarrowingConversions, LetAnIndexOfSixteenThroughUnmasked) {
  // 16 colours and a repeated one, which becomes index 16: bit 4 spills into the even neighbour, and is lost
  // at an even column.
  std::vector<DWORD> palette;
  for (DWORD i = 0; i < 16; ++i) palette.push_back(i + 1);
  palette.push_back(1);
  const OwnedDib source = test::imageOf(4, 1, 8, {2, 16, 16, 3}, palette);
  const OwnedDib result(CBitmapConverter::Convert8BitsDibTo4BitsDib(source.get(), nullptr, nullptr));
  EXPECT_EQ(test::pixelsOf(result.get()), (std::vector<DWORD>{3, 0, 0, 3}));
}

TEST(NarrowingConversions, KeepWhatPassesThePaletteInsideTheBlock) {
  // Three colours in one bit: the third entry lands in the rows. The row of 4 bytes is then written over
  // where it has pixels: one byte of them; the padding keeps the entry's other three bytes.
  const OwnedDib source =
      test::imageOf(8, 1, 8, {0, 1, 2, 0, 0, 0, 0, 2}, {0x11111111, 0x22222222, 0x44332211, 0x55});
  const OwnedDib result(CBitmapConverter::Convert8BitsDibTo1BitsDib(source.get(), nullptr, nullptr));
  const std::vector<BYTE> bytes = test::bytesOf(result);
  EXPECT_EQ(std::vector<BYTE>(bytes.end() - 4, bytes.end()), (std::vector<BYTE>{0x61, 0x22, 0x33, 0x44}));
}

TEST(IndexedConversions, RepeatThePixelBeforeForAnIndexBeyondThePalette) {
  const OwnedDib source = test::imageOf(3, 2, 8, {7, 1, 7, 7, 0, 9}, {0x10, 0x20});
  Map map = mapOf({0x30, 0x10, 0x20});
  const OwnedDib result(CBitmapConverter::Convert8BitsDibTo4BitsDib(source.get(), &map, nullptr));
  EXPECT_EQ(test::pixelsOf(result.get()), (std::vector<DWORD>{0, 2, 2, 2, 1, 1}));
  // Widening keeps numbers, but only those of the palette: index 1 of a palette of one entry repeats.
  const OwnedDib one = test::imageOf(3, 1, 1, {1, 0, 1}, {0x10});
  const OwnedDib wide(CBitmapConverter::Convert1BitsDibTo8BitsDib(one.get(), nullptr, nullptr));
  EXPECT_EQ(test::pixelsOf(wide.get()), (std::vector<DWORD>{0, 0, 0}));
}

TEST(IndexedConversions, TakeAColourThatTheMapLacksForIndexZero) {
  Map map = mapOf({0x30, 0x20});
  const OwnedDib source = test::imageOf(3, 1, 4, {1, 0, 2}, {0x10, 0x20, 0x01000020});
  const OwnedDib result(CBitmapConverter::Convert4BitsDibTo8BitsDib(source.get(), &map, nullptr));
  EXPECT_EQ(test::pixelsOf(result.get()), (std::vector<DWORD>{1, 0, 0}));
  EXPECT_EQ(map.GetCount(), 2);
  DWORD key = 0x20;
  int negative = -5;
  map.SetAt(key, negative);  // one bit is set above 0 only
  const OwnedDib bits(CBitmapConverter::Convert4BitsDibTo1BitsDib(source.get(), &map, nullptr));
  EXPECT_EQ(test::pixelsOf(bits.get()), (std::vector<DWORD>{0, 0, 0}));
}

TEST(IndexedConversions, SwapTheIndexesOfABlackOnWhiteImage) {
  Map map = mapOf({0xFFFFFF, 0});
  const OwnedDib source = test::imageOf(3, 1, 1, {0, 1, 1}, {0, 0xFFFFFF});
  const OwnedDib result(CBitmapConverter::Convert1BitsDibTo4BitsDib(source.get(), &map, nullptr));
  EXPECT_EQ(test::pixelsOf(result.get()), (std::vector<DWORD>{1, 0, 0}));
  EXPECT_EQ(entriesOf(result), (std::vector<DWORD>{0xFFFFFF, 0}));
}

TEST(IndexedConversions, ReportCancelAndRefuse) {
  for (const Converter& converter : converters) {
    const OwnedDib source = test::image(5, 3, converter.from, {1, 2});
    test::Progress progress;
    EXPECT_TRUE(OwnedDib(converter.convert(source.get(), nullptr, &progress)));
    EXPECT_EQ(progress.fractions, (std::vector<float>{0.33F, 0.66F, 1.0F}));
    for (const int cancelAt : {0, 2}) {
      test::Progress cancelling(cancelAt);
      EXPECT_EQ(converter.convert(source.get(), nullptr, &cancelling), nullptr);
    }
    EXPECT_EQ(converter.convert(nullptr, nullptr, nullptr), nullptr);
    EXPECT_EQ(converter.convert(test::image(5, 3, 24).get(), nullptr, nullptr), nullptr);
    EXPECT_EQ(converter.convert(test::image(5, 3, converter.to).get(), nullptr, nullptr), nullptr);
  }
}

}  // namespace
