#include <cstring>
#include <thread>

#include "platform/surface.h"

/// What the stand-in decides where the calls differ from system to system, and that no argument brings it
/// down.
namespace {

using StandinClipboard = test::Clipboard;

TEST(StandinPalettes, NeedAVersionAndEntries) {
  LOGPALETTE noEntries{0x300, 0, {}}, otherVersion{0x200, 1, {}};
  for (const LOGPALETTE* refused : {static_cast<LOGPALETTE*>(nullptr), &noEntries, &otherVersion}) {
    EXPECT_EQ(CreatePalette(refused), nullptr);
  }
  EXPECT_EQ(GetPaletteEntries(nullptr, 0, 1, nullptr), 0U);
}

TEST_F(StandinClipboard, BelongsToOneWindowAtATime) {
  int window = 0;
  ASSERT_TRUE(OpenClipboard(nullptr));
  EXPECT_FALSE(OpenClipboard(reinterpret_cast<HWND>(&window)));
  std::thread([] {
    EXPECT_FALSE(OpenClipboard(nullptr));
    EXPECT_FALSE(EmptyClipboard());
    EXPECT_FALSE(CloseClipboard());
  }).join();
  EXPECT_TRUE(CloseClipboard());
  EXPECT_TRUE(OpenClipboard(reinterpret_cast<HWND>(&window)));
  EXPECT_TRUE(CloseClipboard());
}

TEST_F(StandinClipboard, OwnsWhatItHoldsAndListsItInOrder) {
  // The sanitizers see when a block is released twice or never.
  ASSERT_TRUE(OpenClipboard(nullptr));
  EXPECT_TRUE(EmptyClipboard());
  EXPECT_NE(SetClipboardData(CF_PALETTE, test::logicalPalette({1}).release()), nullptr);
  EXPECT_NE(SetClipboardData(CF_DIB, GlobalAlloc(GMEM_MOVEABLE, 4)), nullptr);
  const HGLOBAL second = GlobalAlloc(GMEM_MOVEABLE, 8);
  EXPECT_EQ(SetClipboardData(CF_DIB, second), second);  // takes the first one's place
  EXPECT_EQ(SetClipboardData(CF_DIB, second), second);
  EXPECT_EQ(GetClipboardData(CF_DIB), second);
  EXPECT_EQ(test::listedFormats(), (std::vector<std::int64_t>{CF_PALETTE, CF_DIB, CF_BITMAP, CF_DIBV5}));
  EXPECT_EQ(EnumClipboardFormats(12345), 0U);
  EXPECT_TRUE(EmptyClipboard());
  EXPECT_TRUE(test::listedFormats().empty());
  EXPECT_FALSE(IsClipboardFormatAvailable(CF_BITMAP));
}

/// A block of `size` bytes that begins with a header and what follows it.
HGLOBAL blockOf(const BITMAPINFOHEADER& header, const std::vector<BYTE>& rest, std::size_t size) {
  const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, size);
  auto* bytes = static_cast<BYTE*>(GlobalLock(block));
  std::memcpy(bytes, &header, sizeof(header));
  std::copy(rest.begin(), rest.end(), bytes + sizeof(header));
  GlobalUnlock(block);
  return block;
}

TEST_F(StandinClipboard, MakesABitmapAndALongerHeaderOfADib) {
  ASSERT_TRUE(OpenClipboard(nullptr));
  EXPECT_TRUE(EmptyClipboard());
  // Three colours, a lower row of white and red, and of the upper one a pixel: the block ends before the
  // next.
  const std::vector<BYTE> picture{0xFF, 0, 0, 0, 0, 0, 0xFF, 0, 0xFF, 0xFF, 0xFF, 0, 2, 0, 0, 0, 1};
  ASSERT_NE(SetClipboardData(CF_DIB, blockOf({40, 2, 2, 1, 8, BI_RGB, 0, 0, 0, 3, 0}, picture, 57)), nullptr);
  const HANDLE bitmap = GetClipboardData(CF_BITMAP);
  EXPECT_EQ(GetClipboardData(CF_BITMAP), bitmap);
  BITMAP description{};
  ASSERT_NE(GetObjectW(bitmap, sizeof(description), &description), 0);
  EXPECT_EQ(description.bmBitsPixel, 32);
  const HDC context = CreateCompatibleDC(nullptr);
  const HGDIOBJ before = SelectObject(context, bitmap);
  EXPECT_EQ(GetPixel(context, 0, 0), RGB(255, 0, 0));
  EXPECT_EQ(GetPixel(context, 1, 0), RGB(0, 0, 255));  // index 0 for what is missing
  EXPECT_EQ(GetPixel(context, 0, 1), RGB(255, 255, 255));
  SelectObject(context, before);
  DeleteDC(context);

  const HGLOBAL longer = GetClipboardData(CF_DIBV5);
  ASSERT_EQ(GlobalSize(longer), 124U + 12 + 8);
  const auto* bytes = static_cast<const BYTE*>(GlobalLock(longer));
  EXPECT_TRUE(bytes[0] == 124 && bytes[14] == 8);
  EXPECT_TRUE(std::equal(picture.begin(), picture.end(), bytes + 124));
  EXPECT_TRUE(bytes[141] == 0 && bytes[142] == 0 && bytes[143] == 0);
  GlobalUnlock(longer);

  // A block that holds no picture makes nothing, and what was made of the one before is gone. The sanitizers
  // see whether more is read than the header says that there is.
  for (const DWORD headerSize : {0, 1, 39, 61}) {
    SetClipboardData(CF_DIB, blockOf({headerSize, 1, 1, 1, 24, BI_RGB, 0, 0, 0, 0, 0}, {}, 60));
    EXPECT_EQ(GetClipboardData(CF_BITMAP), nullptr);
    EXPECT_EQ(GetClipboardData(CF_DIBV5), nullptr);
  }
}

