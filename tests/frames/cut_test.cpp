#include <gtest/gtest.h>

#include "plain.h"

namespace {

using dibkit::OwnedDib;
using dibkit::OwnedRegion;
using test::Given;
using test::Shot;

TEST(GetPixelRGB, ReadsEveryDepth) {
  BYTE row[] = {0x5A, 0x02, 0xC8, 0x7F, 0x11, 0x22, 0x33, 0x44};
  RGBQUAD palette[256] = {};
  palette[0] = {1, 2, 3, 9};
  palette[1] = {4, 5, 6, 9};
  palette[5] = {7, 8, 9, 9};
  palette[10] = {10, 11, 12, 9};
  palette[0xC8] = {13, 14, 15, 9};
  const struct {
    int bitCount, x;
    DWORD expected;
  } cases[] = {{1, 0, 0x030201},
               {1, 1, 0x060504},
               {4, 0, 0x090807},
               {4, 1, 0x0C0B0A},
               {8, 2, 0x0F0E0D},
               // No such format: entry 0. 0x7FC8 is red 31, green 30, blue 8 in the top five bits.
               {2, 3, 0x030201},
               {0, 3, 0x030201},
               {16, 1, 0xF8F040},
               {24, 1, 0x22117F},
               {32, 1, 0x332211},
               // Left alone.
               {48, 0, 0xEEEEEE},
               {12, 0, 0xEEEEEE}};
  for (const auto& [bitCount, x, expected] : cases) {
    BYTE red = 0xEE, green = 0xEE, blue = 0xEE;
    GetPixelRGB(row, x, bitCount, palette, &red, &green, &blue);
    EXPECT_EQ(DWORD{red} << 16 | DWORD{green} << 8 | blue, expected) << bitCount;
  }
}

TEST(CompareFrame, EqualsThePlainComparisonAtEveryPairOfDepths) {
  test::Random random(51);
  int equal = 0;
  for (int round = 0; round < 2000; ++round) {
    // Now and then wider than what is compared in one piece.
    const Shot a(random, 0, round % 50 == 0 ? 1100 : 40, 4);
    OwnedDib b = test::copyOf(a.dib), maskB = test::copyOf(a.mask);
    if (test::below(random, 2) == 0) {
      b = test::image(a.dib->biWidth, a.dib->biHeight, 24);
      test::forEachPixel({0, 0, b->biWidth, b->biHeight},
                         [&](int x, int y) { test::setPixel(b, x, y, test::colourAt(a.dib, x, y)); });
    }
    const int x = test::below(random, b->biWidth), y = test::below(random, b->biHeight);
    const int change = test::below(random, 5);
    if (change == 0) test::setPixel(b, x, y, test::pixel(b, x, y) ^ 1);
    if (change == 1 && maskB) test::setPixel(maskB, x, y, test::pixel(maskB, x, y) ^ 1);
    // Bits that show no colour, and a mask that marks nothing.
    if (change == 2 && b->biBitCount == 32) test::setPixel(b, x, y, test::pixel(b, x, y) ^ 0xFF000000);
    if (change == 2 && b->biBitCount == 16) test::setPixel(b, x, y, test::pixel(b, x, y) ^ 0x8000);
    if (change == 3 && !maskB) maskB = test::image(b->biWidth, b->biHeight, 1);
    int expected = 1;
    test::forEachPixel({0, 0, b->biWidth, b->biHeight}, [&](int px, int py) {
      const bool clear = test::marked(a.mask, px, py);
      if (clear != test::marked(maskB, px, py)) expected = 0;
      if (!clear && test::colourAt(a.dib, px, py) != test::colourAt(b, px, py)) expected = 0;
    });
    equal += expected;
    ASSERT_EQ(CompareFrame(a.dib.get(), a.mask.get(), b.get(), maskB.get()), expected) << "round " << round;
    ASSERT_EQ(CompareFrame(b.get(), maskB.get(), a.dib.get(), a.mask.get()), expected) << "round " << round;
  }
  EXPECT_GT(equal, 300);
}

TEST(CompareFrame, DiffersBySizeAndForWhatIsNoFrame) {
  const OwnedDib a = test::image(3, 2, 24), wider = test::image(4, 2, 24), higher = test::image(3, 3, 24);
  for (const OwnedDib& other : {test::copyOf(wider), test::copyOf(higher), OwnedDib()}) {
    EXPECT_EQ(CompareFrame(a.get(), nullptr, other.get(), nullptr), 0);
  }
  EXPECT_EQ(CompareFrame(a.get(), wider.get(), a.get(), wider.get()), 0);  // masks of 24 bits
  // A lower mask pairs from the top line; below its end nothing is transparent.
  const OwnedDib lowMask = test::imageOf(3, 1, 1, {1, 0, 0}),
                 mask = test::imageOf(3, 2, 1, {1, 0, 0, 0, 0, 0});
  EXPECT_EQ(CompareFrame(a.get(), lowMask.get(), a.get(), mask.get()), 1);
}

/// An ellipse with a rectangle added and another one cut out or added, near the frame, often partly outside.
OwnedRegion randomRegion(const OwnedDib& frame, test::Random& random) {
  OwnedRegion region(CreateRectRgn(0, 0, 0, 0));
  const int shift = test::below(random, 2) == 0 ? 0 : 7;
  for (int i = 0; i < 3; ++i) {
    const int left = test::below(random, frame->biWidth), top = test::below(random, frame->biHeight);
    const int right = left + 1 + test::below(random, frame->biWidth - left + shift);
    const int bottom = top + 1 + test::below(random, frame->biHeight - top + shift);
    // No narrow ellipses, of which Wine leaves rows unset.
    const OwnedRegion part(i == 0 && right - left >= bottom - top
                               ? CreateEllipticRgn(left, top, right, bottom)
                               : CreateRectRgn(left - shift, top - shift, right, bottom));
    CombineRgn(region.get(), region.get(), part.get(), i == 2 ? RGN_XOR : RGN_OR);
  }
  return region;
}

Given crop(const OwnedDib& frame, const OwnedDib& mask, HRGN region) {
  return test::given(
      [&](auto image, auto out, POINT*) { return CropFrame(frame.get(), mask.get(), region, image, out); });
}

TEST(CropFrame, EqualsAskingAboutEveryPixel) {
  test::Random random(52);
  for (int round = 0; round < 900; ++round) {
    Shot frame(random, 0, 40);
    frame.at = {0, 0};
    const OwnedRegion region = randomRegion(frame.dib, random);
    RECT box;
    GetRgnBox(region.get(), &box);
    const int width = box.right - box.left, height = box.bottom - box.top, depth = frame.dib->biBitCount;
    Given expected;
    expected.result = 1;
    expected.image.reset(
        CBitmapCreator::CreateDibImage(width, height, depth, static_cast<int>(frame.dib->biClrUsed)));
    std::memcpy(expected.image.get() + 1, frame.dib.get() + 1, GetDIBPaletteSize(frame.dib.get()) * 4);
    OwnedDib mask = test::newMask(width, height);
    test::forEachPixel(box, [&](int x, int y) {
      const bool inside = x >= 0 && y >= 0 && x < frame.dib->biWidth && y < frame.dib->biHeight;
      if (inside) test::setPixel(expected.image, x - box.left, y - box.top, test::pixel(frame.dib, x, y));
      // The region counts even where the mask says opaque; what the frame lacks is transparent.
      test::setPixel(mask, x - box.left, y - box.top, !frame.shows(x, y) || !PtInRegion(region.get(), x, y));
    });
    const std::vector<DWORD> bits = test::pixelsOf(mask);
    if (std::count(bits.begin(), bits.end(), 1U) != 0) expected.mask = std::move(mask);
    ASSERT_TRUE(test::same(crop(frame.dib, frame.mask, region.get()), expected)) << "round " << round;
  }
}

TEST(CropFrame, MakesPlainImagesOfBitFieldsAndOnlyTheShapeOfUnknownDepths) {
  const OwnedDib plain = test::imageOf(3, 1, 16, {0xFFFF, 0x8001, 0x1234});
  std::vector<BYTE> block = test::bytesOf(plain);
  block.insert(block.begin() + 40, 12, 0xAB);
  auto* frame = reinterpret_cast<BITMAPINFOHEADER*>(block.data());
  frame->biCompression = BI_BITFIELDS;
  const OwnedRegion all(CreateRectRgn(0, 0, 3, 1));
  const Given words = test::given(
      [&](auto image, auto mask, POINT*) { return CropFrame(frame, nullptr, all.get(), image, mask); });
  EXPECT_TRUE(test::same(words.image, plain));
  EXPECT_FALSE(words.mask);
  const OwnedDib odd = test::image(3, 1, 2, {1, 2, 3, 4});
  *GetDIBBits(odd.get()) = 0xFF;
  EXPECT_TRUE(test::same(crop(odd, nullptr, all.get()).image, test::image(3, 1, 2, {1, 2, 3, 4})));
}

TEST(Crop32BitsDIB, KeepsTheColourOutsideTheRegionWithoutOpacity) {
  test::Random random(56);
  for (int round = 0; round < 150; ++round) {
    const OwnedDib source =
        test::randomImage(1 + test::below(random, 40), 1 + test::below(random, 9), 32, random);
    const OwnedRegion region = randomRegion(source, random);
    RECT box;
    GetRgnBox(region.get(), &box);
    const OwnedDib expected = test::image(box.right - box.left, box.bottom - box.top, 32);
    test::forEachPixel(box, [&](int x, int y) {
      if (x < 0 || y < 0 || x >= source->biWidth || y >= source->biHeight) return;
      const DWORD kept = PtInRegion(region.get(), x, y) ? 0xFFFFFFFF : 0x00FFFFFF;
      test::setPixel(expected, x - box.left, y - box.top, test::pixel(source, x, y) & kept);
    });
    ASSERT_TRUE(test::same(OwnedDib(Crop32BitsDIB(source.get(), region.get())), expected));
  }
}

TEST(Crop, GivesAnEmptyImageForAnEmptyRegionAndNothingForNone) {
  const OwnedDib frame = test::image(5, 5, 32);
  const OwnedRegion empty(CreateRectRgn(2, 2, 2, 2)), huge(CreateRectRgn(-60000, -60000, 60000, 60000));
  const Given none = crop(frame, nullptr, empty.get());
  EXPECT_EQ(none.result, 1);
  EXPECT_TRUE(test::same(none.image, test::image(0, 0, 32)));
  EXPECT_TRUE(test::same(OwnedDib(Crop32BitsDIB(frame.get(), empty.get())), test::image(0, 0, 32)));
  EXPECT_EQ(Crop32BitsDIB(frame.get(), nullptr), nullptr);
  EXPECT_EQ(Crop32BitsDIB(nullptr, empty.get()), nullptr);
  EXPECT_TRUE(test::same(crop(frame, nullptr, nullptr), Given()));
  EXPECT_TRUE(test::same(crop(nullptr, nullptr, empty.get()), Given()));
  EXPECT_TRUE(test::same(crop(frame, frame, empty.get()), Given()));
  EXPECT_TRUE(test::same(crop(frame, nullptr, huge.get()), Given()));
}

}  // namespace
