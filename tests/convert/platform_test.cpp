#include <thread>

#include <gtest/gtest.h>

#include "convert/convert.h"
#include "dib/device.h"
#include "support/palettes.h"

namespace {

using test::OwnedDib;

/// A logical palette of grays; released at the end of the test.
class GrayPalette {
 public:
  explicit GrayPalette(int count) {
    std::vector<BYTE> block(4 + 4 * static_cast<std::size_t>(count));
    auto* description = reinterpret_cast<LOGPALETTE*>(block.data());
    description->palVersion = 0x300;
    description->palNumEntries = static_cast<WORD>(count);
    for (int i = 0; i < count; ++i) {
      const BYTE gray = static_cast<BYTE>(i);
      description->palPalEntry[i] = {gray, gray, gray, 0};
    }
    palette_.CreatePalette(description);
  }
  HPALETTE get() const { return static_cast<HPALETTE>(palette_.GetSafeHandle()); }

 private:
  CPalette palette_;
};

TEST(ConvertDIBFormat, WritesTheColoursUsedOnlyWhenTheyAreFewer) {
  const OwnedDib source = test::imageOf(3, 2, 24, {0x000000, 0x0A0A0A, 0xFFFFFF, 0, 0, 0});
  const GrayPalette sixteen(16);
  const OwnedDib bytes(ConvertDIBFormat(source.get(), 8, sixteen.get()));
  ASSERT_TRUE(bytes);
  EXPECT_EQ(bytes->biClrUsed, 16U);
  EXPECT_EQ(test::entriesOf(bytes).size(), 16U);
  EXPECT_EQ(bytes->biSizeImage, 2U * 4);
  const OwnedDib nibbles(ConvertDIBFormat(source.get(), 4, sixteen.get()));
  ASSERT_TRUE(nibbles);
  EXPECT_EQ(nibbles->biClrUsed, 0U);
  EXPECT_EQ(test::pixelsOf(nibbles.get()), (std::vector<DWORD>{0, 10, 15, 0, 0, 0}));
  const OwnedDib same(ConvertDIBFormat(source.get(), 24, nullptr));
  ASSERT_TRUE(same);
  EXPECT_EQ(test::pixelsOf(same.get()), test::pixelsOf(source.get()));
}

TEST(ConvertDIBFormat, UsesAsManyEntriesAsTheTargetCanIndex) {
  const OwnedDib source = test::imageOf(2, 1, 24, {0x000000, 0xFFFFFF});
  const GrayPalette large(256);
  const OwnedDib bits(ConvertDIBFormat(source.get(), 1, large.get()));
  ASSERT_TRUE(bits);
  EXPECT_EQ(bits->biClrUsed, 0U);
  EXPECT_EQ(test::entriesOf(bits), (std::vector<DWORD>{0, 0x010101}));
  EXPECT_EQ(test::pixelsOf(bits.get()), (std::vector<DWORD>{0, 1}));
}

TEST(ConvertDIBFormat, MatchesLikeASearchOfTheWholeTable) {
  test::Random random(37);
  for (const int bits : {1, 4, 8}) {
    for (const int from : {16, 24, 32}) {
      const int count = 2 + test::below(random, (1 << bits) - 1);
      const OwnedDib source = test::randomImage(33, 40, from, random);
      const GrayPalette palette(count);
      const OwnedDib result(ConvertDIBFormat(source.get(), static_cast<UINT>(bits), palette.get()));
      ASSERT_TRUE(result);
      for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 33; ++x) {
          const DWORD stored = test::pixel(source, x, y);
          int channels[3];
          for (int i = 0; i < 3; ++i) {
            const int five = static_cast<int>(stored >> 5 * i & 31);
            channels[i] = from == 16 ? five << 3 | five >> 2 : static_cast<int>(stored >> 8 * i & 255);
            if (bits == 8) channels[i] = (channels[i] & 0xF8) + 4;
          }
          int best = 0, bestDistance = INT32_MAX;
          for (int i = 0; i < 1 << bits; ++i) {  // what the palette lacks is black
            int distance = 0;
            for (const int channel : channels) {
              const int apart = channel - (i < count ? i : 0);
              distance += apart * apart;
            }
            if (distance < bestDistance) best = i, bestDistance = distance;
          }
          ASSERT_EQ(test::pixel(result, x, y), static_cast<DWORD>(best)) << from << " to " << bits;
        }
      }
    }
  }
}

TEST(ConvertDIBFormat, RefusesWhatItCannotConvert) {
  const OwnedDib source = test::image(3, 2, 24);
  const GrayPalette palette(2);
  EXPECT_EQ(ConvertDIBFormat(nullptr, 8, palette.get()), nullptr);
  for (const UINT bits : {0U, 2U, 12U, 64U, 0xFFFFFFFFU}) {
    EXPECT_EQ(ConvertDIBFormat(source.get(), bits, palette.get()), nullptr) << bits;
  }
  EXPECT_EQ(ConvertDIBFormat(source.get(), 8, nullptr), nullptr);
  EXPECT_EQ(ConvertDIBFormat(test::image(0, 2, 24).get(), 24, nullptr), nullptr);
  EXPECT_EQ(ConvertDIBFormat(test::image(3, 2, 2).get(), 24, nullptr), nullptr);
}

TEST(ConvertDDBToDIB, RefusesWhatIsNoBitmap) {
  EXPECT_EQ(CBitmapConverter::ConvertDDBToDIB(nullptr), nullptr);
  const dibkit::OwnedRegion region(CreateRectRgn(0, 0, 1, 1));
  EXPECT_EQ(CBitmapConverter::ConvertDDBToDIB(reinterpret_cast<HBITMAP>(region.get())), nullptr);
}

TEST(CopyBitmapToClipboard, LeavesWhatItCannotCopy) {
  EXPECT_EQ(CBitmapConverter::CopyBitmapToClipboard(nullptr, nullptr), FALSE);
  BITMAPINFOHEADER broken{40, -5, 5, 1, 8, 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(CBitmapConverter::CopyBitmapToClipboard(&broken, nullptr), FALSE);
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