TEST(StandinTools, HaveNumbersFromTheStock) {
  for (const int number : {-1, 9, 14, 16, 1000}) EXPECT_EQ(GetStockObject(number), nullptr) << number;
  for (const int number : {0, 5, 6, 8, 15}) EXPECT_NE(GetStockObject(number), nullptr) << number;
}

TEST(StandinColourTables, AreThoseOfTheSelectedSection) {
  struct {
    BITMAPINFOHEADER header{40, 4, 1, 1, 4, BI_RGB, 0, 0, 0, 2, 0};
    RGBQUAD colours[2]{{1, 2, 3, 9}, {4, 5, 6, 9}};
  } info;
  void* bits = nullptr;
  const test::OwnedObject section(
      CreateDIBSection(nullptr, reinterpret_cast<BITMAPINFO*>(&info), DIB_RGB_COLORS, &bits, nullptr, 0));
  const HDC context = CreateCompatibleDC(nullptr);
  RGBQUAD table[20] = {};
  EXPECT_EQ(GetDIBColorTable(context, 0, 2, table), 0U);  // no section is selected yet
  const HGDIOBJ before = SelectObject(context, section.get());
  EXPECT_EQ(GetDIBColorTable(context, 0, 20, table), 16U);
  const RGBQUAD expected[] = {{1, 2, 3, 0}, {4, 5, 6, 0}, {0, 0, 0, 0}};
  EXPECT_EQ(std::memcmp(table, expected, sizeof(expected)), 0);
  const RGBQUAD fresh[] = {{7, 8, 9, 0}, {10, 11, 12, 0}};
  EXPECT_EQ(SetDIBColorTable(context, 15, 2, fresh), 1U);
  EXPECT_EQ(SetDIBColorTable(context, 16, 2, fresh), 0U);
  EXPECT_EQ(SetDIBColorTable(context, 0, 2, nullptr), 0U);
  static_cast<BYTE*>(bits)[0] = 0xF0;
  EXPECT_EQ(GetPixel(context, 0, 0), RGB(9, 8, 7));
  SelectObject(context, before);
  DeleteDC(context);
}

TEST(StandinSurfaces, HaveNoPixelBeyondThemAndTheirClipRegion) {
  const test::Surface surface(3, 2, true);
  surface.origin(1, 0);
  SelectClipRgn(surface.context(), test::OwnedRegion(CreateRectRgn(1, 0, 3, 2)).get());
  for (int x = -2; x <= 2; ++x) {
    for (int y = -1; y <= 2; ++y) {
      const COLORREF expected = (x == 0 || x == 1) && (y == 0 || y == 1) ? RGB(1, 2, 3) : CLR_INVALID;
      EXPECT_EQ(SetPixel(surface.context(), x, y, RGB(1, 2, 3)), expected) << x << ", " << y;
      EXPECT_EQ(GetPixel(surface.context(), x, y), expected) << x << ", " << y;
    }
  }
}

TEST(StandinCalls, RefuseNoPointers) {
  const POINT points[] = {{0, 0}, {2, 0}, {0, 2}};
  const RECT some{0, 0, 1, 1};
  RECT out{};
  const test::Surface surface(3, 3, true);
  EXPECT_FALSE(Polygon(nullptr, points, 3) || Polygon(surface.context(), nullptr, 3) ||
               Polygon(surface.context(), points, 1));
  for (const auto combine : {IntersectRect, UnionRect}) {
    EXPECT_FALSE(combine(nullptr, &some, &some) || combine(&out, nullptr, &some) ||
                 combine(&out, &some, nullptr));
  }
  EXPECT_EQ(CreatePolygonRgn(nullptr, 1, ALTERNATE), nullptr);
  EXPECT_TRUE(test::OwnedRegion(CreatePolygonRgn(nullptr, 0, ALTERNATE)).get() != nullptr);
}

TEST(StandinMemory, IsClearedOnRequest) {
  for (int round = 0; round < 2; ++round) {  // the second block is where the first one was, or may be
    const HGLOBAL block = GlobalAlloc(GMEM_ZEROINIT, 64);
    auto* bytes = static_cast<BYTE*>(GlobalLock(block));
    EXPECT_TRUE(std::all_of(bytes, bytes + 64, [](BYTE byte) { return byte == 0; }));
    std::fill(bytes, bytes + 64, BYTE{0xA5});
    GlobalUnlock(block);
    GlobalFree(block);
  }
}

TEST(StandinSurfaces, RefuseUnreadableHeaders) {
  const test::Surface surface(3, 2, true);
  DWORD bits[8] = {};
  constexpr DWORD runLengths = 1;
  for (const BITMAPINFOHEADER& header : {BITMAPINFOHEADER{39, 3, 2, 1, 32, BI_RGB, 0, 0, 0, 0, 0},
                                         {40, 0, 2, 1, 32, BI_RGB, 0, 0, 0, 0, 0},
                                         {40, 3, 2, 1, 31, BI_RGB, 0, 0, 0, 0, 0},
                                         {40, 3, 2, 1, 32, runLengths, 0, 0, 0, 0, 0}}) {
    BITMAPINFO info{header, {}};
    EXPECT_EQ(GetDIBits(surface.context(), surface.bitmap(), 0, 2, bits, &info, DIB_RGB_COLORS), 0);
    EXPECT_EQ(SetDIBitsToDevice(surface.context(), 0, 0, 3, 2, 0, 0, 0, 2, bits, &info, DIB_RGB_COLORS), 0);
  }
}

}  // namespace
