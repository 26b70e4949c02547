#include <gtest/gtest.h>

#include "gifmask/gifmask.h"
#include "support/images.h"

namespace {

using dibkit::OwnedDib;
using dibkit::OwnedRegion;
using Transform = CMaskedBitmapTransform;

OwnedDib randomMask(int width, int height, test::Random& random) {
  return test::randomImage(width, height, 1, random, {0, 0xFFFFFF});
}

TEST(FillMask, SetsTheRegionInACopy) {
  test::Random random(81);
  for (int round = 0; round < 200; ++round) {
    const int width = 1 + test::below(random, 70);
    const int height = 1 + test::below(random, 10);
    const OwnedDib mask = randomMask(width, height, random);
    const std::vector<BYTE> before = test::bytesOf(mask);
    // Partly outside the mask now and then.
    const int left = test::below(random, width) - 3;
    const int top = test::below(random, height) - 3;
    const OwnedRegion region(
        CreateEllipticRgn(left, top, left + test::below(random, 40), top + test::below(random, 9)));
    BITMAPINFOHEADER* result = Transform::FillMask(mask.get(), region.get());
    const OwnedDib copy(result == mask.get() ? nullptr : result);
    bool changed = false;
    const OwnedDib expected(CBitmapCreator::Clone(mask.get()));
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        if (!PtInRegion(region.get(), x, y) || test::pixel(mask, x, y) != 0) continue;
        test::setPixel(expected, x, y, 1);
        changed = true;
      }
    }
    ASSERT_EQ(result == mask.get(), !changed);
    ASSERT_EQ(test::bytesOf(result), test::bytesOf(expected)) << "round " << round;
    ASSERT_EQ(test::bytesOf(mask), before);
  }
}

TEST(FillMask, GivesItsArgumentBackWhenNothingChanges) {
  const OwnedDib mask = test::imageOf(10, 1, 1, {1, 1, 1, 1, 1, 1, 1, 1, 1, 0});
  const OwnedRegion set(CreateRectRgn(0, 0, 9, 1));
  EXPECT_EQ(Transform::FillMask(mask.get(), set.get()), mask.get());
  const OwnedRegion outside(CreateRectRgn(10, 0, 20, 5));
  EXPECT_EQ(Transform::FillMask(mask.get(), outside.get()), mask.get());
  EXPECT_EQ(Transform::FillMask(mask.get(), nullptr), mask.get());
  EXPECT_EQ(Transform::FillMask(nullptr, set.get()), nullptr);
}

TEST(FillMaskDIBBits, SetsOrClearsTheRectangleInPlace) {
  test::Random random(82);
  for (int round = 0; round < 200; ++round) {
    const OwnedDib mask = randomMask(1 + test::below(random, 40), 1 + test::below(random, 6), random);
    const OwnedDib before(CBitmapCreator::Clone(mask.get()));
    const RECT rect{test::below(random, 50) - 5, test::below(random, 9) - 2, test::below(random, 50) - 5,
                    test::below(random, 9) - 2};
    const bool value = round % 2 == 0;
    Transform::FillMaskDIBBits(mask.get(), rect, value);
    for (int y = 0; y < mask->biHeight; ++y) {
      for (int x = 0; x < mask->biWidth; ++x) {
        const bool inside = x >= rect.left && x < rect.right && y >= rect.top && y < rect.bottom;
        ASSERT_EQ(test::pixel(mask, x, y), inside ? (value ? 1U : 0U) : test::pixel(before, x, y));
      }
    }
  }
  Transform::FillMaskDIBBits(nullptr, RECT{0, 0, 1, 1}, true);
}

TEST(MarkedMaskDIB, CopiesTheSecondMaskOverTheOverlap) {
  test::Random random(83);
  for (const auto& [width, height] : {std::pair{5, 3}, {8, 8}, {20, 2}, {33, 9}, {1, 1}}) {
    const OwnedDib mask = randomMask(17, 4, random);
    const OwnedDib second = randomMask(width, height, random);
    const OwnedDib result(Transform::MarkedMaskDIB(mask.get(), second.get()));
    ASSERT_TRUE(result);
    for (int y = 0; y < 4; ++y) {
      for (int x = 0; x < 17; ++x) {
        const OwnedDib& from = x < width && y < height ? second : mask;
        ASSERT_EQ(test::pixel(result, x, y), test::pixel(from, x, y));
      }
    }
  }
  const OwnedDib mask = randomMask(5, 4, random);
  EXPECT_EQ(Transform::MarkedMaskDIB(mask.get(), nullptr), nullptr);
  EXPECT_EQ(Transform::MarkedMaskDIB(nullptr, mask.get()), nullptr);
}

