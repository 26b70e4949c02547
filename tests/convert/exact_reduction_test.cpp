#include <gtest/gtest.h>

#include "convert/convert.h"
#include "support/palettes.h"

namespace {

using test::entriesOf;
using test::OwnedDib;
using Reduction = BITMAPINFOHEADER* (*)(BITMAPINFOHEADER*, int, CQorCommonProgress*);

struct Reducer {
  int bits;
  Reduction reduce;
};
const Reducer reducers[] = {
    {1, CBitmapConverter::ConvertTrueDibTo1BitsDib},
    {4, CBitmapConverter::ConvertTrueDibTo4BitsDib},
    {8, CBitmapConverter::ConvertTrueDibTo8BitsDib},
};

/// The reduction to the letter, in a block with room behind it for what is written past its end.
std::vector<BYTE> plainReduction(const OwnedDib& source, int bits, int colourCount) {
  const OwnedDib empty(CBitmapCreator::CreateDibImage(source->biWidth, source->biHeight, bits, colourCount));
  std::vector<BYTE> block = test::bytesOf(empty);
  const std::size_t size = block.size();
  block.resize(size + 1024);
  const std::size_t rows = 40 + 4 * GetDIBPaletteSize(empty.get());
  const std::size_t stride = (static_cast<std::size_t>(source->biWidth * bits) + 31) / 32 * 4;
  std::size_t k = 0;
  for (int y = 0; y < source->biHeight; ++y) {
    BYTE* row = block.data() + rows + static_cast<std::size_t>(source->biHeight - 1 - y) * stride;
    for (int x = 0; x < source->biWidth; ++x) {
      const DWORD colour = test::pixel(source, x, y);
      const BYTE bytes[] = {BYTE(colour & 255), BYTE(colour >> 8 & 255), BYTE(colour >> 16)};
      std::size_t index = 0;
      while (index < k && std::memcmp(block.data() + 40 + 4 * index, bytes, 3) != 0) ++index;
      if (index == k) {
        std::memcpy(block.data() + 40 + 4 * k, bytes, 3);
        k = (k + 1) & 255;
      }
      if (bits == 8) row[x] = static_cast<BYTE>(index);
      if (bits == 4 && x % 2 != 0) row[x / 2] = static_cast<BYTE>(row[x / 2] | (index & 15));
      if (bits == 4 && x % 2 == 0) row[x / 2] = static_cast<BYTE>(row[x / 2] | (index << 4 & 0xF0));
      if (bits == 1 && index == 1) row[x / 8] = static_cast<BYTE>(row[x / 8] | 0x80 >> x % 8);
    }
  }
  block.resize(size);
  return block;
}

OwnedDib picture(test::Random& random, int width, int height, int colourCount) {
  OwnedDib dib = test::image(width, height, 24);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width;) {
      const DWORD colour = static_cast<DWORD>(test::below(random, colourCount)) * 0x30201;
      const int end = std::min(width, x + 1 + test::below(random, test::below(random, 3) != 0 ? 1 : 30));
      for (; x < end; ++x) test::setPixel(dib, x, y, colour);
    }
  }
  return dib;
}

TEST(ExactReduction, IsThatOfThePlainSearchAlsoBeyondItsLimits) {
  test::Random random(31);
  const int counts[] = {0, -4, 1, 2, 3, 5, 16, 17, 100, 255, 256, 300};
  for (int round = 0; round < 1500; ++round) {
    const Reducer& reducer = reducers[round % 3];
    const int width = 1 + test::below(random, round % 10 == 0 ? 700 : 40);
    const int height = 1 + test::below(random, 25);
    const int colours = 1 + test::below(random, round % 4 == 0 ? 700 : round % 4 == 1 ? 3 : 20);
    const int colourCount = counts[test::below(random, 12)];
    const OwnedDib source = picture(random, width, height, colours);
    const OwnedDib result(reducer.reduce(source.get(), colourCount, nullptr));
    ASSERT_TRUE(result);
    ASSERT_EQ(test::bytesOf(result), plainReduction(source, reducer.bits, colourCount))
        << width << "x" << height << " with " << colours << " colours to " << reducer.bits << " bits, "
        << colourCount;
  }
}

