#include <gtest/gtest.h>

#include "gifmask/gifmask.h"
#include "support/images.h"

namespace {

using dibkit::OwnedDib;
using Transform = CMaskedBitmapTransform;

struct Given {
  int result = 0;
  OwnedDib image, mask;
};

Given split(const OwnedDib& source, DWORD background, DWORD transparent) {
  BITMAPINFOHEADER* image = nullptr;
  BITMAPINFOHEADER* mask = nullptr;
  const int result = Transform::Spilt32BitsDIBForGIF(source.get(), background, transparent, &image, &mask);
  return {result, OwnedDib(image), OwnedDib(mask)};
}

TEST(Spilt32BitsDIBForGIF, BlendsAndMasksPixelByPixel) {
  test::Random random(91);
  for (int round = 0; round < 200; ++round) {
    const OwnedDib source =
        test::randomImage(1 + test::below(random, 40), 1 + test::below(random, 6), 32, random);
    const auto background = static_cast<DWORD>(random());
    const auto transparent = static_cast<DWORD>(random());
    const Given got = split(source, background, transparent);
    ASSERT_EQ(got.result, 1);
    bool masked = false;
    for (int y = 0; y < source->biHeight; ++y) {
      for (int x = 0; x < source->biWidth; ++x) {
        const DWORD pixel = test::pixel(source, x, y);
        const DWORD a = pixel >> 24;
        DWORD expected = 0;
        for (int i = 0; i < 3; ++i) {
          const DWORD ground = background >> (16 - 8 * i) & 255;
          const DWORD value = ((pixel >> (8 * i) & 255) * a + ground * (255 - a)) / 255;
          expected |= (a == 0 ? transparent >> (16 - 8 * i) & 255 : value) << (8 * i);
        }
        ASSERT_EQ(test::pixel(got.image, x, y), expected);
        masked = masked || a == 0;
        if (got.mask) {
          ASSERT_EQ(test::pixel(got.mask, x, y), a == 0 ? 1U : 0U);
        }
      }
    }
    ASSERT_EQ(got.mask != nullptr, masked);
  }
}

TEST(Spilt32BitsDIBForGIF, MakesAMaskOnlyForAClearPixel) {
  const OwnedDib source = test::imageOf(1, 1, 32, {0x80C80000});
  const Given got = split(source, 0xFFFFFF, 0);
  // (200 x 128 + 255 x 127) / 255 = 227, (0 + 255 x 127) / 255 = 127.
  EXPECT_EQ(test::pixel(got.image, 0, 0), 0xE37F7FU);
  EXPECT_FALSE(got.mask);
  const OwnedDib clear = test::imageOf(2, 1, 32, {0x01000000, 0x00ABCDEF});
  const Given masked = split(clear, 0, 0x0000FF);
  EXPECT_EQ(test::pixelsOf(masked.image), (std::vector<DWORD>{0, 0xFF0000}));
  const OwnedDib mask = test::imageOf(2, 1, 1, {0, 1});
  reinterpret_cast<RGBQUAD*>(mask.get() + 1)[1] = {255, 255, 255, 0};
  EXPECT_EQ(test::bytesOf(masked.mask), test::bytesOf([&] {
              OwnedDib plain = test::image(2, 1, 1);
              reinterpret_cast<RGBQUAD*>(plain.get() + 1)[1] = {255, 255, 255, 0};
              test::setPixel(plain, 1, 0, 1);
              return plain;
            }()));
}

TEST(Spilt32BitsDIBForGIF, ReadsNegativeSizesAsPositiveOnes) {
  const OwnedDib source = test::imageOf(1, 2, 32, {0xFF111111, 0xFF222222});
  source->biHeight = -2;
  const Given got = split(source, 0, 0);
  source->biHeight = 2;
  ASSERT_EQ(got.result, 1);
  EXPECT_EQ(got.image->biHeight, 2);
  EXPECT_EQ(test::pixelsOf(got.image), (std::vector<DWORD>{0x111111, 0x222222}));
  const OwnedDib deep = test::image(2, 2, 24);
  EXPECT_EQ(split(deep, 0, 0).result, 0);
  EXPECT_EQ(split(nullptr, 0, 0).result, 0);
  source->biHeight = INT32_MIN;
  EXPECT_EQ(split(source, 0, 0).result, 0);
}

TEST(ExpandDIB, PadsEveryDepthWithTransparentZeros) {
  test::Random random(92);
  for (int round = 0; round < 300; ++round) {
    const int depths[] = {1, 4, 8, 16, 24, 32};
    const int depth = depths[round % 6];
    const int width = 1 + test::below(random, 20);
    const int height = 1 + test::below(random, 6);
    const OwnedDib source = test::randomImage(width, height, depth, random);
    const OwnedDib sourceMask = round % 3 == 0 ? nullptr : test::randomImage(width, height, 1, random);
    const int left = test::below(random, 12) - 3;
    const int top = test::below(random, 6) - 2;
    const int right = test::below(random, 12);
    const int bottom = test::below(random, 6);
    BITMAPINFOHEADER* outImage = nullptr;
    BITMAPINFOHEADER* outMask = nullptr;
    const int newWidth = width + left + right;
    const int newHeight = height + top + bottom;
    const int result =
        Transform::ExpandDIB(source.get(), sourceMask.get(), &outImage, &outMask, left, top, right, bottom);
    const OwnedDib image(outImage);
    const OwnedDib mask(outMask);
    ASSERT_EQ(result, newWidth >= 0 && newHeight >= 0 ? 1 : 0);
    for (int y = 0; result && y < newHeight; ++y) {
      for (int x = 0; x < newWidth; ++x) {
        const int sx = x - left;
        const int sy = y - top;
        const bool shows = sx >= 0 && sy >= 0 && sx < width && sy < height &&
                           !(sourceMask && test::pixel(sourceMask, sx, sy) != 0);
        ASSERT_EQ(test::pixel(image, x, y), shows ? test::pixel(source, sx, sy) : 0) << "round " << round;
        ASSERT_EQ(test::pixel(mask, x, y), shows ? 0U : 1U);
      }
    }
  }
}

TEST(ExpandDIB, KeepsThePaletteAsItIsCounted) {
  const OwnedDib source = test::imageOf(10, 10, 8, std::vector<DWORD>(100, 2), {5, 6, 7});
  BITMAPINFOHEADER* outImage = nullptr;
  BITMAPINFOHEADER* outMask = nullptr;
  ASSERT_EQ(Transform::ExpandDIB(source.get(), nullptr, &outImage, &outMask, 1, 2, 3, 4), 1);
  const OwnedDib image(outImage);
  const OwnedDib mask(outMask);
  EXPECT_EQ(image->biWidth, 14);
  EXPECT_EQ(image->biHeight, 16);
  EXPECT_EQ(image->biClrUsed, 3U);
  EXPECT_EQ(std::memcmp(image.get() + 1, source.get() + 1, 12), 0);
  EXPECT_EQ(mask->biClrUsed, 0U);
  EXPECT_EQ(Transform::ExpandDIB(source.get(), source.get(), &outImage, &outMask, 1, 2, 3, 4), 0);
  EXPECT_EQ(Transform::ExpandDIB(nullptr, nullptr, &outImage, &outMask, 1, 2, 3, 4), 0);
  EXPECT_EQ(Transform::ExpandDIB(source.get(), nullptr, &outImage, &outMask, INT32_MAX, 0, INT32_MAX, 0), 0);
}

struct Burn {
  int bitCount, colours;
  bool found;
  int newBitCount;
  DWORD newColours;
};

TEST(OutputDIBStream, BurnsTheColourInWithOneEntryMoreWhereNeeded) {
  const Burn cases[] = {
      {1, 2, false, 4, 3}, {1, 2, true, 1, 2},     {4, 16, false, 8, 17},  {4, 5, false, 4, 6},
      {8, 7, true, 8, 7},  {8, 256, false, 24, 0}, {8, 256, true, 8, 256},
  };
  for (const Burn& burn : cases) {
    SCOPED_TRACE(testing::Message() << burn.colours << " colours at " << burn.bitCount);
    std::vector<DWORD> palette;
    for (int i = 0; i < burn.colours; ++i) palette.push_back(static_cast<DWORD>(i) * 0x000102);
    if (burn.found) palette.back() = 0xFF0000;
    const OwnedDib frame = test::imageOf(3, 1, burn.bitCount, {1, 0, 1}, palette);
    const OwnedDib mask = test::imageOf(3, 1, 1, {0, 1, 0});
    const OwnedDib result(Transform::OutputDIBStream(frame.get(), mask.get(), 0x0000FF));
    ASSERT_TRUE(result);
    ASSERT_EQ(result->biBitCount, burn.newBitCount);
    ASSERT_EQ(result->biClrUsed, burn.newColours);
    if (burn.newBitCount == 24) {
      EXPECT_EQ(test::pixelsOf(result), (std::vector<DWORD>{palette[1], 0xFF0000, palette[1]}));
      continue;
    }
    const auto index = static_cast<DWORD>(burn.found ? burn.colours - 1 : burn.colours);
    EXPECT_EQ(test::pixelsOf(result), (std::vector<DWORD>{1, index, 1}));
    DWORD entry;
    std::memcpy(&entry, reinterpret_cast<BYTE*>(result.get()) + 40 + index * 4, 4);
    EXPECT_EQ(entry, 0xFF0000U);
  }
}

TEST(OutputDIBStream, EncodesDeepFramesAnewAndKeepsAnUncountedPalette) {
  const OwnedDib mask = test::imageOf(2, 1, 1, {1, 0});
  const OwnedDib quads = test::imageOf(2, 1, 32, {0x11223344, 0x55667788});
  const OwnedDib burned32(Transform::OutputDIBStream(quads.get(), mask.get(), 0x0000FF));
  EXPECT_EQ(test::pixelsOf(burned32), (std::vector<DWORD>{0x00FF0000, 0x00667788}));
  const OwnedDib words = test::imageOf(2, 1, 16, {0, 0xFFFF});
  const OwnedDib burned16(Transform::OutputDIBStream(words.get(), mask.get(), 0x0000FF));
  EXPECT_EQ(test::pixelsOf(burned16), (std::vector<DWORD>{0x7C00, 0x7FFF}));
  const OwnedDib full = test::image(2, 1, 8);
  const OwnedDib kept(Transform::OutputDIBStream(full.get(), mask.get(), 0));
  EXPECT_EQ(kept->biClrUsed, 0U);
  EXPECT_EQ(Transform::OutputDIBStream(full.get(), nullptr, 0), nullptr);
  EXPECT_EQ(Transform::OutputDIBStream(nullptr, mask.get(), 0), nullptr);
}

}  // namespace
