#include <map>

#include <gtest/gtest.h>

#include "convert/convert.h"
#include "convert/palette_finish.h"
#include "support/palettes.h"

namespace {

using Map = test::ColourMap;
using test::distinctColours;
using test::mapOf;
using test::OwnedDib;

DWORD entry(const OwnedDib& dib, std::size_t index) { return test::entriesOf(dib).at(index); }

TEST(Convert24BitsDIBToLowerBitsDIB, ChoosesTheDepthByTheMapsCount) {
  struct Case {
    int colours, depth;
  };
  for (const Case& expected : {Case{0, 1}, {1, 1}, {2, 1}, {3, 4}, {16, 4}, {17, 8}, {256, 8}, {300, 8}}) {
    SCOPED_TRACE(expected.colours);
    const std::vector<DWORD> colours = distinctColours(expected.colours);
    Map map = mapOf(colours);
    std::vector<DWORD> pixels(colours.begin(), colours.end());
    pixels.push_back(0xABCDEF);  // missing
    const int width = static_cast<int>(pixels.size());
    const OwnedDib result(Convert24BitsDIBToLowerBitsDIB(test::imageOf(width, 1, 24, pixels).get(), map));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->biBitCount, expected.depth);
    EXPECT_EQ(result->biClrUsed, static_cast<DWORD>(expected.colours));
    for (int i = 0; i < expected.colours; ++i) {
      EXPECT_EQ(entry(result, static_cast<std::size_t>(i)), colours[static_cast<std::size_t>(i)]);
      EXPECT_EQ(test::pixel(result, i, 0), static_cast<DWORD>(i % 256));
    }
    EXPECT_EQ(test::pixel(result, width - 1, 0), 0U);
    EXPECT_EQ(map.GetCount(), expected.colours);
  }
}

TEST(Convert24BitsDIBToLowerBitsDIB, IgnoresTheReservedByteInThePaletteAndNeverFindsSuchAKey) {
  Map map = mapOf({0x01112233, 0x112233, 0xFF445566});
  const OwnedDib result(
      Convert24BitsDIBToLowerBitsDIB(test::imageOf(2, 1, 24, {0x112233, 0x445566}).get(), map));
  EXPECT_EQ(entry(result, 0), 0x112233U);
  EXPECT_EQ(entry(result, 2), 0x445566U);
  EXPECT_EQ(test::pixelsOf(result.get()), (std::vector<DWORD>{1, 0}));
}

TEST(Convert24BitsDIBToLowerBitsDIB, DropsWhatLiesOutsideTheBlock) {
  // Two colours numbered 1 and 3 in a block of 40 + 8 + 4 bytes: entry 3 would lie just past its end; the
  // pixel keeps that its index is not 0.
  Map map;
  DWORD key = 0xFFFFFF;
  int value = 3;
  map.SetAt(key, value);
  key = 0x808080;
  value = 1;
  map.SetAt(key, value);
  const OwnedDib result(
      Convert24BitsDIBToLowerBitsDIB(test::imageOf(3, 1, 24, {0xFFFFFF, 0, 0x808080}).get(), map));
  EXPECT_EQ(entry(result, 1), 0x808080U);
  EXPECT_EQ(test::pixelsOf(result.get()), (std::vector<DWORD>{1, 0, 1}));

  for (int wild : {-1, -1000000, 1 << 30}) {
    key = 0x123456;
    map.SetAt(key, wild);
    EXPECT_TRUE(OwnedDib(Convert24BitsDIBToLowerBitsDIB(test::image(3, 3, 24).get(), map)));
  }
}

TEST(Convert24BitsDIBToLowerBitsDIB, ReadsRowsOfTwentyFourBitsWhateverTheHeaderSays) {
  const OwnedDib dib = test::imageOf(4, 1, 24, {0xFF, 0xFF00, 0xFF0000, 0xFF});
  std::vector<BYTE> block = test::bytesOf(dib);
  block.resize(block.size() + 4);  // rows of 16 bytes by the header, of 12 as they are read
  auto* source = reinterpret_cast<BITMAPINFOHEADER*>(block.data());
  source->biBitCount = 32;
  Map map = mapOf({0xFF0000, 0xFF00, 0xFF});
  const OwnedDib result(Convert24BitsDIBToLowerBitsDIB(source, map));
  EXPECT_EQ(test::pixelsOf(result.get()), (std::vector<DWORD>{2, 1, 0, 2}));
  dib->biBitCount = 8;  // rows too short to be read
  EXPECT_EQ(Convert24BitsDIBToLowerBitsDIB(dib.get(), map), nullptr);
  EXPECT_EQ(Convert24BitsDIBToLowerBitsDIB(nullptr, map), nullptr);
}

/// The finish as it is told: every noted colour into a map in order, then the exported conversion.
OwnedDib plainFinish(OwnedDib work, const std::vector<bool>& noted) {
  Map map;
  std::map<DWORD, int> seen;
  const std::vector<DWORD> pixels = test::pixelsOf(work.get());
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    if (noted[i]) seen.emplace(pixels[i], static_cast<int>(seen.size()));
  }
  if (seen.size() > 256) return work;
  if (seen.empty()) seen.emplace(0, 0);
  for (auto [key, value] : seen) {
    DWORD colour = key;
    map.SetAt(colour, value);
  }
  return OwnedDib(Convert24BitsDIBToLowerBitsDIB(work.get(), map));
}

TEST(FrameColours, FinishLikeTheMapThatTheyStandFor) {
  test::Random random(21);
  for (int round = 0; round < 400; ++round) {
    const int width = 1 + test::below(random, 80);
    const int height = 1 + test::below(random, 12);
    const int colourCount = 1 + test::below(random, round % 2 != 0 ? 20 : 300);
    const std::vector<DWORD> colours = distinctColours(colourCount);
    OwnedDib work = test::image(width, height, 24);
    std::vector<bool> noted(static_cast<std::size_t>(width * height));
    dibkit::FrameColours frame;
    const int leaveOut = test::below(random, 4);  // 3: every pixel, which gets black
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width;) {
        const int end = std::min(width, x + 1 + test::below(random, 30));
        if (test::below(random, 3) >= leaveOut) {
          const DWORD flat = colours[static_cast<std::size_t>(test::below(random, colourCount))];
          for (int i = x; i < end; ++i) {
            const DWORD any = colours[static_cast<std::size_t>(test::below(random, colourCount))];
            test::setPixel(work, i, y, end - x > 12 ? flat : any);
            noted[static_cast<std::size_t>(y * width + i)] = true;
          }
          frame.note(test::rowOf(work.get(), y), x, end);
        }
        x = end;
      }
    }
    const OwnedDib copy(CBitmapCreator::Clone(work.get()));
    const OwnedDib expected = plainFinish(OwnedDib(CBitmapCreator::Clone(copy.get())), noted);
    const OwnedDib finished = frame.finish(std::move(work));
    ASSERT_EQ(test::bytesOf(finished), test::bytesOf(expected)) << round;
  }
}

TEST(FrameColours, HoldExactlyTwoHundredFiftySix) {
  for (const int count : {256, 257}) {
    OwnedDib work = test::imageOf(count, 1, 24, distinctColours(count));
    dibkit::FrameColours colours;
    colours.note(test::rowOf(work.get(), 0), 0, count);
    EXPECT_EQ(colours.overflowed(), count == 257);
    EXPECT_EQ(colours.finish(std::move(work))->biBitCount, count == 257 ? 24 : 8);
  }
}

TEST(FrameColours, GiveNothingWithoutAnImage) { EXPECT_FALSE(dibkit::FrameColours().finish(nullptr)); }

}  // namespace
