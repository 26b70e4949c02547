#include <sstream>
#include <thread>

#include <gtest/gtest.h>

#include "convert/convert.h"
#include "drawing/device.h"
#include "platform/surface.h"

/// The conversions that the platform does: everything that was recorded of them, case by case, and what is
/// ours in them.
namespace {

using test::dibOf;
using test::GoldenCase;
using test::GoldenLine;
using test::OwnedDib;
using test::recordedDib;

void recordedConversion(const GoldenCase& recorded) {
  std::vector<BYTE> source = recordedDib(recorded, "source");
  const auto palette = test::logicalPalette(test::coloursOf(recorded.at("entries")));
  const auto target = static_cast<UINT>(test::numberOf(recorded, "target"));
  const OwnedDib result(ConvertDIBFormat(dibOf(source), target, palette.get()));
  ASSERT_TRUE(result);
  EXPECT_EQ(test::bytesOf(result), recordedDib(recorded, "result"));
}

/// The bitmap that a case describes.
dibkit::OwnedBitmap bitmapOf(const GoldenCase& recorded) {
  std::istringstream make(recorded.at("make").rest);
  std::string call;
  int width = 0, height = 0;
  UINT bits = 0;
  make >> call >> width >> height >> bits;
  if (call == "CreateBitmap") {
    std::vector<BYTE> bytes;
    for (const GoldenLine& line : recorded.lines) {
      if (line.word != "bytes") continue;
      for (const DWORD value : test::hexadecimals(line)) bytes.push_back(static_cast<BYTE>(value));
    }
    return dibkit::OwnedBitmap(CreateBitmap(width, height, 1, bits, bytes.data()));
  }
  std::vector<BYTE> section = recordedDib(recorded, "section");
  void* rows = nullptr;
  dibkit::OwnedBitmap bitmap(CreateDIBSection(nullptr, reinterpret_cast<BITMAPINFO*>(section.data()),
                                              DIB_RGB_COLORS, &rows, nullptr, 0));
  const BYTE* first = GetDIBBits(dibOf(section));
  std::copy(first, static_cast<const BYTE*>(section.data()) + section.size(), static_cast<BYTE*>(rows));
  return bitmap;
}

void recordedBitmap(const GoldenCase& recorded) {
  const dibkit::OwnedBitmap bitmap = bitmapOf(recorded);
  BITMAP b{};
  EXPECT_EQ(GetObjectW(bitmap.get(), sizeof(b), &b), static_cast<int>(sizeof(b)));
  EXPECT_EQ((std::vector<std::int64_t>{b.bmWidth, b.bmHeight, b.bmWidthBytes, b.bmPlanes, b.bmBitsPixel}),
            recorded.at("bitmap").numbers());
  const OwnedDib result(CBitmapConverter::ConvertDDBToDIB(bitmap.get()));
  ASSERT_TRUE(result);
  EXPECT_EQ(test::bytesOf(result), recordedDib(recorded, "result"));
}

std::vector<std::int64_t> availableFormats() {
  std::vector<std::int64_t> formats;
  for (UINT format = 1; format <= 17; ++format) {
    if (IsClipboardFormatAvailable(format) != 0) formats.push_back(format);
  }
  return formats;
}

void recordedClipboard(const GoldenCase& recorded) {
  std::vector<BYTE> dib = recordedDib(recorded, "dib");
  EXPECT_EQ(CBitmapConverter::CopyBitmapToClipboard(dibOf(dib), nullptr), TRUE);
  EXPECT_EQ(availableFormats(), recorded.at("available").numbers());
  ASSERT_TRUE(OpenClipboard(nullptr));
  EXPECT_EQ(test::listedFormats(), recorded.at("formats").numbers());
  const HGLOBAL block = GetClipboardData(CF_DIB);
  const auto size = static_cast<std::size_t>(std::stol(recorded.at("size").rest));
  ASSERT_EQ(GlobalSize(block), size);
  EXPECT_EQ(std::memcmp(GlobalLock(block), dib.data(), size), 0);
  GlobalUnlock(block);
  const auto palette = static_cast<HPALETTE>(GetClipboardData(CF_PALETTE));
  EXPECT_EQ(palette != nullptr, test::numberOf(recorded, "palette") != 0);
  if (palette != nullptr) {
    const auto count = static_cast<UINT>(test::numberOf(recorded, "palette", 1));
    std::vector<PALETTEENTRY> entries(256);
    EXPECT_EQ(GetPaletteEntries(palette, 0, 256, entries.data()), count);
    for (UINT i = 0; i < count; ++i) {
      const BYTE* colour = dib.data() + 40 + 4 * i;
      const PALETTEENTRY expected{colour[2], colour[1], colour[0], 0};
      EXPECT_EQ(std::memcmp(&entries[i], &expected, sizeof(expected)), 0);
    }
  }
  EXPECT_TRUE(EmptyClipboard());
  EXPECT_TRUE(CloseClipboard());
}

TEST(RecordedConversions, AllExact) {
  using Counts = std::map<std::string, int>;
  EXPECT_EQ(test::checkRecorded("convert.txt", {{"convert", recordedConversion}, {"ddb", recordedBitmap}}),
            (Counts{{"convert", 213}, {"ddb", 34}}));
  EXPECT_EQ(test::checkRecorded("clipboard.txt", {{"clipboard", recordedClipboard}}),
            (Counts{{"clipboard", 14}}));
}

/// Grays, each one lighter than the one before.
std::vector<DWORD> grays(int count) {
  std::vector<DWORD> colours;
  for (DWORD i = 0; i < static_cast<DWORD>(count); ++i) colours.push_back(i * 0x010101);
  return colours;
}

TEST(ConvertDIBFormat, UsesAsManyEntriesAsTheTargetCanIndex) {
  const OwnedDib source = test::imageOf(2, 1, 24, {0x000000, 0xFFFFFF});
  const OwnedDib bits(ConvertDIBFormat(source.get(), 1, test::logicalPalette(grays(256)).get()));
  ASSERT_TRUE(bits);
  EXPECT_EQ(bits->biClrUsed, 0U);
  EXPECT_EQ(test::entriesOf(bits), (std::vector<DWORD>{0, 0x010101}));
  EXPECT_EQ(test::pixelsOf(bits), (std::vector<DWORD>{0, 1}));
  EXPECT_EQ(ConvertDIBFormat(source.get(), 8, nullptr), nullptr);
  EXPECT_TRUE(OwnedDib(ConvertDIBFormat(source.get(), 24, nullptr)));  // true colours need no palette
}

TEST(ConvertDIBFormat, RemembersNoColourForAnother) {
  // What is found for one pixel is kept for the next ones of its colour: a picture of one pixel has none.
  test::Random random(37);
  for (const UINT bits : {1U, 4U, 8U}) {
    for (const int from : {16, 24, 32}) {
      const auto palette = test::logicalPalette(grays(2 + test::below(random, (1 << bits) - 1)));
      const OwnedDib source = test::randomImage(33, 40, from, random);
      const OwnedDib result(ConvertDIBFormat(source.get(), bits, palette.get()));
      ASSERT_TRUE(result);
      for (int i = 0; i < 33 * 40; ++i) {
        const OwnedDib pixel = test::imageOf(1, 1, from, {test::pixel(source, i % 33, i / 33)});
        const OwnedDib alone(ConvertDIBFormat(pixel.get(), bits, palette.get()));
        ASSERT_EQ(test::pixel(result, i % 33, i / 33), test::pixel(alone, 0, 0)) << from << " to " << bits;
      }
    }
  }
}

TEST(CopyBitmapToClipboard, DoesNotCountMasks) {
  // So the copy of a bit field image ends 12 bytes short.
  std::vector<BYTE> block(40 + 12 + 4, 7);
  const BITMAPINFOHEADER fields{40, 1, 1, 1, 16, BI_BITFIELDS, 0, 0, 0, 0, 0};
  std::memcpy(block.data(), &fields, sizeof(fields));
  EXPECT_EQ(CBitmapConverter::CopyBitmapToClipboard(dibOf(block), nullptr), TRUE);
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
