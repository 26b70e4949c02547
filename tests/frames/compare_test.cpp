#include <gtest/gtest.h>

#include "random_frames.h"

namespace {

using dibkit::OwnedDib;

struct Reading {
  int bitCount, x;
  DWORD expected;
};

TEST(GetPixelRGB, ReadsEveryDepth) {
  BYTE row[] = {0x5A, 0x02, 0xC8, 0x7F, 0x11, 0x22, 0x33, 0x44};
  RGBQUAD palette[256] = {};
  palette[0] = {1, 2, 3, 9};
  palette[1] = {4, 5, 6, 9};
  palette[5] = {7, 8, 9, 9};
  palette[10] = {10, 11, 12, 9};
  palette[0xC8] = {13, 14, 15, 9};
  const Reading cases[] = {
      {1, 0, 0x030201},
      {1, 1, 0x060504},  // 0x5A = 0101 1010
      {4, 0, 0x090807},
      {4, 1, 0x0C0B0A},
      {8, 2, 0x0F0E0D},
      {2, 3, 0x030201},
      {0, 3, 0x030201},  // no such format: entry 0
      // 0x7FC8: red 31, green 30, blue 8, each in the top five bits.
      {16, 1, 0xF8F040},
      {24, 1, 0x22117F},
      {32, 1, 0x332211},
      {48, 0, 0xEEEEEE},
      {12, 0, 0xEEEEEE},  // left alone
  };
  for (const Reading& reading : cases) {
    BYTE red = 0xEE;
    BYTE green = 0xEE;
    BYTE blue = 0xEE;
    GetPixelRGB(row, reading.x, reading.bitCount, palette, &red, &green, &blue);
    EXPECT_EQ(DWORD{red} << 16 | DWORD{green} << 8 | blue, reading.expected) << reading.bitCount;
  }
}

int plainCompare(BITMAPINFOHEADER* a, const BITMAPINFOHEADER* maskA, BITMAPINFOHEADER* b,
                 const BITMAPINFOHEADER* maskB) {
  if (a->biWidth != b->biWidth || a->biHeight != b->biHeight) return 0;
  for (int y = 0; y < a->biHeight; ++y) {
    for (int x = 0; x < a->biWidth; ++x) {
      const bool clearA = test::transparentAt(maskA, x, y);
      if (clearA != test::transparentAt(maskB, x, y)) return 0;
      if (!clearA && test::colourAt(a, x, y) != test::colourAt(b, x, y)) return 0;
    }
  }
  return 1;
}

/// The same picture at another depth; pixels of `dib` become colours that 5-5-5 holds exactly.
OwnedDib at24Bits(BITMAPINFOHEADER* dib) {
  OwnedDib result = test::image(dib->biWidth, dib->biHeight, 24);
  for (int y = 0; y < dib->biHeight; ++y) {
    for (int x = 0; x < dib->biWidth; ++x) test::setPixel(result, x, y, test::colourAt(dib, x, y));
  }
  return result;
}

TEST(CompareFrame, EqualsThePlainComparisonAtEveryPairOfDepths) {
  test::Random random(51);
  int equal = 0;
  for (int round = 0; round < 1500; ++round) {
    const int depth = test::allDepths[round % 6];
    // Now and then wider than what is compared in one piece.
    const int width = round % 50 == 0 ? 1100 : 1 + test::below(random, 40);
    const int height = 1 + test::below(random, 4);
    const OwnedDib a = test::randomFrame(width, height, depth, random);
    OwnedDib b = test::below(random, 2) == 0 ? OwnedDib(CBitmapCreator::Clone(a.get())) : at24Bits(a.get());
    const OwnedDib maskA = test::maybeMask(width, height, random);
    OwnedDib maskB(CBitmapCreator::Clone(maskA.get()));
    const int x = test::below(random, width);
    const int y = test::below(random, height);
    switch (test::below(random, 5)) {
      case 0:
        test::setPixel(b, x, y, test::pixel(b, x, y) ^ 1);
        break;
      case 1:
        if (maskB) test::setPixel(maskB, x, y, test::pixel(maskB, x, y) ^ 1);
        break;
      case 2:
        if (b->biBitCount == 32) test::setPixel(b, x, y, test::pixel(b, x, y) ^ 0xFF000000);
        if (b->biBitCount == 16) test::setPixel(b, x, y, test::pixel(b, x, y) ^ 0x8000);
        break;
      case 3:
        if (!maskB) maskB = test::image(width, height, 1);  // a mask that marks nothing is no mask
        break;
      default:
        break;
    }
    const int expected = plainCompare(a.get(), maskA.get(), b.get(), maskB.get());
    equal += expected;
    ASSERT_EQ(CompareFrame(a.get(), maskA.get(), b.get(), maskB.get()), expected) << "round " << round;
    ASSERT_EQ(CompareFrame(b.get(), maskB.get(), a.get(), maskA.get()), expected) << "round " << round;
  }
  EXPECT_GT(equal, 300);
}

TEST(CompareFrame, TakesEqualColoursOfDifferentEntriesAsEqual) {
  const OwnedDib a = test::imageOf(3, 1, 8, {0, 1, 2}, {0x112233, 0x112233, 0x445566});
  const OwnedDib b = test::imageOf(3, 1, 4, {2, 2, 0}, {0x445566, 0, 0xFF112233});
  EXPECT_EQ(CompareFrame(a.get(), nullptr, b.get(), nullptr), 1);
  const OwnedDib otherIndexes = test::imageOf(3, 1, 8, {1, 0, 2}, {0x112233, 0x112233, 0x445566});
  EXPECT_EQ(CompareFrame(a.get(), nullptr, otherIndexes.get(), nullptr), 1);
}

TEST(CompareFrame, DiffersBySizeAndForWhatIsNoFrame) {
  const OwnedDib a = test::image(3, 2, 24);
  const OwnedDib wider = test::image(4, 2, 24);
  const OwnedDib higher = test::image(3, 3, 24);
  EXPECT_EQ(CompareFrame(a.get(), nullptr, wider.get(), nullptr), 0);
  EXPECT_EQ(CompareFrame(a.get(), nullptr, higher.get(), nullptr), 0);
  EXPECT_EQ(CompareFrame(a.get(), nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(CompareFrame(nullptr, nullptr, a.get(), nullptr), 0);
  EXPECT_EQ(CompareFrame(a.get(), wider.get(), a.get(), wider.get()), 0);  // masks of 24 bits
  const OwnedDib lowMask = test::imageOf(3, 1, 1, {1, 0, 0});
  const OwnedDib mask = test::imageOf(3, 2, 1, {1, 0, 0, 0, 0, 0});
  // A lower mask pairs from the top line; below its end nothing is transparent.
  EXPECT_EQ(CompareFrame(a.get(), lowMask.get(), a.get(), mask.get()), 1);
}

}  // namespace
