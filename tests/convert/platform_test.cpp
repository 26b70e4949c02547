#include <thread>

#include <gtest/gtest.h>

#include "convert/convert.h"
#include "drawing/device.h"
#include "support/palettes.h"

namespace {

using test::OwnedDib;

/// A logical palette of grays, each one lighter than the one before.
auto grays(int count) {
  std::vector<DWORD> colours;
  for (DWORD i = 0; i < static_cast<DWORD>(count); ++i) colours.push_back(i * 0x010101);
  return test::logicalPalette(colours);
}

TEST(ConvertDIBFormat, UsesAsManyEntriesAsTheTargetCanIndex) {
  const OwnedDib source = test::imageOf(2, 1, 24, {0x000000, 0xFFFFFF});
  const auto large = grays(256);
  const OwnedDib bits(ConvertDIBFormat(source.get(), 1, large.get()));
  ASSERT_TRUE(bits);
  EXPECT_EQ(bits->biClrUsed, 0U);
  EXPECT_EQ(test::entriesOf(bits), (std::vector<DWORD>{0, 0x010101}));
  EXPECT_EQ(test::pixelsOf(bits.get()), (std::vector<DWORD>{0, 1}));
}

TEST(ConvertDIBFormat, RemembersNoColourForAnother) {
  // What is found for one pixel is kept for the next ones of its colour: a picture of one pixel has none.
  test::Random random(37);
  for (const UINT bits : {1U, 4U, 8U}) {
    for (const int from : {16, 24, 32}) {
      const auto palette = grays(2 + test::below(random, (1 << bits) - 1));
      const OwnedDib source = test::randomImage(33, 40, from, random);
      const OwnedDib result(ConvertDIBFormat(source.get(), bits, palette.get()));
      ASSERT_TRUE(result);
      for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 33; ++x) {
          const OwnedDib pixel = test::imageOf(1, 1, from, {test::pixel(source, x, y)});
          const OwnedDib alone(ConvertDIBFormat(pixel.get(), bits, palette.get()));
          ASSERT_EQ(test::pixel(result, x, y), test::pixel(alone, 0, 0)) << from << " to " << bits;
        }
      }
    }
  }
}

TEST(ConvertDIBFormat, NeedsPixelsAndForAnIndexAPalette) {
  const OwnedDib source = test::image(3, 2, 24);
  EXPECT_EQ(ConvertDIBFormat(source.get(), 8, nullptr), nullptr);
  EXPECT_TRUE(OwnedDib(ConvertDIBFormat(source.get(), 24, nullptr)));  // true colours need no palette
  EXPECT_EQ(ConvertDIBFormat(test::image(0, 2, 24).get(), 24, nullptr), nullptr);
}

TEST(CopyBitmapToClipboard, DoesNotCountMasks) {
  // Masks are not counted, so the copy of a bit field image ends 12 bytes short.
  std::vector<BYTE> block(40 + 12 + 4, 7);
  const BITMAPINFOHEADER fields{40, 1, 1, 1, 16, BI_BITFIELDS, 0, 0, 0, 0, 0};
  std::memcpy(block.data(), &fields, sizeof(fields));
  EXPECT_EQ(
      CBitmapConverter::CopyBitmapToClipboard(reinterpret_cast<BITMAPINFOHEADER*>(block.data()), nullptr),
      TRUE);
  ASSERT_TRUE(OpenClipboard(nullptr));
  EXPECT_EQ(GlobalSize(GetClipboardData(CF_DIB)), 44U);
  EXPECT_EQ(GetClipboardData(CF_PALETTE), nullptr);
  EXPECT_TRUE(EmptyClipboard());
  EXPECT_TRUE(CloseClipboard());
}

#if !defined(_WIN32)
// There, two threads without a window may both have the clipboard.
TEST(CopyBitmapToClipboard, ReleasesItsCopiesWhenAnotherThreadHasTheClipboard) {
  const OwnedDib dib = test::image(4, 4, 8);
  ASSERT_TRUE(OpenClipboard(nullptr));
  std::thread([&] { EXPECT_EQ(CBitmapConverter::CopyBitmapToClipboard(dib.get(), nullptr), TRUE); }).join();
  EXPECT_EQ(EnumClipboardFormats(0), 0U);  // the leak checker sees the copies that nobody took
  EXPECT_TRUE(CloseClipboard());
}
#endif

}  // namespace
