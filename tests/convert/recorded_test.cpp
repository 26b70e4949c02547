#include <sstream>

#include <gtest/gtest.h>

#include "convert/convert.h"
#include "drawing/device.h"
#include "support/golden_dib.h"
#include "support/palettes.h"

/// Everything that was recorded of the platform's conversions, case by case.
namespace {

using test::coloursOf;
using test::dibOf;
using test::GoldenCase;
using test::GoldenLine;
using test::OwnedDib;
using test::recordedDib;

TEST(RecordedConversions, ComeOutOfConvertDIBFormat) {
  int cases = 0;
  for (const GoldenCase& recorded : test::readGolden("convert.txt")) {
    if (recorded.kind != "convert") continue;
    SCOPED_TRACE(testing::Message() << "case " << recorded.number);
    ++cases;
    std::vector<BYTE> source = recordedDib(recorded, "source");
    const auto palette = test::logicalPalette(coloursOf(recorded.at("entries")));
    const auto target = static_cast<UINT>(recorded.at("target").numbers().at(0));
    const OwnedDib result(ConvertDIBFormat(dibOf(source), target, palette.get()));
    ASSERT_TRUE(result);
    EXPECT_EQ(test::bytesOf(result), recordedDib(recorded, "result"));
  }
  EXPECT_EQ(cases, 213);
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

TEST(RecordedConversions, ComeOutOfConvertDDBToDIB) {
  int cases = 0;
  for (const GoldenCase& recorded : test::readGolden("convert.txt")) {
    if (recorded.kind != "ddb") continue;
    SCOPED_TRACE(testing::Message() << "case " << recorded.number);
    ++cases;
    const dibkit::OwnedBitmap bitmap = bitmapOf(recorded);
    BITMAP description{};
    EXPECT_EQ(GetObjectW(bitmap.get(), sizeof(description), &description),
              static_cast<int>(sizeof(description)));
    EXPECT_EQ((std::vector<std::int64_t>{description.bmWidth, description.bmHeight, description.bmWidthBytes,
                                         description.bmPlanes, description.bmBitsPixel}),
              recorded.at("bitmap").numbers());
    const OwnedDib result(CBitmapConverter::ConvertDDBToDIB(bitmap.get()));
    ASSERT_TRUE(result);
    EXPECT_EQ(test::bytesOf(result), recordedDib(recorded, "result"));
  }
  EXPECT_EQ(cases, 34);
}

std::vector<std::int64_t> clipboardFormats() {
  std::vector<std::int64_t> formats;
  for (UINT format = EnumClipboardFormats(0); format != 0; format = EnumClipboardFormats(format)) {
    formats.push_back(static_cast<long>(format));
  }
  return formats;
}

std::vector<std::int64_t> availableFormats() {
  std::vector<std::int64_t> formats;
  for (UINT format = 1; format <= 17; ++format) {
    if (IsClipboardFormatAvailable(format) != 0) formats.push_back(static_cast<long>(format));
  }
  return formats;
}

TEST(RecordedConversions, ComeOutOfTheClipboard) {
  int cases = 0;
  for (const GoldenCase& recorded : test::readGolden("clipboard.txt")) {
    SCOPED_TRACE(testing::Message() << "case " << recorded.number);
    ++cases;
    std::vector<BYTE> dib = recordedDib(recorded, "dib");
    EXPECT_EQ(CBitmapConverter::CopyBitmapToClipboard(dibOf(dib), nullptr), TRUE);
    EXPECT_EQ(availableFormats(), recorded.at("available").numbers());
    ASSERT_TRUE(OpenClipboard(nullptr));
    EXPECT_EQ(clipboardFormats(), recorded.at("formats").numbers());
    const HGLOBAL block = GetClipboardData(CF_DIB);
    const auto size = static_cast<std::size_t>(std::stol(recorded.at("size").rest));
    ASSERT_EQ(GlobalSize(block), size);
    EXPECT_EQ(std::memcmp(GlobalLock(block), dib.data(), size), 0);
    GlobalUnlock(block);
    const auto palette = static_cast<HPALETTE>(GetClipboardData(CF_PALETTE));
    const std::vector<std::int64_t> expected = recorded.at("palette").numbers();
    EXPECT_EQ(palette != nullptr, expected.at(0) != 0);
    if (palette != nullptr) {
      WORD count = 0;
      EXPECT_EQ(GetObjectW(palette, sizeof(count), &count), static_cast<int>(sizeof(count)));
      EXPECT_EQ(count, expected.at(1));
      std::vector<PALETTEENTRY> entries(count);
      EXPECT_EQ(GetPaletteEntries(palette, 0, count, entries.data()), count);
      const BYTE* colours = dib.data() + 40;
      for (const PALETTEENTRY& entry : entries) {
        EXPECT_TRUE(entry.peBlue == colours[0] && entry.peGreen == colours[1] && entry.peRed == colours[2]);
        EXPECT_EQ(entry.peFlags, 0);
        colours += 4;
      }
    }
    EXPECT_TRUE(EmptyClipboard());
    EXPECT_TRUE(CloseClipboard());
  }
  EXPECT_EQ(cases, 14);
}

}  // namespace
