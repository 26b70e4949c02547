#include "gifmask/gifmask.h"

#include <gtest/gtest.h>

#include "frames/plain.h"
#include "support/bitmap_regions.h"

namespace {

using dibkit::OwnedDib;
using dibkit::OwnedRegion;
using test::Given;
using Transform = CMaskedBitmapTransform;

Given split(const OwnedDib& source, DWORD background, DWORD transparent) {
  return test::given([&](auto image, auto mask, POINT*) {
    return Transform::Spilt32BitsDIBForGIF(source.get(), background, transparent, image, mask);
  });
}

TEST(Spilt32BitsDIBForGIF, BlendsAndMasksPixelByPixel) {
  test::Random random(91);
  for (int round = 0; round < 200; ++round) {
    const OwnedDib source =
        test::randomImage(1 + test::below(random, 9), 1 + test::below(random, 4), 32, random);
    const auto background = static_cast<DWORD>(random()), transparent = static_cast<DWORD>(random());
    Given expected{1, test::image(source->biWidth, source->biHeight, 24), nullptr, Given().position};
    test::forEachPixel({0, 0, source->biWidth, source->biHeight}, [&](int x, int y) {
      const DWORD pixel = test::pixel(source, x, y), a = pixel >> 24;
      DWORD colour = 0;
      for (const int shift : {0, 8, 16}) {
        const DWORD value =
            ((pixel >> shift & 255) * a + (background >> (16 - shift) & 255) * (255 - a)) / 255;
        colour |= (a == 0 ? transparent >> (16 - shift) & 255 : value) << shift;
      }
      test::setPixel(expected.image, x, y, colour);
      if (a != 0) return;
      if (!expected.mask) expected.mask = test::newMask(source->biWidth, source->biHeight);
      test::setPixel(expected.mask, x, y, 1);
    });
    ASSERT_TRUE(test::same(split(source, background, transparent), expected)) << "round " << round;
  }
}

TEST(Spilt32BitsDIBForGIF, ReadsNegativeSizesAsPositiveOnes) {
  const OwnedDib source = test::imageOf(1, 2, 32, {0xFF111111, 0x80C80000});
  source->biHeight = -2;
  const Given got = split(source, 0xFFFFFF, 0);
  // (200 x 128 + 255 x 127) / 255 = 227, (0 + 255 x 127) / 255 = 127; the line on top stays on top.
  EXPECT_TRUE(test::same(got.image, test::imageOf(1, 2, 24, {0x111111, 0xE37F7F})));
  EXPECT_FALSE(got.mask);
  source->biHeight = INT32_MIN;
  EXPECT_TRUE(test::same(split(source, 0, 0), Given()));
  source->biHeight = 2;
  EXPECT_TRUE(test::same(split(test::image(2, 2, 24), 0, 0), Given()));
  EXPECT_TRUE(test::same(split(nullptr, 0, 0), Given()));
}

TEST(FillMask, SetsTheRegionInACopyOrGivesItsArgumentBack) {
  test::Random random(81);
  int kept = 0;
  for (int round = 0; round < 300; ++round) {
    const int width = 1 + test::below(random, 70), height = 1 + test::below(random, 10);
    const OwnedDib mask = test::randomMask(width, height, round % 2 * 40 + 50, random),
                   before = test::copyOf(mask);
    // Partly outside the mask now and then.
    const int left = test::below(random, width + 8) - 5, top = test::below(random, height + 4) - 3;
    const OwnedRegion region = test::ellipse(left, top, test::below(random, 20), test::below(random, 9));
    const OwnedDib expected = test::copyOf(mask);
    test::forEachPixel({0, 0, width, height}, [&](int x, int y) {
      if (PtInRegion(region.get(), x, y)) test::setPixel(expected, x, y, 1);
    });
    BITMAPINFOHEADER* result = Transform::FillMask(mask.get(), region.get());
    const OwnedDib copy(result == mask.get() ? nullptr : result);
    ASSERT_EQ(copy == nullptr, test::same(mask, expected));
    kept += copy == nullptr;
    ASSERT_TRUE(test::same(copy ? copy : mask, expected)) << "round " << round;
    ASSERT_TRUE(test::same(mask, before));
  }
  EXPECT_GT(kept, 30);
  const OwnedDib mask = test::image(2, 2, 1);
  EXPECT_EQ(Transform::FillMask(mask.get(), nullptr), mask.get());
  EXPECT_EQ(Transform::FillMask(nullptr, nullptr), nullptr);
}

TEST(Masks, AreFilledAndCopiedOverTheirOverlap) {
  test::Random random(82);
  for (int round = 0; round < 200; ++round) {
    const OwnedDib mask =
        test::randomMask(1 + test::below(random, 40), 1 + test::below(random, 6), 50, random);
    const OwnedDib second =
        test::randomMask(1 + test::below(random, 40), 1 + test::below(random, 6), 50, random);
    const RECT rect{test::below(random, 50) - 5, test::below(random, 9) - 2, test::below(random, 50) - 5,
                    test::below(random, 9) - 2};
    const OwnedDib filled = test::copyOf(mask), marked = test::copyOf(mask);
    test::forEachPixel({0, 0, mask->biWidth, mask->biHeight}, [&](int x, int y) {
      if (PtInRect(&rect, {x, y})) test::setPixel(filled, x, y, round % 2 == 0);
      if (x < second->biWidth && y < second->biHeight)
        test::setPixel(marked, x, y, test::pixel(second, x, y));
    });
    ASSERT_TRUE(test::same(OwnedDib(Transform::MarkedMaskDIB(mask.get(), second.get())), marked));
    Transform::FillMaskDIBBits(mask.get(), rect, round % 2 == 0);
    ASSERT_TRUE(test::same(mask, filled));
  }
  EXPECT_EQ(Transform::MarkedMaskDIB(test::image(2, 2, 1).get(), nullptr), nullptr);
  EXPECT_EQ(Transform::MarkedMaskDIB(nullptr, test::image(2, 2, 1).get()), nullptr);
  Transform::FillMaskDIBBits(nullptr, RECT{0, 0, 1, 1}, true);
}

TEST(MarkedBmpDIB, PaintsTheSizeOfTheMaskWithoutReadingIt) {
  test::Random random(84);
  for (const int depth : {1, 4, 8, 16, 24, 32}) {
    const OwnedDib image = test::randomImage(7, 5, depth, random), mask = test::randomMask(4, 9, 50, random);
    const OwnedDib expected = test::copyOf(image);
    test::forEachPixel({0, 0, 4, 5},
                       [&](int x, int y) { test::setPixel(expected, x, y, test::pixel(image, 0, 0)); });
    ASSERT_TRUE(test::same(OwnedDib(Transform::MarkedBmpDIB(image.get(), mask.get())), expected)) << depth;
    EXPECT_EQ(Transform::MarkedBmpDIB(image.get(), nullptr), nullptr);
  }
}

struct Marking {
  int bitCount;
  std::vector<DWORD> pixels, palette, expected;
};

TEST(MarkHighBitsDIBAndMarkLowBitsDIB, ShowTheMaskInTwoColours) {
  const OwnedDib mask = test::imageOf(3, 1, 1, {0, 1, 0});
  const std::vector<DWORD> four{0x404040, 0, 0xFFFFFF, 0xFFFFFF};
  const Marking cases[] = {
      {24, {0x102030, 1, 2, 3}, {}, {0xEFDFCF, 0x102030, 0xEFDFCF, 3}},
      {32, {0x55102030, 1, 2, 3}, {}, {0xFFEFDFCF, 0xFF102030, 0xFFEFDFCF, 3}},
      // Red 1 of 31 is 8 of 255, whose complement 247 is 30 of 31.
      {16, {0x8400, 1, 2, 3}, {}, {0x7BFF, 0x0400, 0x7BFF, 3}},
      // Entries 2 and 3 are equally far from entry 1: the lower one serves.
      {8, {1, 0, 0, 3}, four, {2, 1, 2, 3}},
      {4, {1, 0, 0, 3}, four, {2, 1, 2, 3}},
      {1, {1, 1, 1, 1}, {0, 0xFFFFFF}, {0, 1, 0, 1}},
  };
  for (const Marking& marking : cases) {
    const OwnedDib image = test::imageOf(4, 1, marking.bitCount, marking.pixels, marking.palette);
    const bool high = marking.bitCount > 8;
    const auto mark = high ? Transform::MarkHighBitsDIB : Transform::MarkLowBitsDIB;
    const auto other = high ? Transform::MarkLowBitsDIB : Transform::MarkHighBitsDIB;
    const OwnedDib marked(mark(image.get(), mask.get()));
    EXPECT_EQ(test::pixelsOf(marked), marking.expected) << marking.bitCount;
    EXPECT_EQ(other(image.get(), mask.get()), nullptr);
    EXPECT_EQ(mark(image.get(), nullptr), nullptr);
    EXPECT_TRUE(OwnedDib(mark(test::image(0, 0, marking.bitCount).get(), mask.get())));
  }
}

}  // namespace
