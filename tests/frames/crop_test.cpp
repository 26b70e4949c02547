#include <gtest/gtest.h>

#include "random_frames.h"

namespace {

using dibkit::OwnedDib;
using dibkit::OwnedRegion;

/// A region of a few rectangles, ellipses and holes inside the frame.
OwnedRegion randomRegion(int width, int height, test::Random& random) {
  OwnedRegion region(CreateRectRgn(0, 0, 0, 0));
  for (int i = 0; i < 3; ++i) {
    const int left = test::below(random, width);
    const int top = test::below(random, height);
    const int right = left + 1 + test::below(random, width - left);
    const int bottom = top + 1 + test::below(random, height - top);
    const OwnedRegion part(i == 0 ? CreateEllipticRgn(left, top, right, bottom)
                                  : CreateRectRgn(left, top, right, bottom));
    CombineRgn(region.get(), region.get(), part.get(), i == 2 ? RGN_XOR : RGN_OR);
  }
  return region;
}

TEST(CropFrame, EqualsAskingAboutEveryPixel) {
  test::Random random(52);
  for (int round = 0; round < 600; ++round) {
    const int depth = test::allDepths[round % 6];
    const int width = 1 + test::below(random, 40);
    const int height = 1 + test::below(random, 12);
    const OwnedDib frame = test::randomFrame(width, height, depth, random);
    const OwnedDib mask = test::maybeMask(width, height, random);
    const OwnedRegion region = randomRegion(width, height, random);
    RECT box;
    GetRgnBox(region.get(), &box);

    BITMAPINFOHEADER* image = nullptr;
    BITMAPINFOHEADER* cutMask = nullptr;
    ASSERT_EQ(CropFrame(frame.get(), mask.get(), region.get(), &image, &cutMask), 1);
    const OwnedDib piece(image);
    const OwnedDib pieceMask(cutMask);

    OwnedDib expected(CBitmapCreator::CreateDibImage(box.right - box.left, box.bottom - box.top, depth,
                                                     static_cast<int>(frame->biClrUsed)));
    std::memcpy(expected.get() + 1, frame.get() + 1, GetDIBPaletteSize(frame.get()) * sizeof(RGBQUAD));
    const OwnedDib expectedMask = test::image(box.right - box.left, box.bottom - box.top, 1);
    reinterpret_cast<RGBQUAD*>(expectedMask.get() + 1)[1] = {255, 255, 255, 0};
    bool transparent = false;
    for (int y = box.top; y < box.bottom; ++y) {
      for (int x = box.left; x < box.right; ++x) {
        test::setPixel(expected, x - box.left, y - box.top, test::pixel(frame, x, y));
        if (!test::transparentAt(mask.get(), x, y) && PtInRegion(region.get(), x, y)) continue;
        test::setPixel(expectedMask, x - box.left, y - box.top, 1);
        transparent = true;
      }
    }
    // An image of the library's own making has biClrUsed 0 for a full palette.
    ASSERT_EQ(test::bytesOf(piece), test::bytesOf(expected)) << "round " << round;
    ASSERT_EQ(pieceMask != nullptr, transparent);
    if (pieceMask) {
      ASSERT_EQ(test::bytesOf(pieceMask), test::bytesOf(expectedMask)) << "round " << round;
    }
  }
}

TEST(CropFrame, MakesAPlainImageOfABitFieldFrame) {
  const OwnedDib plain = test::imageOf(3, 1, 16, {0xFFFF, 0x8001, 0x1234});
  std::vector<BYTE> block = test::bytesOf(plain);
  block.insert(block.begin() + 40, 12, 0xAB);
  auto* frame = reinterpret_cast<BITMAPINFOHEADER*>(block.data());
  frame->biCompression = BI_BITFIELDS;
  const OwnedRegion all(CreateRectRgn(0, 0, 3, 1));
  BITMAPINFOHEADER* image = nullptr;
  BITMAPINFOHEADER* mask = frame;
  ASSERT_EQ(CropFrame(frame, nullptr, all.get(), &image, &mask), 1);
  const OwnedDib piece(image);
  EXPECT_EQ(test::bytesOf(piece), test::bytesOf(plain));
  EXPECT_EQ(mask, nullptr);  // a whole rectangle of an opaque frame
}

TEST(CropFrame, CutsOnlyTheShapeOfAnUnknownDepth) {
  const OwnedDib frame = test::image(8, 2, 2, {1, 2, 3, 4});
  std::memset(GetDIBBits(frame.get()), 0xFF, 8);
  const OwnedRegion all(CreateRectRgn(0, 0, 8, 2));
  BITMAPINFOHEADER* image = nullptr;
  BITMAPINFOHEADER* mask = nullptr;
  ASSERT_EQ(CropFrame(frame.get(), nullptr, all.get(), &image, &mask), 1);
  const OwnedDib piece(image);
  EXPECT_EQ(test::bytesOf(piece), test::bytesOf(test::image(8, 2, 2, {1, 2, 3, 4})));
  EXPECT_EQ(mask, nullptr);
}

TEST(CropFrame, TreatsWhatTheFrameLacksAsTransparentZeros) {
  test::Random random(53);
  for (const int depth : test::allDepths) {
    for (const RECT& box : {RECT{-3, -1, 9, 4}, RECT{2, 1, 20, 9}, RECT{-12, 0, -4, 2}, RECT{-3, 0, 2, 1}}) {
      const OwnedDib frame = test::randomFrame(7, 3, depth, random);
      const OwnedDib mask = test::randomMask(7, 3, 50, random);
      const OwnedRegion region(CreateRectRgn(box.left, box.top, box.right, box.bottom));
      BITMAPINFOHEADER* image = nullptr;
      BITMAPINFOHEADER* cutMask = nullptr;
      ASSERT_EQ(CropFrame(frame.get(), mask.get(), region.get(), &image, &cutMask), 1);
      const OwnedDib piece(image);
      const OwnedDib pieceMask(cutMask);
      for (int y = box.top; y < box.bottom; ++y) {
        for (int x = box.left; x < box.right; ++x) {
          const bool inside = x >= 0 && x < 7 && y >= 0 && y < 3;
          ASSERT_EQ(test::pixel(piece, x - box.left, y - box.top), inside ? test::pixel(frame, x, y) : 0);
          ASSERT_EQ(test::pixel(pieceMask, x - box.left, y - box.top), inside ? test::pixel(mask, x, y) : 1);
        }
      }
    }
  }
}

TEST(Crop32BitsDIB, KeepsTheColourOutsideTheRegionWithoutOpacity) {
  test::Random random(56);
  for (int round = 0; round < 100; ++round) {
    const int width = 1 + test::below(random, 40);
    const int height = 1 + test::below(random, 12);
    const OwnedDib source = test::randomImage(width, height, 32, random);
    const OwnedRegion region = randomRegion(width, height, random);
    if (round % 3 == 0) OffsetRgn(region.get(), test::below(random, 9) - 4, test::below(random, 9) - 4);
    RECT box;
    GetRgnBox(region.get(), &box);
    const OwnedDib piece(Crop32BitsDIB(source.get(), region.get()));
    ASSERT_TRUE(piece);
    const OwnedDib expected = test::image(box.right - box.left, box.bottom - box.top, 32);
    for (int y = std::max<int>(box.top, 0); y < std::min<int>(box.bottom, height); ++y) {
      for (int x = std::max<int>(box.left, 0); x < std::min<int>(box.right, width); ++x) {
        const DWORD kept = PtInRegion(region.get(), x, y) ? 0xFFFFFFFF : 0x00FFFFFF;
        test::setPixel(expected, x - box.left, y - box.top, test::pixel(source, x, y) & kept);
      }
    }
    ASSERT_EQ(test::bytesOf(piece), test::bytesOf(expected));
  }
}

TEST(Crop, GivesAnEmptyImageForAnEmptyRegionAndNothingForNone) {
  const OwnedDib frame = test::image(5, 5, 32);
  const OwnedRegion empty(CreateRectRgn(2, 2, 2, 2));
  const OwnedDib piece(Crop32BitsDIB(frame.get(), empty.get()));
  ASSERT_TRUE(piece);
  EXPECT_EQ(piece->biWidth, 0);
  EXPECT_EQ(piece->biHeight, 0);
  EXPECT_EQ(Crop32BitsDIB(frame.get(), nullptr), nullptr);
  EXPECT_EQ(Crop32BitsDIB(nullptr, empty.get()), nullptr);

  BITMAPINFOHEADER* image = nullptr;
  BITMAPINFOHEADER* mask = frame.get();
  EXPECT_EQ(CropFrame(frame.get(), nullptr, nullptr, &image, &mask), 0);
  EXPECT_EQ(CropFrame(nullptr, nullptr, empty.get(), &image, &mask), 0);
  EXPECT_EQ(CropFrame(frame.get(), frame.get(), empty.get(), &image, &mask), 0);
  const OwnedRegion huge(CreateRectRgn(-60000, -60000, 60000, 60000));
  EXPECT_EQ(CropFrame(frame.get(), nullptr, huge.get(), &image, &mask), 0);
  EXPECT_EQ(image, nullptr);
  EXPECT_EQ(mask, frame.get());  // failures write nothing
  ASSERT_EQ(CropFrame(frame.get(), nullptr, empty.get(), &image, &mask), 1);
  const OwnedDib none(image);
  EXPECT_EQ(none->biWidth, 0);
  EXPECT_EQ(mask, nullptr);
}

}  // namespace
