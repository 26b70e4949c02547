#include <gtest/gtest.h>

#include "dib/allocate.h"
#include "dib/row_progress.h"
#include "support/images.h"

namespace {

using dibkit::OwnedDib;

TEST(CreateDibImage, MakesABlockOfZerosAfterTheHeader) {
  const struct {
    int width, height, bitCount, clrUsed;
    std::size_t bytes;  // header, palette and rows, worked out by hand
    DWORD colours;      // biClrUsed of the result
    DWORD paletteSize;
  } cases[] = {
      {3, 2, 1, 0, 40 + 8 + 2 * 4, 0, 2},
      {33, 1, 1, 0, 40 + 8 + 8, 0, 2},
      {10, 10, 8, 16, 40 + 64 + 10 * 12, 16, 16},
      {10, 10, 8, 0, 40 + 1024 + 10 * 12, 0, 256},
      {10, 10, 8, -3, 40 + 1024 + 10 * 12, 0, 256},
      {9, 2, 4, 3, 40 + 12 + 2 * 8, 3, 3},
      {5, 3, 24, 5, 40 + 3 * 16, 0, 0},
      {3, 2, 16, 0, 40 + 2 * 8, 0, 0},
      {7, 0, 32, 0, 40, 0, 0},
      {5, 5, 2, 0, 40 + 16 + 5 * 4, 0, 4},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.width << "x" << c.height << " at " << c.bitCount);
    const OwnedDib dib(CBitmapCreator::CreateDibImage(c.width, c.height, c.bitCount, c.clrUsed));
    ASSERT_TRUE(dib);
    std::vector<BYTE> expected(c.bytes);
    const auto depth = static_cast<WORD>(c.bitCount);
    const BITMAPINFOHEADER header{40, c.width, c.height, 1, depth, 0, 0, 0, 0, c.colours, 0};
    std::memcpy(expected.data(), &header, 40);
    EXPECT_EQ(test::bytesOf(dib), expected);
    EXPECT_EQ(GetDIBPaletteSize(dib.get()), c.paletteSize);
    EXPECT_EQ(GetDIBBits(dib.get()), reinterpret_cast<BYTE*>(dib.get()) + 40 + 4 * c.paletteSize);
  }
}

TEST(CreateDib, ClearsThePaddingOfUnwrittenRows) {
  for (const int bitCount : {1, 4, 8, 16, 24}) {
    for (const int width : {1, 4, 7, 8, 9, 15, 33}) {
      const OwnedDib dib = dibkit::createDib(width, 3, bitCount, 0, dibkit::InitialPixels::unwritten);
      const dibkit::View view(dib.get());
      for (int y = 0; y < 3; ++y) {
        for (std::ptrdiff_t bit = std::ptrdiff_t{width} * bitCount; bit < view.stride() * 8; ++bit) {
          ASSERT_EQ(view.row(y)[bit / 8] >> (7 - bit % 8) & 1, 0) << width << " at " << bitCount;
        }
      }
    }
  }
}

TEST(Clone, CopiesMasksPaletteAndRowsOfAnyHeader) {
  // A 5-6-5 image: header, three masks, two rows of three words padded to 8 bytes.
  std::vector<BYTE> block(40 + 12 + 16);
  for (std::size_t i = 0; i < block.size(); ++i) block[i] = static_cast<BYTE>(i * 7 + 1);
  const BITMAPINFOHEADER header{40, 3, 2, 1, 16, BI_BITFIELDS, 0, 0, 0, 9, 0};
  std::memcpy(block.data(), &header, sizeof(header));
  const OwnedDib copy(CBitmapCreator::Clone(reinterpret_cast<const BITMAPINFOHEADER*>(block.data())));
  ASSERT_TRUE(copy);
  EXPECT_EQ(test::bytesOf(copy), block);
  EXPECT_EQ(GetDIBBits(copy.get()) - reinterpret_cast<BYTE*>(copy.get()), 52);
}

