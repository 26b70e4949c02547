#include <set>

#include <gtest/gtest.h>

#include "dib/allocate.h"
#include "dib/map_walk.h"
#include "dib/row_progress.h"
#include "support/images.h"

namespace {

using dibkit::OwnedDib;

struct Creation {
  int width, height, bitCount, clrUsed;
  std::size_t bytes;  // header, palette and rows, worked out by hand
  DWORD colours;      // biClrUsed of the result
  DWORD paletteSize;
};

TEST(CreateDibImage, LaysOutTheBlock) {
  const Creation cases[] = {
      {3, 2, 1, 0, 40 + 8 + 2 * 4, 0, 2},
      {33, 1, 1, 0, 40 + 8 + 8, 0, 2},
      {10, 10, 8, 16, 40 + 64 + 10 * 12, 16, 16},
      {10, 10, 8, 0, 40 + 1024 + 10 * 12, 0, 256},
      {10, 10, 8, -3, 40 + 1024 + 10 * 12, 0, 256},
      {9, 2, 4, 3, 40 + 12 + 2 * 8, 3, 3},
      {5, 3, 24, 5, 40 + 3 * 16, 0, 0},
      {1, 1, 24, 0, 40 + 4, 0, 0},
      {3, 2, 16, 0, 40 + 2 * 8, 0, 0},
      {0, 0, 32, 0, 40, 0, 0},
      {7, 0, 32, 0, 40, 0, 0},
      {5, 5, 2, 0, 40 + 16 + 5 * 4, 0, 4},
  };
  for (const Creation& expected : cases) {
    SCOPED_TRACE(testing::Message() << expected.width << "x" << expected.height << " at "
                                    << expected.bitCount);
    const OwnedDib dib(
        CBitmapCreator::CreateDibImage(expected.width, expected.height, expected.bitCount, expected.clrUsed));
    ASSERT_TRUE(dib);
    const std::vector<BYTE> bytes = test::bytesOf(dib);
    EXPECT_EQ(bytes.size(), expected.bytes);
    BITMAPINFOHEADER header{40,
                            expected.width,
                            expected.height,
                            1,
                            static_cast<WORD>(expected.bitCount),
                            0,
                            0,
                            0,
                            0,
                            expected.colours,
                            0};
    EXPECT_EQ(std::memcmp(dib.get(), &header, 40), 0);
    EXPECT_EQ(std::count(bytes.begin() + 40, bytes.end(), 0), static_cast<long>(bytes.size()) - 40);
    EXPECT_EQ(GetDIBPaletteSize(dib.get()), expected.paletteSize);
    EXPECT_EQ(GetDIBBits(dib.get()), reinterpret_cast<BYTE*>(dib.get()) + 40 + 4 * expected.paletteSize);
  }
}

TEST(CreateDibImage, GivesNullForImpossibleSizes) {
  EXPECT_EQ(CBitmapCreator::CreateDibImage(-1, 4, 8, 0), nullptr);
  EXPECT_EQ(CBitmapCreator::CreateDibImage(4, -1, 8, 0), nullptr);
  EXPECT_EQ(CBitmapCreator::CreateDibImage(4, 4, -8, 0), nullptr);
  EXPECT_EQ(CBitmapCreator::CreateDibImage(65536, 65536, 32, 0), nullptr);
  EXPECT_EQ(CBitmapCreator::CreateDibImage(INT32_MAX, INT32_MAX, 32, 0), nullptr);
  EXPECT_EQ(CBitmapCreator::CreateDibImage(1, 1, 8, INT32_MAX), nullptr);
}

TEST(CreateDib, ClearsThePaddingOfUnwrittenRows) {
  for (const int bitCount : {1, 4, 8, 16, 24}) {
    for (const int width : {1, 4, 7, 8, 9, 15, 33}) {
      const OwnedDib dib = dibkit::createDib(width, 3, bitCount, 0, dibkit::Pixels::unwritten);
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

TEST(Clone, GivesNullForWhatIsNoImage) {
  EXPECT_EQ(CBitmapCreator::Clone(nullptr), nullptr);
  BITMAPINFOHEADER header{40, 3, -2, 1, 16, 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(CBitmapCreator::Clone(&header), nullptr);
  header.biHeight = INT32_MAX;
  header.biWidth = INT32_MAX;
  EXPECT_EQ(CBitmapCreator::Clone(&header), nullptr);
  header = {12, 1, 1, 1, 16, 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(CBitmapCreator::Clone(&header), nullptr);
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

TEST(ColourMap, LooksUpWithoutInsertingAndEnumeratesEverything) {
  CMap<DWORD, DWORD&, int, int&> map;
  for (DWORD key = 0; key < 300; ++key) {
    int value = static_cast<int>(key) * 2;
    map.SetAt(key, value);
  }
  DWORD missing = 1000;
  int value = 7;
  EXPECT_FALSE(map.Lookup(missing, value));
  EXPECT_EQ(value, 7);
  EXPECT_EQ(map.GetCount(), 300);
  std::set<DWORD> seen;
  dibkit::forEachAssociation(map, [&](DWORD key, int twice) {
    EXPECT_EQ(twice, static_cast<int>(key) * 2);
    EXPECT_TRUE(seen.insert(key).second);
  });
  EXPECT_EQ(seen.size(), 300U);
  DWORD first = 0;
  EXPECT_TRUE(map.RemoveKey(first));
  EXPECT_FALSE(map.RemoveKey(first));
  map.RemoveAll();
  EXPECT_TRUE(map.IsEmpty());
  EXPECT_EQ(map.GetStartPosition(), nullptr);
}

}  // namespace
