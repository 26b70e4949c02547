#include <sstream>

#include <gtest/gtest.h>

#include "convert/convert.h"
#include "dib/device.h"
#include "support/golden.h"
#include "support/palettes.h"

/// Everything that was recorded of the platform's conversions, case by case.
namespace {

using test::GoldenCase;
using test::GoldenLine;
using test::OwnedDib;

std::vector<DWORD> hexadecimals(const GoldenLine& line) {
  std::vector<DWORD> values;
  for (const std::int64_t value : line.numbers(16)) values.push_back(static_cast<DWORD>(value));
  return values;
}

/// The colours of a line `colours n ...` or `entries n ...`, whose count is decimal.
std::vector<DWORD> coloursOf(const GoldenLine& line) {
  std::vector<DWORD> values = hexadecimals(line);
  values.erase(values.begin());
  return values;
}

/// The packed DIB that starts at the line with the given word, as bytes; empty when the case has none.
std::vector<BYTE> blockOf(const GoldenCase& recorded, const std::string& word) {
  std::size_t i = 0;
  while (i < recorded.lines.size() && recorded.lines[i].word != word) ++i;
  if (i == recorded.lines.size()) return {};
  const std::vector<std::int64_t> fields = recorded.lines[i].numbers();
  const auto at = [&](std::size_t field) { return static_cast<DWORD>(fields.at(field)); };
  BITMAPINFOHEADER header{at(0), LONG(fields.at(1)), LONG(fields.at(2)), WORD(at(3)), WORD(at(4)), at(5),
                          at(6), LONG(fields.at(7)), LONG(fields.at(8)), at(9),       at(10)};
  std::vector<BYTE> block(static_cast<std::size_t>(dibkit::layoutOf(&header)->total));
  std::memcpy(block.data(), &header, sizeof(header));
  BYTE* table = block.data() + sizeof(header);
  int y = 0;
  for (++i; i < recorded.lines.size(); ++i) {
    const GoldenLine& line = recorded.lines[i];
    if (line.word == "masks" || line.word == "colours") {
      const std::vector<DWORD> values = line.word == "masks" ? hexadecimals(line) : coloursOf(line);
      std::memcpy(table, values.data(), values.size() * sizeof(DWORD));
    } else if (line.word == "p") {
      const std::vector<DWORD> pixels = hexadecimals(line);
      auto* dib = reinterpret_cast<BITMAPINFOHEADER*>(block.data());
      for (int x = 0; x < static_cast<int>(pixels.size()); ++x) {
        test::setPixel(dib, x, y, pixels[static_cast<std::size_t>(x)]);
      }
      ++y;
    } else {
      break;
    }
  }
  return block;
}

BITMAPINFOHEADER* dibOf(std::vector<BYTE>& block) {
  return reinterpret_cast<BITMAPINFOHEADER*>(block.data());
}

HPALETTE paletteFrom(const std::vector<DWORD>& colours) {
  std::vector<BYTE> block(4 + 4 * colours.size());
  auto* description = reinterpret_cast<LOGPALETTE*>(block.data());
  description->palVersion = 0x300;
  description->palNumEntries = static_cast<WORD>(colours.size());
  for (std::size_t i = 0; i < colours.size(); ++i) {
    const dibkit::Rgb colour{BYTE(colours[i] >> 16 & 255), BYTE(colours[i] >> 8 & 255),
                             BYTE(colours[i] & 255)};
    description->palPalEntry[i] = {colour.red, colour.green, colour.blue, 0};
  }
  return CreatePalette(description);
}

TEST(RecordedConversions, ComeOutOfConvertDIBFormat) {
  int cases = 0;
  for (const GoldenCase& recorded : test::readGolden("convert.txt")) {
    if (recorded.kind != "convert") continue;
    SCOPED_TRACE(testing::Message() << "case " << recorded.number);
    ++cases;
    std::vector<BYTE> source = blockOf(recorded, "source");
    const HPALETTE palette = paletteFrom(coloursOf(recorded.at("entries")));
    const auto target = static_cast<UINT>(recorded.at("target").numbers().at(0));
    const OwnedDib result(ConvertDIBFormat(dibOf(source), target, palette));
    EXPECT_TRUE(DeleteObject(palette));
    ASSERT_TRUE(result);
    EXPECT_EQ(test::bytesOf(result), blockOf(recorded, "result"));
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
      for (const DWORD value : hexadecimals(line)) bytes.push_back(static_cast<BYTE>(value));
    }
    return dibkit::OwnedBitmap(CreateBitmap(width, height, 1, bits, bytes.data()));
  }
  std::vector<BYTE> section = blockOf(recorded, "section");
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
    EXPECT_EQ(test::bytesOf(result), blockOf(recorded, "result"));
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
    std::vector<BYTE> dib = blockOf(recorded, "dib");
    EXPECT_EQ(CBitmapConverter::CopyBitmapToClipboard(dibOf(dib), nullptr), TRUE);
    EXPECT_EQ(availableFormats(), recorded.at("available").numbers());
    ASSERT_TRUE(OpenClipboard(nullptr));
    EXPECT_EQ(clipboardFormats(), recorded.at("formats").numbers());
    const HGLOBAL block = GetClipboardData(CF_DIB);
    ASSERT_NE(block, nullptr);
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
