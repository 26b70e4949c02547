#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "dib32/literal_rules.h"
#include "dib32/placed.h"

namespace {

using dibkit::OwnedDib;
using test::byteOf;
using test::combine;
using test::evenMixAt;
using test::Guarded;
using test::reducedAlpha;
using test::shade;
using Dib = BITMAPINFOHEADER*;

// The rules as they are defined, for one pixel d under s, with the operation's byte and a mask byte.

void plain(BYTE* d, BYTE* s, int reduction, int) {
  const unsigned as = static_cast<unsigned>(reducedAlpha(s, reduction));
  if (as == 0) return;
  const unsigned ad = d[3];
  const unsigned sum = ((ad + as) * 256 - ad * as) & 0xFFFF;
  for (int i = 0; i < 3; ++i) {
    const int product = static_cast<int>(d[i] * ad);
    d[i] = byteOf((product * 256 + (s[i] * 256 - product) * static_cast<int>(as)) / static_cast<int>(sum));
  }
  d[3] = byteOf(static_cast<int>(sum >> 8));
}

void linearMix(BYTE* d, BYTE* s, int reduction, int) {
  const int a = reducedAlpha(s, reduction);
  for (int i = 0; i < 4 && a > 0; ++i) d[i] = a == 255 ? s[i] : byteOf((d[i] * (256 - a) + s[i] * a) >> 8);
}

void evenMix(BYTE* d, BYTE* s, int transparency, int) {
  evenMixAt(d, s, transparency == 255 ? 0 : transparency == 0 ? s[3] : s[3] * (255 - transparency) / 255);
}

void maskedEvenMix(BYTE* d, BYTE* s, int transparency, int mask) {
  int a = transparency == 255 ? 0 : transparency == 0 ? s[3] : s[3] * (255 - transparency) / 255;
  if (mask < 255) a = a * mask / 255;
  if (mask != 0) evenMixAt(d, s, a);
}

void alphaPlain(BYTE* d, BYTE* s, int reduction, int) {
  const int as = reducedAlpha(s, reduction);
  if (as > 0) d[3] = byteOf((((as + d[3]) * 256) - d[3] * as) >> 8);
}

void erase(BYTE* d, BYTE* s, int strength, int) {
  const int e = strength == 255 ? s[3] : s[3] * strength / 255;
  d[3] = byteOf(d[3] > e ? d[3] - e : 0);
}

void maskedErase(BYTE* d, BYTE* s, int strength, int mask) {
  if (mask != 0) erase(d, s, strength, mask);
}

void copyBlock(BYTE* d, BYTE* s, int reduction, int) {
  const int alpha = reducedAlpha(s, reduction);
  for (int i = 0; i < 3; ++i) d[i] = s[i];
  d[3] = byteOf(alpha);
}

void transform(BYTE* d, BYTE* s, int, int) { std::memmove(d, s, 4); }
void transformAlpha(BYTE* d, BYTE* s, int, int) { d[3] = s[3]; }

struct Arguments {
  Dib destination;
  POINT destinationOrigin;
  Dib source;
  POINT sourceOrigin;
  BYTE byte;
  Dib mask;
  CPoint maskOrigin;
};

struct Operation {
  const char* name;
  void (*call)(const Arguments&);
  void (*rule)(BYTE* d, BYTE* s, int byte, int mask);
  bool masked = false;
};

template <auto Function>
void callBlock(const Arguments& a) {
  Function(a.destination, a.destinationOrigin, a.source, a.sourceOrigin, a.byte);
}
template <auto Function>
void callCopy(const Arguments& a) {
  Function(a.destination, a.destinationOrigin, a.source, a.sourceOrigin);
}
template <auto Function>
void callMasked(const Arguments& a) {
  Function(a.destination, a.destinationOrigin, a.source, a.sourceOrigin, a.byte, a.mask, a.maskOrigin);
}
void callErase(const Arguments& a) {
  CDIB32::Erase32BitsBlock(a.destination, a.destinationOrigin, a.source, a.sourceOrigin, a.byte);
}
void callMaskedErase(const Arguments& a) {
  CDIB32::Erase32BitsBlock(a.destination, a.destinationOrigin, a.source, a.sourceOrigin, a.byte, a.mask,
                           a.maskOrigin);
}

const Operation operations[] = {
    {"CombineBlock", callBlock<CDIB32::CombineBlock>, combine},
    {"BitBlt32DIBPlain", callBlock<CDIB32::BitBlt32DIBPlain>, plain},
    {"BitBlt32DIBMMX", callBlock<CDIB32::BitBlt32DIBMMX>, linearMix},
    {"BitBlt32DIB", callBlock<CDIB32::BitBlt32DIB>, shade},
    {"Mix32BitsDIBMMX", callBlock<CDIB32::Mix32BitsDIBMMX>, evenMix},
    {"Mix32BitsDIBMMX_Mask", callMasked<CDIB32::Mix32BitsDIBMMX_Mask>, maskedEvenMix, true},
    {"BitBltDIBAlphaChannelPlain", callBlock<CDIB32::BitBltDIBAlphaChannelPlain>, alphaPlain},
    {"Erase32BitsBlock", callErase, erase},
    {"Erase32BitsBlock with mask", callMaskedErase, maskedErase, true},
    {"CopyBlock", callBlock<CDIB32::CopyBlock>, copyBlock},
    {"TransformBlock", callCopy<CDIB32::TransformBlock>, transform},
    {"TransformAlphaChannelBlock", callCopy<CDIB32::TransformAlphaChannelBlock>, transformAlpha},
};

/// Every pixel of the destination in turn, from the top, each row from the left.
void literally(const Operation& operation, Guarded& to, POINT toAt, Guarded& from, POINT fromAt, int byte,
               Guarded& mask, POINT maskAt) {
  for (int y = 0; y < to.dib()->biHeight; ++y) {
    for (int x = 0; x < to.dib()->biWidth; ++x) {
      const int fromX = x + toAt.x - fromAt.x, fromY = y + toAt.y - fromAt.y;
      const int maskX = x + toAt.x - maskAt.x, maskY = y + toAt.y - maskAt.y;
      if (!from.has(fromX, fromY) || (operation.masked && !mask.has(maskX, maskY))) continue;
      operation.rule(to.at(x, y), from.at(fromX, fromY), byte,
                     operation.masked ? *mask.at(maskX, maskY) : 255);
    }
  }
}

constexpr int bytes[] = {0, 0, 1, 100, 128, 254, 255};

TEST(BlockOperations, EqualTheirTwinsForAnyPlacement) {
  test::Random random(7);
  for (int round = 0; round < 1200; ++round) {
    const Operation& operation = operations[round % static_cast<int>(std::size(operations))];
    Guarded to(random, 32), from(random, 32), mask(random, 8);
    const POINT toAt = test::randomPoint(random, 20);
    const POINT fromAt = test::randomPoint(random, 20);
    const POINT maskAt = test::randomPoint(random, 20);
    const int byte = bytes[test::below(random, 7)];
    Guarded expectedTo = to, expectedFrom = from;
    literally(operation, expectedTo, toAt, expectedFrom, fromAt, byte, mask, maskAt);
    operation.call({to.dib(), toAt, from.dib(), fromAt, byteOf(byte), mask.dib(), CPoint(maskAt)});
    ASSERT_EQ(to.block(), expectedTo.block()) << operation.name << ", round " << round;
    ASSERT_EQ(from.block(), expectedFrom.block()) << operation.name << ", round " << round;
  }
}

TEST(BlockOperations, KeepTheOrderFromTheLeftWithinOneImage) {
  test::Random random(8);
  for (int round = 0; round < 1200; ++round) {
    const Operation& operation = operations[round % static_cast<int>(std::size(operations))];
    Guarded image(test::randomImage(90, 3, 32, random));
    Guarded expected = image;
    Guarded mask(test::randomImage(90, 3, 8, random));
    const POINT at = test::randomPoint(random, round % 3 == 0 ? 40 : 3);
    const POINT shift{at.x, test::below(random, 3) - 1};
    const int byte = bytes[test::below(random, 7)];
    literally(operation, expected, {0, 0}, expected, shift, byte, mask, {0, 0});
    operation.call({image.dib(), {0, 0}, image.dib(), shift, byteOf(byte), mask.dib(), CPoint(0, 0)});
    ASSERT_EQ(image.block(), expected.block()) << operation.name << " by " << shift.x << ", " << shift.y;
  }
}

TEST(BlockOperations, EqualTheirFormulaForEveryOpacity) {
  constexpr int levels[] = {0, 1, 2, 17, 51, 84, 85, 100, 127, 128, 170, 200, 240, 253, 254, 255};
  // Columns: 16 x 16 channel values; rows: every source opacity.
  Guarded from(test::image(256, 256, 32)), to = from, mask(test::image(256, 256, 8));
  for (const Operation& operation : operations) {
    for (const auto& [below, byte] : {std::pair{0U, 0}, {1U, 77}, {128U, 0}, {200U, 254}, {255U, 0}}) {
      for (int alpha = 0; alpha < 256; ++alpha) {
        for (int x = 0; x < 256; ++x) {
          const auto s = static_cast<DWORD>(levels[x / 16]), d = static_cast<DWORD>(levels[x % 16]);
          dibkit::Bgra32::put(from.at(x, alpha), 0, static_cast<DWORD>(alpha) << 24 | s << 16 | d << 8 | s);
          dibkit::Bgra32::put(to.at(x, alpha), 0, below << 24 | d << 16 | s << 8 | d);
          *mask.at(x, alpha) = byteOf(levels[(x + alpha) % 16]);
        }
      }
      Guarded expectedTo = to, expectedFrom = from;
      literally(operation, expectedTo, {0, 0}, expectedFrom, {0, 0}, byte, mask, {0, 0});
      operation.call({to.dib(), {0, 0}, from.dib(), {0, 0}, byteOf(byte), mask.dib(), CPoint(0, 0)});
      ASSERT_TRUE(to.block() == expectedTo.block()) << operation.name << ", " << byte << ", onto " << below;
      ASSERT_TRUE(from.block() == expectedFrom.block())
          << operation.name << ", " << byte << ", onto " << below;
    }
  }
}

TEST(BlockOperations, GiveTheBytesWorkedOutByHand) {
  struct Case {
    const char* what;
    void (*call)(const Arguments&);
    int byte;
    DWORD to, from, toAfter, fromAfter;
  };
  const Case cases[] = {
      {"transparent over transparent", callBlock<CDIB32::CombineBlock>, 0, 0x00463C32, 0x001E140A, 0,
       0x001E140A},
      {"white of 128 - 100", callBlock<CDIB32::CombineBlock>, 100, 0xFF000000, 0x80FFFFFF, 0xFF1C1C1C,
       0x80FFFFFF},
      {"onto nothing", callBlock<CDIB32::BitBlt32DIBPlain>, 0, 0, 0x80FF0000, 0x80FF0000, 0x80FF0000},
      {"white by 128 / 256", callBlock<CDIB32::BitBlt32DIBMMX>, 0, 0xFF000000, 0x80FFFFFF, 0xBF7F7F7F,
       0x80FFFFFF},
      // The opacity mixed in is the source's own 255, by a weight of 100: 255 * 100 / 256 = 99.
      {"own opacity", callBlock<CDIB32::BitBlt32DIBMMX>, 155, 0, 0xFF000000, 0x63000000, 0xFF000000},
      // f = 128: (0 * 256 + (255 - 0) * 128) >> 8 = 127 goes into the source.
      {"shade", callBlock<CDIB32::BitBlt32DIB>, 0, 0xFFFFFFFF, 0x80000000, 0xFFFFFFFF, 0x807F7F7F},
      {"not drawn", callBlock<CDIB32::Mix32BitsDIBMMX>, 255, 0x01020305, 0xFFFFFFFF, 0x01020305, 0xFFFFFFFF},
      // a = 254, f = 32639: 255 * 129 / 65536 = 0 and 255 * 32639 / 65536 = 126, doubled 252.
      {"even bytes", callBlock<CDIB32::Mix32BitsDIBMMX>, 0, 0xFFFFFFFF, 0xFEFFFFFF, 0xFCFCFCFC, 0xFEFFFFFF},
      {"no strength", callErase, 0, 0xFF000000, 0xFF000000, 0xFF000000, 0xFF000000},
      {"copied and reduced", callBlock<CDIB32::CopyBlock>, 16, 0xFF112233, 0x10ABCDEF, 0x00ABCDEF,
       0x10ABCDEF},
  };
  for (const Case& expected : cases) {
    SCOPED_TRACE(expected.what);
    const OwnedDib to = test::imageOf(1, 1, 32, {expected.to});
    const OwnedDib from = test::imageOf(1, 1, 32, {expected.from});
    expected.call({to.get(), {3, 4}, from.get(), {3, 4}, byteOf(expected.byte), nullptr, CPoint(0, 0)});
    EXPECT_EQ(test::pixel(to, 0, 0), expected.toAfter) << std::hex << test::pixel(to, 0, 0);
    EXPECT_EQ(test::pixel(from, 0, 0), expected.fromAfter) << std::hex << test::pixel(from, 0, 0);
  }
}

TEST(BitBltDIBAlphaChannelPlain, ComposesTheLastByteOfAnyWholeBytePixel) {
  // 52 under 128: ((128 + 52) * 256 - 52 * 128) / 256 = 154, the top byte of a word, red of three bytes.
  const struct {
    int bitCount;
    DWORD before, after;
  } cases[] = {{8, 52, 154}, {16, 0x3411, 0x9A11}, {24, 0x342211, 0x9A2211}, {32, 0x34332211, 0x9A332211}};
  const OwnedDib source = test::imageOf(2, 1, 32, {0x80000000, 0x00FFFFFF});
  for (const auto& expected : cases) {
    const OwnedDib image = test::imageOf(2, 1, expected.bitCount, {expected.before, expected.before});
    CDIB32::BitBltDIBAlphaChannelPlain(image.get(), {0, 0}, source.get(), {0, 0}, 0);
    EXPECT_EQ(test::pixelsOf(image), (std::vector<DWORD>{expected.after, expected.before}));
  }
  for (const int bitCount : {1, 4}) {
    const OwnedDib image = test::imageOf(2, 1, bitCount, {1, 1});
    CDIB32::BitBltDIBAlphaChannelPlain(image.get(), {0, 0}, source.get(), {0, 0}, 0);
    EXPECT_EQ(test::pixelsOf(image), (std::vector<DWORD>{1, 1}));
  }
}

}  // namespace
