#include <cstring>

#include "platform/surface.h"

namespace {

using test::Clipboard;

TEST(LogicalPalettes, GiveBackTheirEntriesAndAreSelectedIntoContexts) {
  const auto owned = test::logicalPalette({0x010203, 0x040506});
  const HPALETTE palette = owned.get();
  EXPECT_EQ(GetPaletteEntries(palette, 0, 0, nullptr), 2U);
  PALETTEENTRY entries[21] = {};
  EXPECT_EQ(GetPaletteEntries(palette, 0, 3, entries), 2U);
  const PALETTEENTRY expected[] = {{1, 2, 3, 0}, {4, 5, 6, 0}, {0, 0, 0, 0}};
  EXPECT_EQ(std::memcmp(entries, expected, sizeof(expected)), 0);
  EXPECT_EQ(GetPaletteEntries(palette, 1, 1, entries), 1U);
  EXPECT_EQ(std::memcmp(entries, expected + 1, sizeof(*expected)), 0);
  EXPECT_EQ(GetPaletteEntries(palette, 2, 1, entries), 0U);
  WORD count = 0;
  EXPECT_EQ(GetObjectW(palette, sizeof(count), &count), 2);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(GetObjectW(palette, 0, nullptr), 2);

  const auto stock = static_cast<HPALETTE>(GetStockObject(DEFAULT_PALETTE));
  ASSERT_EQ(GetPaletteEntries(stock, 0, 21, entries), 20U);
  const PALETTEENTRY sky{0xA6, 0xCA, 0xF0, 0};
  EXPECT_EQ(std::memcmp(&entries[9], &sky, sizeof(sky)), 0);
  const HDC context = GetDC(nullptr);
  EXPECT_EQ(SelectPalette(context, palette, FALSE), stock);
  EXPECT_EQ(RealizePalette(context), 0U);  // true colours need none
  EXPECT_EQ(SelectPalette(context, stock, FALSE), palette);
  EXPECT_EQ(SelectPalette(context, nullptr, FALSE), nullptr);
  EXPECT_EQ(SelectPalette(nullptr, palette, FALSE), nullptr);
  EXPECT_TRUE(ReleaseDC(nullptr, context));
}

TEST(GlobalMemory, KeepsItsSizeAndCountsItsLocks) {
  const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, 1000);
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(GlobalSize(block), 1000U);
  auto* bytes = static_cast<BYTE*>(GlobalLock(block));
  EXPECT_EQ(std::vector<BYTE>(bytes, bytes + 1000), std::vector<BYTE>(1000));
  EXPECT_EQ(GlobalLock(block), bytes);
  EXPECT_TRUE(GlobalUnlock(block));
  EXPECT_FALSE(GlobalUnlock(block));
  EXPECT_FALSE(GlobalUnlock(block));
  EXPECT_EQ(GlobalFree(block), nullptr);
  EXPECT_EQ(GlobalAlloc(GMEM_MOVEABLE, SIZE_MAX), nullptr);
  EXPECT_EQ(GlobalSize(nullptr), 0U);
  EXPECT_EQ(GlobalLock(nullptr), nullptr);
}

TEST_F(Clipboard, HasToBeOpenForAllButAQuestion) {
  const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 4);
  EXPECT_EQ(SetClipboardData(CF_DIB, block), nullptr);
  EXPECT_FALSE(EmptyClipboard());
  EXPECT_FALSE(CloseClipboard());
  EXPECT_EQ(EnumClipboardFormats(0), 0U);
  EXPECT_FALSE(IsClipboardFormatAvailable(CF_DIB));
  ASSERT_TRUE(OpenClipboard(nullptr));
  EXPECT_EQ(SetClipboardData(CF_DIB, block), block);
  EXPECT_EQ(GetClipboardData(CF_DIB), block);
  EXPECT_TRUE(CloseClipboard());
  EXPECT_EQ(GetClipboardData(CF_DIB), nullptr);
  EXPECT_TRUE(IsClipboardFormatAvailable(CF_DIB));
}

}  // namespace
