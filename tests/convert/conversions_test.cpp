#include <functional>

#include <gtest/gtest.h>

#include "convert/convert.h"
#include "support/images.h"

/// What all conversions that report their progress have in common, and those of them in which each pixel
/// follows a rule of its own.
namespace {

using test::OwnedDib;
using Convert = CBitmapConverter;
using Palette = std::vector<DWORD>;
using Operation = std::function<BITMAPINFOHEADER*(BITMAPINFOHEADER*, CQorCommonProgress*)>;
/// From a stored pixel to a stored pixel, in plain arithmetic.
using Rule = DWORD (*)(DWORD stored, const Palette& palette);

DWORD entry(DWORD stored, const Palette& palette) { return palette.at(stored) & 0xFFFFFF; }
/// The channels times 8.
DWORD fromWord(DWORD stored, const Palette&) {
  return (stored / 1024 % 32 * 8) << 16 | (stored / 32 % 32 * 8) << 8 | stored % 32 * 8;
}
DWORD withoutOpacity(DWORD stored, const Palette&) { return stored & 0xFFFFFF; }
/// A colour's channels divided by 8.
template <Rule colour>
DWORD word(DWORD stored, const Palette& palette) {
  const DWORD c = colour(stored, palette);
  return (c >> 16 & 255) / 8 * 1024 + (c >> 8 & 255) / 8 * 32 + (c & 255) / 8;
}
/// The bytes 0, red, green, blue.
DWORD reversed(DWORD stored, const Palette&) {
  return (stored >> 16 & 255) << 8 | (stored >> 8 & 255) << 16 | (stored & 255) << 24;
}
/// 0.299 red + 0.587 green + 0.114 blue, truncated. Each product and sum is rounded by itself: volatile keeps
/// them apart even where the processor could fuse them.
DWORD gray(DWORD stored, const Palette&) {
  const volatile double red = (stored >> 16 & 255) * 0.299;
  const volatile double green = (stored >> 8 & 255) * 0.587;
  const volatile double blue = (stored & 255) * 0.114;
  const volatile double first = red + green;
  return static_cast<BYTE>(first + blue);
}
template <int threshold>
DWORD atLeast(DWORD stored, const Palette&) {
  return static_cast<std::int64_t>(stored) >= threshold;
}

template <auto operation, auto argument>
BITMAPINFOHEADER* with(BITMAPINFOHEADER* dib, CQorCommonProgress* progress) {
  return operation(dib, argument, progress);
}
template <int threshold>
constexpr auto blackAndWhite = with<Convert::Convert8BitsGrayDibTo1BitsDib, threshold>;

struct Conversion {
  int from, to;
  Operation convert;
  Rule rule;  ///< null where a pixel alone does not decide: they have tests of their own
  bool upsideDown = false;
};
const Conversion conversions[] = {
    {1, 24, Convert::Convert1BitsTo24Bits, entry},
    {4, 24, Convert::Convert4BitsTo24Bits, entry},
    {8, 24, Convert::Convert8BitsTo24Bits, entry},
    {16, 24, Convert::Convert16BitsTo24Bits, fromWord},
    {32, 24, Convert::Convert32BitsTo24Bits, withoutOpacity},
    {1, 16, Convert::Convert1BitsTo16Bits, word<entry>},
    {4, 16, Convert::Convert4BitsTo16Bits, word<entry>},
    {8, 16, Convert::Convert8BitsTo16Bits, word<entry>},
    {24, 16, Convert::Convert24BitsTo16Bits, word<withoutOpacity>},
    {32, 16, Convert::Convert32BitsTo16Bits, word<withoutOpacity>},
    {24, 32, with<Convert::Convert24BitsTo32Bits, 0>, reversed},
    {24, 32, with<Convert::Convert24BitsTo32Bits, -2>, reversed, true},
    {24, 8, Convert::Convert24BitsDIBTo256GraysDIB, gray},
    {8, 1, blackAndWhite<INT32_MIN>, atLeast<INT32_MIN>},
    {8, 1, blackAndWhite<0>, atLeast<0>},
    {8, 1, blackAndWhite<1>, atLeast<1>},
    {8, 1, blackAndWhite<128>, atLeast<128>},
    {8, 1, blackAndWhite<255>, atLeast<255>},
    {8, 1, blackAndWhite<256>, atLeast<256>},
    {24, 1, with<Convert::ConvertTrueDibTo1BitsDib, 2>, nullptr},
    {24, 4, with<Convert::ConvertTrueDibTo4BitsDib, 2>, nullptr},
    {24, 8, with<Convert::ConvertTrueDibTo8BitsDib, 2>, nullptr},
    {24, 1, Convert::ConvertTrueDibToLowBitsDib, nullptr},
    {1, 4, with<Convert::Convert1BitsDibTo4BitsDib, nullptr>, nullptr},
    {1, 8, with<Convert::Convert1BitsDibTo8BitsDib, nullptr>, nullptr},
    {4, 8, with<Convert::Convert4BitsDibTo8BitsDib, nullptr>, nullptr},
    {8, 4, with<Convert::Convert8BitsDibTo4BitsDib, nullptr>, nullptr},
    {8, 1, with<Convert::Convert8BitsDibTo1BitsDib, nullptr>, nullptr},
    {4, 1, with<Convert::Convert4BitsDibTo1BitsDib, nullptr>, nullptr},
};

template <class Check>
void forEachConversion(Check&& check) {
  for (const Conversion& conversion : conversions) {
    SCOPED_TRACE(testing::Message() << "row " << &conversion - conversions
                                    << " of the table: " << conversion.from << " to " << conversion.to);
    check(conversion);
  }
}

/// The gray ramp for 8 bits, black and white for 1.
Palette resultPalette(int bits) {
  Palette palette(bits <= 8 ? std::size_t{1} << bits : 0);
  for (std::size_t i = 0; i < palette.size(); ++i)
    palette[i] = static_cast<DWORD>(0xFFFFFF / (palette.size() - 1) * i);
  return palette;
}

TEST(EveryConversion, FollowsItsRuleAtEveryWidth) {
  test::Random random(7);
  forEachConversion([&](const Conversion& c) {
    for (const int width : {1, 4, 7, 8, 9, 15, 33, 64, 65, 511, 513, 1031}) {
      if (c.rule == nullptr) break;
      Palette palette(c.from <= 8 ? std::size_t{1} << c.from : 0);
      for (DWORD& colour : palette) colour = static_cast<DWORD>(random());
      const OwnedDib source = test::randomImage(width, 3, c.from, random, palette);
      const std::vector<BYTE> before = test::bytesOf(source);
      const OwnedDib expected = test::image(width, 3, c.to, resultPalette(c.to));
      expected->biClrUsed = 0;
      for (int i = 0; i < 3 * width; ++i) {
        const int x = i % width, y = i / width;
        test::setPixel(expected, x, c.upsideDown ? 2 - y : y, c.rule(test::pixel(source, x, y), palette));
      }
      ASSERT_EQ(test::bytesOf(OwnedDib(c.convert(source.get(), nullptr))), test::bytesOf(expected)) << width;
      if (c.to != 24 && c.to != 16) continue;
      const auto anyDepth = c.to == 24 ? Convert::ConvertDIBTo24Bits : Convert::ConvertDIBTo16Bits;
      ASSERT_EQ(test::bytesOf(OwnedDib(anyDepth(source.get(), nullptr))), test::bytesOf(expected)) << width;
      ASSERT_EQ(test::bytesOf(source), before);
    }
  });
}

TEST(EveryConversion, ReportsEachLineAndGivesNullWhenCancelled) {
  forEachConversion([](const Conversion& c) {
    const OwnedDib source = test::image(5, 3, c.from);
    test::Progress progress;
    EXPECT_EQ(OwnedDib(c.convert(source.get(), &progress))->biBitCount, c.to);
    EXPECT_EQ(progress.fractions, (std::vector<float>{0.33F, 0.66F, 1.0F}));
    for (const int cancelAt : {0, 2}) {  // the last line counts as well
      test::Progress cancelling(cancelAt);
      EXPECT_EQ(c.convert(source.get(), &cancelling), nullptr);
      EXPECT_EQ(cancelling.fractions.size(), static_cast<std::size_t>(cancelAt) + 1);
    }
  });
}

TEST(EveryConversion, IsDoneAtOnceWithAnImageWithoutPixels) {
  forEachConversion([](const Conversion& c) {
    for (const auto& [width, height] : {std::pair{0, INT32_MAX}, {INT32_MAX, 0}}) {
      test::Progress progress;
      const OwnedDib result(c.convert(test::image(width, height, c.from).get(), &progress));
      ASSERT_TRUE(result);
      EXPECT_TRUE(result->biWidth == width && result->biHeight == height && progress.fractions.empty());
    }
  });
}

TEST(EveryConversion, ReadsUnusualBlocksInItsOwnWay) {
  using Pixels = std::vector<DWORD>;
  const auto converted = [](const BITMAPINFOHEADER& header, const std::vector<BYTE>& rest, auto convert) {
    std::vector<BYTE> block(sizeof(header));
    std::memcpy(block.data(), &header, sizeof(header));
    block.insert(block.end(), rest.begin(), rest.end());
    return test::pixelsOf(OwnedDib(convert(reinterpret_cast<BITMAPINFOHEADER*>(block.data()), nullptr)));
  };
  // To 24 bits the palette is read at 40 bytes, to 16 bits at the header's end: 2, 4, 6 and 8, 10, 12 of 31.
  const BITMAPINFOHEADER longer{44, 2, 1, 1, 8, BI_RGB, 0, 0, 0, 2, 0};
  const std::vector<BYTE> rest{0xCC, 0xBB, 0xAA, 0, 0x33, 0x22, 0x11, 0, 0x66, 0x55, 0x44, 0, 0, 1, 0, 0};
  EXPECT_EQ(converted(longer, rest, Convert::Convert8BitsTo24Bits), (Pixels{0xAABBCC, 0x112233}));
  EXPECT_EQ(converted(longer, rest, Convert::Convert8BitsTo16Bits), (Pixels{0x0886, 0x214C}));
  // An index beyond the palette shows the rows, or nothing.
  const BITMAPINFOHEADER oneColour{40, 4, 1, 1, 8, BI_RGB, 0, 0, 0, 1, 0};
  EXPECT_EQ(converted(oneColour, {0x30, 0x20, 0x10, 0, 1, 0, 9, 9}, Convert::Convert8BitsTo24Bits),
            (Pixels{0x090001, 0x102030, 0, 0}));
  // Bit fields are read as 5-5-5 behind their masks: full red of 5-6-5 is 30 of 31.
  const BITMAPINFOHEADER fields{40, 2, 1, 1, 16, BI_BITFIELDS, 0, 0, 0, 0, 0};
  const std::vector<BYTE> masks{0, 0xF8, 0, 0, 0xE0, 7, 0, 0, 0x1F, 0, 0, 0, 0, 0xF8, 0, 0};
  EXPECT_EQ(converted(fields, masks, Convert::ConvertDIBTo24Bits), (Pixels{0xF00000, 0}));
}

TEST(ConversionsFromAnyDepth, CloneTheirOwnInSilence) {
  test::Random random(11);
  for (const int bits : {16, 24}) {
    const OwnedDib own = test::randomImage(5, 4, bits, random);
    own->biClrUsed = 7;
    own->biXPelsPerMeter = 2835;
    test::Progress cancelling(0);
    const auto convert = bits == 24 ? Convert::ConvertDIBTo24Bits : Convert::ConvertDIBTo16Bits;
    EXPECT_EQ(test::bytesOf(OwnedDib(convert(own.get(), &cancelling))), test::bytesOf(own));
    EXPECT_TRUE(cancelling.fractions.empty());
  }
}

/// Shows one bar for all stages, as hosts do.
class Bar : public test::Progress {
 public:
  using Progress::Progress;
  float SetProgress(float fraction) override {
    shown.push_back(ScaledFraction(fraction));
    return Progress::SetProgress(fraction);
  }
  std::vector<float> shown;
};

TEST(ConvertDIBTo256Grays, ReportsTwoHalves) {
  const OwnedDib indexed = test::imageOf(3, 2, 8, {0, 1, 2, 2, 1, 0}, {0xFF0000, 0x00FF00, 0x0000FF});
  const auto shownOf = [](const OwnedDib& source, const std::vector<DWORD>& grays) {
    Bar bar;
    EXPECT_EQ(test::pixelsOf(OwnedDib(Convert::ConvertDIBTo256Grays(source.get(), &bar))), grays);
    return bar.shown;
  };
  EXPECT_EQ(shownOf(indexed, {76, 149, 29, 29, 149, 76}), (std::vector<float>{0.25F, 0.5F, 0.75F, 1.0F}));
  // What has 24 bits already is cloned in the first half, without a word.
  EXPECT_EQ(shownOf(test::image(1, 2, 24), {0, 0}), (std::vector<float>{0.75F, 1.0F}));
  // Both halves are closed after a cancel, too, and without an image.
  for (int cancelAt = 0; cancelAt < 5; ++cancelAt) {
    Bar bar(cancelAt);
    EXPECT_EQ(Convert::ConvertDIBTo256Grays(cancelAt < 4 ? indexed.get() : nullptr, &bar), nullptr);
    EXPECT_EQ(bar.fractions.size(), static_cast<std::size_t>((cancelAt + 1) % 5));
    EXPECT_FLOAT_EQ(bar.ScaledFraction(0.0F), 1.0F);
  }
}

}  // namespace
