#include <gtest/gtest.h>

#include "plain.h"

namespace {

using dibkit::OwnedDib;
using dibkit::OwnedRegion;
using test::Given;
using test::Shot;

TEST(GetPixelRGB, ReadsEveryDepth) {
  BYTE row[] = {0x5A, 0x02, 0xC8, 0x7F, 0x11, 0x22, 0x33, 0x44};
  RGBQUAD palette[256] = {};  // entry i is blue i, green i + 1, red i + 2
  for (int i = 0; i < 254; ++i) palette[i] = {BYTE(i), BYTE(i + 1), BYTE(i + 2), 9};
  // 0x7FC8 is red 31, green 30, blue 8 in the top five bits. Depths of no format show entry 0 up to 8 bits;
  // beyond, the bytes are left alone.
  const struct {
    int bitCount, x;
    DWORD expected;
  } cases[] = {{1, 0, 0x020100},  {1, 1, 0x030201},  {4, 0, 0x070605},  {4, 1, 0x0C0B0A},
               {8, 2, 0xCAC9C8},  {2, 3, 0x020100},  {0, 3, 0x020100},  {16, 1, 0xF8F040},
               {24, 1, 0x22117F}, {32, 1, 0x332211}, {48, 0, 0xEEEEEE}, {12, 0, 0xEEEEEE}};
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
    SCOPED_TRACE(round);
    // Now and then wider than what is compared in one piece.
    const Shot a(random, 0, round % 50 == 0 ? 1100 : 40, 4);
    const int width = a.dib->biWidth, height = a.dib->biHeight;
    OwnedDib b = test::copyOf(a.dib), maskB = test::copyOf(a.mask);
    const auto copyColour = [&](int x, int y) { test::setPixel(b, x, y, test::colourAt(a.dib, x, y)); };
    const auto flip = [&](const OwnedDib& dib, DWORD bits) {
      const int x = test::below(random, width), y = test::below(random, dib->biHeight);
      test::setPixel(dib, x, y, test::pixel(dib, x, y) ^ bits);
    };
    if (test::below(random, 2) == 0) {
      b = test::image(width, height, 24);
      test::forEachPixel(test::boundsOf(b), copyColour);
    }
    const int change = test::below(random, 7);
    if (change == 0) flip(b, 1);
    if (change == 1 && maskB) flip(maskB, 1);
    // Bits that show no colour, and lines of a mask that mark nothing.
    if (change == 2 && b->biBitCount == 32) flip(b, 0xFF000000);
    if (change == 2 && b->biBitCount == 16) flip(b, 0x8000);
    if (change == 3) {
      const OwnedDib full = test::image(width, height, 1);
      test::forEachPixel(test::boundsOf(full),
                         [&](int x, int y) { test::setPixel(full, x, y, test::marked(maskB, x, y)); });
      maskB = test::copyOf(full);
    }
    if (change == 4) b = test::image(width + round % 2, height + 1 - round % 2, 24);
    int expected = change != 4;
    test::forEachPixel(test::boundsOf(a.dib), [&](int x, int y) {
      const bool clear = test::marked(a.mask, x, y);
      if (clear != test::marked(maskB, x, y)) expected = 0;
      if (!clear && test::colourAt(a.dib, x, y) != test::colourAt(b, x, y)) expected = 0;
    });
    equal += expected;
    ASSERT_EQ(CompareFrame(a.dib.get(), a.mask.get(), b.get(), maskB.get()), expected);
    ASSERT_EQ(CompareFrame(b.get(), maskB.get(), a.dib.get(), a.mask.get()), expected);
  }
  EXPECT_GT(equal, 300);
}

Given crop(const OwnedDib& frame, const OwnedDib& mask, HRGN region) {
  return test::given(CropFrame, frame.get(), mask.get(), region);
}

TEST(Crop, EqualsAskingAboutEveryPixel) {
  test::Random random(52);
  for (int round = 0; round < 1200; ++round) {
    Shot frame(random, round % 4 == 0 ? 32 : 0, 40);
    frame.at = {0, 0};
    const int frameWidth = frame.dib->biWidth, frameHeight = frame.dib->biHeight;
    // Rectangles with holes, or an ellipse; often partly outside the frame.
    const int left = test::below(random, 12) - 6, top = test::below(random, 9) - 4;
    const OwnedRegion region = round % 3 == 0 ? test::ellipse(left, top, frameWidth, frameHeight)
                                              : test::Bitmap(frameWidth, frameHeight, random).region();
    if (round % 3 == 1) OffsetRgn(region.get(), left, top);
    RECT box;
    GetRgnBox(region.get(), &box);
    const int width = box.right - box.left, height = box.bottom - box.top, depth = frame.dib->biBitCount;
    Given expected{1,
                   OwnedDib(CBitmapCreator::CreateDibImage(width, height, depth,
                                                           static_cast<int>(frame.dib->biClrUsed))),
                   nullptr, Given().position};
    std::memcpy(expected.image.get() + 1, frame.dib.get() + 1, GetDIBPaletteSize(frame.dib.get()) * 4);
    OwnedDib mask = test::newMask(width, height), faded = test::image(width, height, 32);
    test::forEachPixel(box, [&](int x, int y) {
      const bool own = x >= 0 && y >= 0 && x < frameWidth && y < frameHeight;
      const bool inside = PtInRegion(region.get(), x, y) != 0;
      const int toX = x - box.left, toY = y - box.top;
      if (own) test::setPixel(expected.image, toX, toY, test::pixel(frame.dib, x, y));
      if (own) test::setPixel(faded, toX, toY, test::pixel(frame.dib, x, y) & (inside ? ~0U : 0xFFFFFF));
      // The region counts even where the mask says opaque; what the frame lacks is transparent.
      test::setPixel(mask, toX, toY, !frame.shows(x, y) || !inside);
    });
    const std::vector<DWORD> bits = test::pixelsOf(mask);
    if (std::count(bits.begin(), bits.end(), 1U) != 0) expected.mask = std::move(mask);
    ASSERT_TRUE(test::same(crop(frame.dib, frame.mask, region.get()), expected)) << "round " << round;
    if (depth != 32) continue;
    ASSERT_TRUE(test::same(OwnedDib(Crop32BitsDIB(frame.dib.get(), region.get())), faded))
        << "round " << round;
  }
}

TEST(CropFrame, MakesPlainImagesOfBitFieldsAndOnlyTheShapeOfUnknownDepths) {
  const OwnedDib plain = test::imageOf(3, 1, 16, {0xFFFF, 0x8001, 0x1234});
  std::vector<BYTE> block = test::bytesOf(plain);
  block.insert(block.begin() + 40, 12, 0xAB);
  auto* frame = reinterpret_cast<BITMAPINFOHEADER*>(block.data());
  frame->biCompression = BI_BITFIELDS;
  const OwnedRegion all(CreateRectRgn(0, 0, 3, 1));
  const Given words = test::given(CropFrame, frame, nullptr, all.get());
  EXPECT_TRUE(test::same(words.image, plain));
  EXPECT_FALSE(words.mask);
  const OwnedDib odd = test::image(3, 1, 2, {1, 2, 3, 4});
  *GetDIBBits(odd.get()) = 0xFF;
  EXPECT_TRUE(test::same(crop(odd, nullptr, all.get()).image, test::image(3, 1, 2, {1, 2, 3, 4})));
}

}  // namespace
