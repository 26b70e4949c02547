#include <gtest/gtest.h>

#include "convert/convert.h"
#include "support/palettes.h"

namespace {

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

/// The reduction as it is told: after the 256th colour the palette is written again from its start, and an
/// index that does not fit shows as its low bits. In a block with room behind it for what is written past its
/// end.
std::vector<BYTE> plainReduction(const OwnedDib& source, int bits, int colourCount) {
  const OwnedDib empty(CBitmapCreator::CreateDibImage(source->biWidth, source->biHeight, bits, colourCount));
  std::vector<BYTE> block = test::bytesOf(empty);
  const std::size_t size = block.size();
  block.resize(size + 1024);
  std::size_t k = 0;
  for (int y = 0; y < source->biHeight; ++y) {
    BYTE* row = test::rowOf(reinterpret_cast<BITMAPINFOHEADER*>(block.data()), y);
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

TEST(ConvertTrueDibToLowBitsDib, ChoosesTheDepthByTheColours) {
  struct Case {
    int colours, bits;
  };
  // A picture without pixels gets a full palette.
  for (const Case& expected : {Case{0, 1}, {1, 1}, {2, 1}, {3, 4}, {16, 4}, {17, 8}, {256, 8}, {257, 0}}) {
    SCOPED_TRACE(expected.colours);
    const OwnedDib source = test::imageOf(expected.colours, 1, 24, test::distinctColours(expected.colours));
    const OwnedDib result(CBitmapConverter::ConvertTrueDibToLowBitsDib(source.get(), nullptr));
    ASSERT_EQ(result != nullptr, expected.bits != 0);
    if (!result) continue;
    EXPECT_EQ(test::bytesOf(result), plainReduction(source, expected.bits, expected.colours));
  }
}

}  // namespace