TEST(ExactReduction, WritesThePaletteAgainAfterThe256thColour) {
  // 256 colours, then the first one once more: it is new again and takes entry 0, where it was before; then
  // the second one takes entry 1; then the last one takes entry 2.
  std::vector<DWORD> pixels;
  for (DWORD i = 0; i < 256; ++i) pixels.push_back(i * 0x10001);
  pixels.insert(pixels.end(), {pixels[0], pixels[1], pixels[255], pixels[0]});
  const OwnedDib source = test::imageOf(260, 1, 24, pixels);
  const OwnedDib result(CBitmapConverter::ConvertTrueDibTo8BitsDib(source.get(), 256, nullptr));
  EXPECT_EQ(test::pixel(result, 255, 0), 255U);
  EXPECT_EQ(test::pixel(result, 256, 0), 0U);
  EXPECT_EQ(test::pixel(result, 257, 0), 1U);
  EXPECT_EQ(test::pixel(result, 258, 0), 2U);
  EXPECT_EQ(test::pixel(result, 259, 0), 0U);
  EXPECT_EQ(entriesOf(result)[2], pixels[255]);
}

TEST(ExactReduction, ShowsIndexesThatDoNotFitAsTheirLowBits) {
  const OwnedDib source = test::imageOf(4, 1, 24, {5, 6, 7, 6});
  const OwnedDib bits(CBitmapConverter::ConvertTrueDibTo1BitsDib(source.get(), 3, nullptr));
  EXPECT_EQ(test::pixelsOf(bits.get()), (std::vector<DWORD>{0, 1, 0, 1}));
  std::vector<DWORD> pixels;
  for (DWORD i = 0; i < 20; ++i) pixels.push_back(i);
  const OwnedDib nibbles(
      CBitmapConverter::ConvertTrueDibTo4BitsDib(test::imageOf(20, 1, 24, pixels).get(), 20, nullptr));
  EXPECT_EQ(test::pixel(nibbles, 17, 0), 1U);
  EXPECT_EQ(test::pixel(nibbles, 18, 0), 2U);
}

TEST(ConvertTrueDibToLowBitsDib, ChoosesTheDepthByTheColours) {
  struct Case {
    int colours, bits;
  };
  for (const Case& expected : {Case{1, 1}, {2, 1}, {3, 4}, {16, 4}, {17, 8}, {256, 8}}) {
    SCOPED_TRACE(expected.colours);
    std::vector<DWORD> pixels;
    for (int i = expected.colours; i > 0; --i) pixels.push_back(static_cast<DWORD>(i) * 0xF0F1);
    const OwnedDib source = test::imageOf(expected.colours, 1, 24, pixels);
    const OwnedDib result(CBitmapConverter::ConvertTrueDibToLowBitsDib(source.get(), nullptr));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->biBitCount, expected.bits);
    EXPECT_EQ(result->biClrUsed, static_cast<DWORD>(expected.colours));
    EXPECT_EQ(entriesOf(result), pixels);
    for (int x = 0; x < expected.colours; ++x) EXPECT_EQ(test::pixel(result, x, 0), static_cast<DWORD>(x));
  }
  std::vector<DWORD> pixels;
  for (DWORD i = 0; i < 257; ++i) pixels.push_back(i);
  EXPECT_EQ(CBitmapConverter::ConvertTrueDibToLowBitsDib(test::imageOf(257, 1, 24, pixels).get(), nullptr),
            nullptr);
  const OwnedDib none(CBitmapConverter::ConvertTrueDibToLowBitsDib(test::image(0, 3, 24).get(), nullptr));
  ASSERT_TRUE(none);
  EXPECT_EQ(none->biBitCount, 1);
  EXPECT_EQ(GetDIBPaletteSize(none.get()), 2U);
}

TEST(ExactReduction, ReportsCancelsAndRefuses) {
  const OwnedDib source = test::imageOf(2, 3, 24, {1, 2, 2, 1, 1, 1});
  for (const Reducer& reducer : reducers) {
    test::Progress progress;
    EXPECT_TRUE(OwnedDib(reducer.reduce(source.get(), 2, &progress)));
    EXPECT_EQ(progress.fractions, (std::vector<float>{0.33F, 0.66F, 1.0F}));
    test::Progress cancelling(2);
    EXPECT_EQ(reducer.reduce(source.get(), 2, &cancelling), nullptr);
    EXPECT_EQ(reducer.reduce(nullptr, 2, nullptr), nullptr);
    EXPECT_EQ(reducer.reduce(source.get(), INT32_MAX, nullptr), nullptr);
    EXPECT_EQ(reducer.reduce(test::image(8, 3, 16).get(), 2, nullptr),
              nullptr);  // rows too short for 24 bits
    EXPECT_TRUE(OwnedDib(reducer.reduce(test::image(8, 3, 32).get(), 2, nullptr)));
  }
  EXPECT_EQ(CBitmapConverter::ConvertTrueDibToLowBitsDib(nullptr, nullptr), nullptr);
}

}  // namespace
