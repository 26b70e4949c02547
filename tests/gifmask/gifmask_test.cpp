#include "gifmask/gifmask.h"

#include <gtest/gtest.h>

#include "frames/plain.h"
#include "support/bitmap_regions.h"

namespace {

using dibkit::OwnedDib;
using test::below;
using test::boundsOf;
using test::forEachPixel;
using test::Given;
using test::pixel;
using test::setPixel;
using Transform = CMaskedBitmapTransform;

Given split(const OwnedDib& source, DWORD background, DWORD transparent) {
  return test::given([&](auto image, auto mask, POINT*) {
    return Transform::Spilt32BitsDIBForGIF(source.get(), background, transparent, image, mask);
  });
}

TEST(Spilt32BitsDIBForGIF, BlendsAndMasksPixelByPixel) {
  test::Random random(91);
  for (int round = 0; round < 200; ++round) {
    const int width = 1 + below(random, 9), height = 1 + below(random, 4);
    const OwnedDib source = test::randomImage(width, height, 32, random);
    const auto background = static_cast<DWORD>(random()), transparent = static_cast<DWORD>(random());
    Given expected{1, test::image(width, height, 24), nullptr, Given().position};
    forEachPixel(boundsOf(source), [&](int x, int y) {
      const DWORD above = pixel(source, x, y);
      const int a = static_cast<int>(above >> 24);
      const DWORD blended = test::mixed(above, test::swapped(background),
                                        [a](int s, int d) { return (s * a + d * (255 - a)) / 255; });
      setPixel(expected.image, x, y, a == 0 ? test::swapped(transparent) : blended);
      if (a != 0) return;
      if (!expected.mask) expected.mask = test::newMask(width, height);
      setPixel(expected.mask, x, y, 1);
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
}

TEST(FillMask, SetsTheRegionInACopyOrGivesItsArgumentBack) {
  test::Random random(81);
  int kept = 0;
  for (int round = 0; round < 300; ++round) {
    const int width = 1 + below(random, 70), height = 1 + below(random, 10);
    const OwnedDib mask = test::randomMask(width, height, round % 2 * 40 + 50, random),
                   before = test::copyOf(mask);
    // Partly outside the mask now and then.
    const int left = below(random, width + 8) - 5, top = below(random, height + 4) - 3;
    const dibkit::OwnedRegion region = test::ellipse(left, top, below(random, 20), below(random, 9));
    const OwnedDib expected = test::copyOf(mask);
    forEachPixel(boundsOf(mask), [&](int x, int y) {
      if (PtInRegion(region.get(), x, y)) setPixel(expected, x, y, 1);
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
}

TEST(Masks, AreFilledAndCopiedOverTheirOverlap) {
  test::Random random(82);
  for (int round = 0; round < 200; ++round) {
    const auto randomMask = [&] {
      return test::randomMask(1 + below(random, 40), 1 + below(random, 6), 50, random);
    };
    const OwnedDib mask = randomMask(), second = randomMask();
    const RECT rect{below(random, 50) - 5, below(random, 9) - 2, below(random, 50) - 5, below(random, 9) - 2};
    const OwnedDib filled = test::copyOf(mask), marked = test::copyOf(mask);
    forEachPixel(boundsOf(mask), [&](int x, int y) {
      if (PtInRect(&rect, {x, y})) setPixel(filled, x, y, round % 2 == 0);
      if (x < second->biWidth && y < second->biHeight) setPixel(marked, x, y, pixel(second, x, y));
    });
    ASSERT_TRUE(test::same(OwnedDib(Transform::MarkedMaskDIB(mask.get(), second.get())), marked));
    Transform::FillMaskDIBBits(mask.get(), rect, round % 2 == 0);
    ASSERT_TRUE(test::same(mask, filled));
  }
}

TEST(MarkedBmpDIB, PaintsTheSizeOfTheMaskWithoutReadingIt) {
  test::Random random(84);
  for (const int depth : {1, 4, 8, 16, 24, 32}) {
    const OwnedDib image = test::randomImage(7, 5, depth, random), mask = test::randomMask(4, 9, 50, random);
    const OwnedDib expected = test::copyOf(image);
    forEachPixel({0, 0, 4, 5}, [&](int x, int y) { setPixel(expected, x, y, pixel(image, 0, 0)); });
    ASSERT_TRUE(test::same(OwnedDib(Transform::MarkedBmpDIB(image.get(), mask.get())), expected)) << depth;
  }
}

TEST(MarkHighBitsDIBAndMarkLowBitsDIB, ShowTheMaskInTwoColours) {
  const OwnedDib mask = test::imageOf(3, 1, 1, {0, 1, 0});
  const std::vector<DWORD> four{0x404040, 0, 0xFFFFFF, 0xFFFFFF};
  const struct {
    int bitCount;
    std::vector<DWORD> pixels, palette, expected;
  } cases[] = {
      {24, {0x102030, 1, 2, 3}, {}, {0xEFDFCF, 0x102030, 0xEFDFCF, 3}},
      {32, {0x55102030, 1, 2, 3}, {}, {0xFFEFDFCF, 0xFF102030, 0xFFEFDFCF, 3}},
      // Red 1 of 31 is 8 of 255, whose complement 247 is 30 of 31.
      {16, {0x8400, 1, 2, 3}, {}, {0x7BFF, 0x0400, 0x7BFF, 3}},
      // Entries 2 and 3 are equally far from entry 1: the lower one serves.
      {8, {1, 0, 0, 3}, four, {2, 1, 2, 3}},
      {4, {1, 0, 0, 3}, four, {2, 1, 2, 3}},
      {1, {1, 1, 1, 1}, {0, 0xFFFFFF}, {0, 1, 0, 1}},
  };
  for (const auto& expected : cases) {
    const OwnedDib image = test::imageOf(4, 1, expected.bitCount, expected.pixels, expected.palette);
    const auto mark = expected.bitCount > 8 ? Transform::MarkHighBitsDIB : Transform::MarkLowBitsDIB;
    EXPECT_EQ(test::pixelsOf(OwnedDib(mark(image.get(), mask.get()))), expected.expected)
        << expected.bitCount;
    EXPECT_TRUE(OwnedDib(mark(test::image(0, 0, expected.bitCount).get(), mask.get())));
  }
}

}  // namespace
