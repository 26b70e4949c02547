#include <gtest/gtest.h>

#include "gifmask/gifmask.h"
#include "plain.h"

namespace {

using dibkit::OwnedDib;
using test::Shot;

struct Growth {
  int bitCount, colours;  ///< of the frame and its palette
  bool hasFill;           ///< its last two entries are the fill colour
  int newBitCount;
  DWORD newColours;  ///< biClrUsed of the result
};

TEST(InflateDibAndOutputDIBStream, GrowThePaletteByOneColour) {
  const Growth cases[] = {
      {1, 2, true, 1, 2},     {1, 2, false, 4, 3},    {1, 1, false, 1, 2},  {4, 3, false, 4, 4},
      {4, 16, false, 8, 17},  {4, 16, true, 4, 16},   {8, 9, false, 8, 10}, {8, 255, false, 8, 256},
      {8, 256, true, 8, 256}, {8, 256, false, 24, 0},
  };
  for (const Growth& growth : cases) {
    SCOPED_TRACE(testing::Message() << growth.colours << " colours at " << growth.bitCount);
    std::vector<DWORD> palette;
    for (int i = 0; i < growth.colours; ++i)
      palette.push_back(0x77000000U | static_cast<DWORD>(i) * 0x010203);
    if (growth.hasFill) palette.back() = palette[palette.size() - 2] = 0x77332211;
    const OwnedDib frame = test::imageOf(2, 1, growth.bitCount, {0, 0}, palette);
    const OwnedDib mask = test::imageOf(2, 1, 1, {0, 1});
    const OwnedDib inflated(InflateDib(frame.get(), mask.get(), 0x99112233, 0, 0, 0, 0));
    const OwnedDib output(CMaskedBitmapTransform::OutputDIBStream(frame.get(), mask.get(), 0x99112233));
    ASSERT_TRUE(inflated);
    EXPECT_TRUE(test::same(inflated, output));
    EXPECT_EQ(inflated->biBitCount, growth.newBitCount);
    EXPECT_EQ(inflated->biClrUsed, growth.newColours);
    EXPECT_EQ(test::colourAt(inflated, 0, 0), palette[0] & 0xFFFFFF);
    EXPECT_EQ(test::colourAt(inflated, 1, 0), 0x332211U);
    if (growth.newBitCount == 24) continue;
    // The first of equal entries serves, with its reserved byte; a new one is the last, with 0 there.
    const DWORD index = test::pixel(inflated, 1, 0);
    EXPECT_EQ(index, static_cast<DWORD>(growth.hasFill ? growth.colours - 2 : growth.colours));
    EXPECT_EQ(reinterpret_cast<RGBQUAD*>(inflated.get() + 1)[index].rgbReserved, growth.hasFill ? 0x77 : 0);
  }
}

TEST(InflateDib, KeepsAFullPaletteThatIsNotCounted) {
  const OwnedDib frame = test::image(3, 3, 8);  // biClrUsed 0: 256 entries, all black
  EXPECT_TRUE(test::same(OwnedDib(InflateDib(frame.get(), nullptr, 0, 0, 0, 0, 0)), frame));
}

TEST(InflateDibAndExpandDIB, PlaceFramesOfEveryDepth) {
  test::Random random(73);
  for (int round = 0; round < 500; ++round) {
    const Shot a(random);
    const int right = test::below(random, 16) - 5, bottom = test::below(random, 10) - 4;
    const auto fill = static_cast<DWORD>(random());
    const OwnedDib inflated(InflateDib(a.dib.get(), a.mask.get(), fill, a.at.x, a.at.y, right, bottom));
    BITMAPINFOHEADER *image = nullptr, *mask = nullptr;
    const int result = CMaskedBitmapTransform::ExpandDIB(a.dib.get(), a.mask.get(), &image, &mask, a.at.x,
                                                         a.at.y, right, bottom);
    const OwnedDib padded(image), paddedMask(mask);
    const RECT area{0, 0, a.box().right + right, a.box().bottom + bottom};
    const bool possible = area.right >= 0 && area.bottom >= 0;
    ASSERT_EQ(inflated != nullptr, possible);
    ASSERT_EQ(result, possible ? 1 : 0);
    if (!possible) continue;
    ASSERT_EQ(inflated->biWidth, area.right);
    ASSERT_EQ(paddedMask->biHeight, area.bottom);
    ASSERT_EQ(padded->biClrUsed, a.dib->biClrUsed);
    const DWORD exact = a.dib->biBitCount == 16 ? 0xF8F8F8 : 0xFFFFFF;
    const DWORD shown = test::swapped(fill) & exact;
    test::forEachPixel(area, [&](int x, int y) {
      const bool own = a.shows(x, y);
      ASSERT_EQ(test::colourAt(inflated, x, y), own ? a.colour(x, y) : shown) << "round " << round;
      // The unused bit of 16 and the fourth byte of 32 bits are 0.
      ASSERT_EQ(
          a.dib->biBitCount > 8 ? test::pixel(inflated, x, y) & (exact == 0xFFFFFF ? 0xFF000000 : 0x8000) : 0,
          0U);
      // Padding keeps stored pixels as they are.
      ASSERT_EQ(test::pixel(padded, x, y), own ? test::pixel(a.dib, x - a.at.x, y - a.at.y) : 0);
      ASSERT_EQ(test::pixel(paddedMask, x, y), own ? 0U : 1U);
    });
  }
}

}  // namespace