TEST(PixelHelpers, AddressBitsAndNibbles) {
  BYTE row[2] = {0x81, 0x00};
  EXPECT_EQ(Get1BitPixel(row, 0), 1);
  EXPECT_EQ(Get1BitPixel(row, 1), 0);
  EXPECT_EQ(Get1BitPixel(row, 7), 1);
  Set1BitPixel(row, 200, 8);
  EXPECT_EQ(row[1], 0x80);
  Set1BitPixel(row, 0, 7);
  EXPECT_EQ(row[0], 0x80);
  Set4BitPixel(row, 5, 0);
  Set4BitPixel(row, 9, 1);
  EXPECT_EQ(row[0], 0x59);
  EXPECT_EQ(Get4BitPixel(row, 0), 5);
  EXPECT_EQ(Get4BitPixel(row, 1), 9);
  // An index of 16 is not masked: it spills at an odd x and is lost at an even one.
  Set4BitPixel(row, 16, 1);
  EXPECT_EQ(row[0], 0x50 | 0x10);
  Set4BitPixel(row, 16, 0);
  EXPECT_EQ(row[0], 0x00);
}

TEST(View, RefusesADepthThatTheRowsDoNotHold) {
  const OwnedDib dib = test::image(5, 4, 24);
  EXPECT_TRUE(dibkit::View(dib.get(), 24));
  EXPECT_TRUE(dibkit::View(dib.get(), 8));
  EXPECT_FALSE(dibkit::View(dib.get(), 32));
  EXPECT_FALSE(dibkit::viewOfDepth(dib.get(), 8));
}

TEST(View, ShowsPixelsFromTheTopLeftOne) {
  test::Random random(3);
  for (const int bitCount : {1, 4, 8, 16, 24, 32}) {
    SCOPED_TRACE(bitCount);
    std::vector<DWORD> colours{0xFF0000, 0x00FF00};
    if (bitCount > 1) colours.push_back(0xFFFFFF);
    if (bitCount > 8) colours.clear();
    const auto stored = [&](int, int) {
      return static_cast<DWORD>(colours.empty() ? random() : random() % colours.size());
    };
    const OwnedDib dib = test::drawn(5, 3, bitCount, stored, colours);
    std::vector<DWORD> seen, expected;
    EXPECT_TRUE(dibkit::forEachPixel(dib.get(), [&](int x, int y, dibkit::Rgb colour) {
      EXPECT_EQ(static_cast<std::size_t>(5 * y + x), seen.size());
      seen.push_back(dibkit::packRgb(colour));
    }));
    for (const DWORD p : test::pixelsOf(dib)) {
      // Five bits a channel fill the upper part of a byte.
      const DWORD wide = (p & 0x7C00) << 9 | (p & 0x3E0) << 6 | (p & 31) << 3;
      expected.push_back(bitCount > 16 ? p & 0xFFFFFF : bitCount == 16 ? wide : colours[p]);
    }
    EXPECT_EQ(seen, expected);
  }
  EXPECT_FALSE(dibkit::forEachPixel(nullptr, [](int, int, dibkit::Rgb) {}));
  EXPECT_FALSE(dibkit::forEachPixel(test::image(2, 2, 2).get(), [](int, int, dibkit::Rgb) {}));
}

TEST(Progress, ReportsPercentOfLinesAndCancelsOnTheLineItWasAsked) {
  test::Progress progress;
  EXPECT_TRUE(dibkit::forEachRowReporting(7, &progress, [](int) {}));
  EXPECT_EQ(progress.fractions, (std::vector<float>{0.14F, 0.28F, 0.42F, 0.57F, 0.71F, 0.85F, 1.0F}));

  for (const int cancelAt : {0, 1, 2}) {
    test::Progress cancelling(cancelAt);
    int lines = 0;
    EXPECT_FALSE(dibkit::forEachRowReporting(3, &cancelling, [&](int) { ++lines; }));
    EXPECT_EQ(lines, cancelAt + 1);
    EXPECT_EQ(cancelling.fractions.size(), static_cast<std::size_t>(cancelAt) + 1);
  }
  test::Progress cancelledBefore;
  cancelledBefore.m_bCancel = 1;
  EXPECT_FALSE(dibkit::forEachRowReporting(3, &cancelledBefore, [](int) {}));
  EXPECT_EQ(cancelledBefore.fractions.size(), 1U);
}

TEST(Progress, StagesMoveTheOffset) {
  test::Progress progress;
  EXPECT_FLOAT_EQ(progress.ScaledFraction(0.5F), 0.5F);
  progress.BeginSubRange(0.5F);
  EXPECT_FLOAT_EQ(progress.ScaledFraction(0.5F), 0.25F);
  progress.EndSubRange();
  progress.BeginSubRange(0.5F);
  EXPECT_FLOAT_EQ(progress.ScaledFraction(0.5F), 0.75F);
  progress.EndSubRange();
  EXPECT_FLOAT_EQ(progress.ScaledFraction(0.0F), 1.0F);
}

}  // namespace