TEST(MarkedBmpDIB, PaintsTheSizeOfTheMaskWithoutReadingIt) {
  for (const int depth : {1, 4, 8, 16, 24, 32}) {
    test::Random random(84);
    const OwnedDib image = test::randomImage(7, 5, depth, random);
    const OwnedDib mask = randomMask(4, 9, random);
    const OwnedDib result(Transform::MarkedBmpDIB(image.get(), mask.get()));
    ASSERT_TRUE(result);
    for (int y = 0; y < 5; ++y) {
      for (int x = 0; x < 7; ++x) {
        ASSERT_EQ(test::pixel(result, x, y), x < 4 ? test::pixel(image, 0, 0) : test::pixel(image, x, y))
            << depth;
      }
    }
    EXPECT_EQ(Transform::MarkedBmpDIB(image.get(), nullptr), nullptr);
  }
}

TEST(MarkHighBitsDIB, ShowsTheMaskInTheFirstColourAndItsComplement) {
  const OwnedDib mask = test::imageOf(3, 1, 1, {0, 1, 0});
  const OwnedDib bytes = test::imageOf(4, 1, 24, {0x102030, 1, 2, 3});
  const OwnedDib marked24(Transform::MarkHighBitsDIB(bytes.get(), mask.get()));
  EXPECT_EQ(test::pixelsOf(marked24), (std::vector<DWORD>{0xEFDFCF, 0x102030, 0xEFDFCF, 3}));
  const OwnedDib quads = test::imageOf(4, 1, 32, {0x55102030, 1, 2, 3});
  const OwnedDib marked32(Transform::MarkHighBitsDIB(quads.get(), mask.get()));
  EXPECT_EQ(test::pixelsOf(marked32), (std::vector<DWORD>{0xFFEFDFCF, 0xFF102030, 0xFFEFDFCF, 3}));
  // Red 1 of 31: 8 of 255, whose complement 247 is 30 of 31.
  const OwnedDib words = test::imageOf(4, 1, 16, {0x8400, 1, 2, 3});
  const OwnedDib marked16(Transform::MarkHighBitsDIB(words.get(), mask.get()));
  EXPECT_EQ(test::pixelsOf(marked16), (std::vector<DWORD>{0x7BFF, 0x0400, 0x7BFF, 3}));
  const OwnedDib shallow = test::image(4, 1, 8);
  EXPECT_EQ(Transform::MarkHighBitsDIB(shallow.get(), mask.get()), nullptr);
  EXPECT_EQ(Transform::MarkHighBitsDIB(bytes.get(), bytes.get()), nullptr);
}

TEST(MarkLowBitsDIB, ShowsTheMaskInTheFirstIndexAndTheFarthestOne) {
  const OwnedDib mask = test::imageOf(2, 2, 1, {0, 1, 1, 0});
  // Entries 2 and 3 are equally far from entry 1: the lower one serves.
  for (const int depth : {4, 8}) {
    const OwnedDib image = test::imageOf(3, 2, depth, {1, 0, 0, 3, 3, 3}, {0x404040, 0, 0xFFFFFF, 0xFFFFFF});
    const OwnedDib marked(Transform::MarkLowBitsDIB(image.get(), mask.get()));
    EXPECT_EQ(test::pixelsOf(marked), (std::vector<DWORD>{2, 1, 0, 1, 2, 3}));
  }
  const OwnedDib bits = test::imageOf(2, 2, 1, {1, 1, 1, 1}, {0, 0xFFFFFF});
  const OwnedDib marked(Transform::MarkLowBitsDIB(bits.get(), mask.get()));
  EXPECT_EQ(test::pixelsOf(marked), (std::vector<DWORD>{0, 1, 1, 0}));
  const OwnedDib deep = test::image(2, 2, 16);
  EXPECT_EQ(Transform::MarkLowBitsDIB(deep.get(), mask.get()), nullptr);
  const OwnedDib empty = test::image(0, 0, 8);
  EXPECT_TRUE(OwnedDib(Transform::MarkLowBitsDIB(empty.get(), mask.get())));
}

}  // namespace
