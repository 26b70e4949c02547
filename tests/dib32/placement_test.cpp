#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "dib32/placed.h"

/// Every operation that draws one placed image on another, against four small rules of its own: which source
/// pixel a pixel of the destination shows, what hides it, its opacity, and what it does to the destination.
namespace {

using namespace test::blends;
using test::byteOf;
using test::Layer;
using test::oneOf;
using Dib = BITMAPINFOHEADER*;

struct Scene {
  Layer to, other, mask;
  bool oneImage = false;  ///< drawn on the destination from the destination
  bool noMask = false;
  int byte = 0, factor = 1;
  DWORD scale = 32768;

  Layer& from() { return oneImage ? to : other; }
};

// Which source pixel the destination's pixel x shows, along one axis; one outside the source is none.

struct Axis {
  LONG to, toSize, from, fromSize;
  int factor;
  DWORD scale;
};
constexpr int none = -1;

int shifted(const Axis& a, int x) { return x + a.to - a.from; }

/// Each source pixel is `factor` pixels long.
int enlarged(const Axis& a, int x) {
  const int offset = x + a.to - a.from * a.factor;
  return offset < 0 ? none : offset / a.factor;
}

/// Every factor-th source pixel; both ends of the source are divided by the factor.
int reduced(const Axis& a, int x) {
  const int begin = a.from / a.factor, end = (a.from + a.fromSize) / a.factor, at = x + a.to;
  return at < begin || at >= end ? none : (at - begin) * a.factor;
}
/// The destination's size is taken for its end.
int reducedBeforeSize(const Axis& a, int x) { return x + a.to < a.toSize ? reduced(a, x) : none; }

/// position scale / 32768 in 32 bits, rounded up by the low 15 bits of the product
int scaledEdge(LONG position, DWORD scale) {
  const int product = static_cast<int>(static_cast<DWORD>(position) * scale);
  return product / 32768 + ((product & 0x7FFF) >= 0x4000 ? 1 : 0);
}
/// The source pixel next to 32768 x / scale, the lower one of two, or the first or last one.
int stretched(const Axis& a, int x) {
  if (x < scaledEdge(a.from, a.scale) || x >= scaledEdge(a.from + a.fromSize, a.scale)) return none;
  const std::int64_t nearest = (65536LL * x + a.scale - 1) / (2LL * a.scale);
  return static_cast<int>(std::clamp<std::int64_t>(nearest - a.from, 0, a.fromSize - 1));
}

// The mask at the destination's (x, y), whose source pixel is (sx, sy); none where it hides that.

int unmasked(Scene&, int, int, int, int) { return 255; }
int maskByte(Scene& s, int x, int y, int, int) {
  const int mx = x + s.to.at.x, my = y + s.to.at.y;
  return s.mask.covers(mx, my) ? static_cast<int>(s.mask.pixelAt(mx, my)) : none;
}
int maskedOrNot(Scene& s, int x, int y, int, int) { return maskByte(s, x, y, 0, 0) > 0 ? 255 : none; }
/// A bit of a mask that is laid out like the source and hides nothing where it has no bits.
int maskBit(Scene& s, int, int, int sx, int sy) {
  const bool has = !s.noMask && sx < s.mask.dib()->biWidth && sy < s.mask.dib()->biHeight;
  return has && test::pixel(s.mask.dib(), sx, sy) != 0 ? none : 255;
}

// The opacity of a source pixel, before the mask.

int lessByte(const BYTE* s, int byte) { return std::max(s[3] - byte, 0); }
int timesByte(const BYTE* s, int byte) { return s[3] * byte / 255; }
int timesRest(const BYTE* s, int byte) { return s[3] * (255 - byte) / 255; }
int own(const BYTE* s, int) { return s[3]; }
int opaque(const BYTE*, int) { return 255; }

// What a source pixel s of opacity a does to the destination's pixel d, beside the blends of
// support/blends.h. The last byte of a pixel is d[3], however many it has.

void uniteAlpha(BYTE* d, BYTE*, int a) { d[3] = byteOf(((a + d[3]) * 256 - d[3] * a) / 256); }
void erase(BYTE* d, BYTE*, int a) { d[3] = byteOf(std::max(d[3] - a, 0)); }
void copyAlpha(BYTE* d, BYTE*, int a) { d[3] = byteOf(a); }
void copy(BYTE* d, BYTE* s, int a) {
  for (int i = 0; i < 3; ++i) d[i] = s[i];
  d[3] = byteOf(a);
}
const std::vector<DWORD> palette =
    test::pixelsOf(test::drawn(256, 1, 32, [](int x, int) { return static_cast<DWORD>(x) * 0x01030507; }));
void copyEntry(BYTE* d, BYTE* s, int) { std::memcpy(d, &palette[*s], 3); }

// The operations with their arguments from the scene.

using Call = void (*)(Scene&);

template <void (*function)(Dib, const POINT&, Dib, const POINT&)>
void placed(Scene& s) {
  function(s.to.dib(), s.to.at, s.from().dib(), s.from().at);
}
template <void (*function)(Dib, const POINT&, Dib, const POINT&, BYTE)>
void blended(Scene& s) {
  function(s.to.dib(), s.to.at, s.from().dib(), s.from().at, byteOf(s.byte));
}
template <void (*function)(Dib, const POINT&, Dib, const POINT&, BYTE, Dib, const CPoint&)>
void masked(Scene& s) {
  function(s.to.dib(), s.to.at, s.from().dib(), s.from().at, byteOf(s.byte), s.mask.dib(), CPoint(s.mask.at));
}
template <void (*function)(Dib, const POINT&, Dib, const POINT&, int, BYTE)>
void zoomed(Scene& s) {
  function(s.to.dib(), s.to.at, s.from().dib(), s.from().at, s.factor, byteOf(s.byte));
}
template <void (*function)(Dib, Dib, const POINT&, DWORD)>
void scaledWhole(Scene& s) {
  function(s.to.dib(), s.from().dib(), s.from().at, s.scale);
}
template <void (*function)(Dib, Dib, const POINT&, DWORD, BYTE)>
void scaled(Scene& s) {
  function(s.to.dib(), s.from().dib(), s.from().at, s.scale, byteOf(s.byte));
}
Dib maskOf(Scene& s) { return s.noMask ? nullptr : s.mask.dib(); }
void placedEntries(Scene& s) {
  CDIB32::BitBlt8BitsDIB(s.to.dib(), s.to.at, s.from().dib(), maskOf(s), s.from().at);
}
template <void (*function)(Dib, const POINT&, Dib, Dib, const POINT&, int)>
void zoomedEntries(Scene& s) {
  function(s.to.dib(), s.to.at, s.from().dib(), maskOf(s), s.from().at, s.factor);
}
struct Operation {
  const char* name;
  Call call;
  int (*sourceOf)(const Axis&, int x);
  int (*maskAt)(Scene&, int x, int y, int sx, int sy);
  int (*opacityOf)(const BYTE* s, int byte);
  void (*draw)(BYTE* d, BYTE* s, int a);
};

const Operation operations[] = {
    {"CombineBlock", blended<CDIB32::CombineBlock>, shifted, unmasked, lessByte, over},
    {"BitBlt32DIBPlain", blended<CDIB32::BitBlt32DIBPlain>, shifted, unmasked, lessByte, stepwiseOver},
    {"BitBlt32DIBMMX", blended<CDIB32::BitBlt32DIBMMX>, shifted, unmasked, lessByte, linearMix},
    {"BitBlt32DIB", blended<CDIB32::BitBlt32DIB>, shifted, unmasked, lessByte, copyOrShade},
    {"Mix32BitsDIBMMX", blended<CDIB32::Mix32BitsDIBMMX>, shifted, unmasked, timesRest, evenMix},
    {"Mix32BitsDIBMMX_Mask", masked<CDIB32::Mix32BitsDIBMMX_Mask>, shifted, maskByte, timesRest, evenMix},
    {"BitBltDIBAlphaChannelPlain", blended<CDIB32::BitBltDIBAlphaChannelPlain>, shifted, unmasked, lessByte,
     uniteAlpha},
    {"Erase32BitsBlock", blended<CDIB32::Erase32BitsBlock>, shifted, unmasked, timesByte, erase},
    {"Erase32BitsBlock, mask", masked<CDIB32::Erase32BitsBlock>, shifted, maskedOrNot, timesByte, erase},
    {"CopyBlock", blended<CDIB32::CopyBlock>, shifted, unmasked, lessByte, copy},
    {"TransformBlock", placed<CDIB32::TransformBlock>, shifted, unmasked, own, copy},
    {"TransformAlphaChannelBlock", placed<CDIB32::TransformAlphaChannelBlock>, shifted, unmasked, own,
     copyAlpha},
    {"Stretch32DIB, whole", scaledWhole<CDIB32::Stretch32DIB>, stretched, unmasked, own, copyOrShade},
    {"Stretch32DIBMMX, whole", scaledWhole<CDIB32::Stretch32DIBMMX>, stretched, unmasked, own, evenMix},
    {"Stretch32DIB", scaled<CDIB32::Stretch32DIB>, stretched, unmasked, lessByte, copyOrShade},
    {"Stretch32DIBMMX", scaled<CDIB32::Stretch32DIBMMX>, stretched, unmasked, lessByte, evenMix},
    {"ZoomIn32DIB", zoomed<CDIB32::ZoomIn32DIB>, enlarged, unmasked, lessByte, copyOrShade},
    {"ZoomIn32DIBMMX", zoomed<CDIB32::ZoomIn32DIBMMX>, enlarged, unmasked, lessByte, evenMix},
    {"ZoomOut32DIB", zoomed<CDIB32::ZoomOut32DIB>, reducedBeforeSize, unmasked, lessByte, copyOrShade},
    {"ZoomOut32DIBMMX", zoomed<CDIB32::ZoomOut32DIBMMX>, reduced, unmasked, lessByte, evenMix},
    {"BitBlt8BitsDIB", placedEntries, shifted, maskBit, opaque, copyEntry},
    {"ZoomIn8BitsDIB", zoomedEntries<CDIB32::ZoomIn8BitsDIB>, enlarged, maskBit, opaque, copyEntry},
    {"ZoomOut8BitsDIB", zoomedEntries<CDIB32::ZoomOut8BitsDIB>, reduced, maskBit, opaque, copyEntry},
};

/// Every pixel of the destination in turn, from the top, each row from the left.
void followRules(const Operation& operation, Scene& s) {
  const RECT to = s.to.box(), from = s.from().box();
  const Axis columns{to.left, to.right - to.left, from.left, from.right - from.left, s.factor, s.scale};
  const Axis rows{to.top, to.bottom - to.top, from.top, from.bottom - from.top, s.factor, s.scale};
  test::forEachPixel({0, 0, columns.toSize, rows.toSize}, [&](int x, int y) {
    const int sx = operation.sourceOf(columns, x), sy = operation.sourceOf(rows, y);
    if (sx < 0 || sx >= columns.fromSize || sy < 0 || sy >= rows.fromSize) return;
    const int mask = operation.maskAt(s, x, y, sx, sy);
    if (mask == none) return;
    BYTE* source = s.from().bytesAt(sx, sy);
    BYTE* d = s.to.bytesAt(x, y) + s.to.dib()->biBitCount / 8 - 4;
    operation.draw(d, source, operation.opacityOf(source, s.byte) * mask / 255);
  });
}

void expectRules(const Operation& operation, Scene& s) {
  Scene expected = s;
  followRules(operation, expected);
  operation.call(s);
  // Compared without gtest's report, which would list thousands of bytes.
  ASSERT_TRUE(s.to.block() == expected.to.block()) << operation.name << ", destination";
  ASSERT_TRUE(s.other.block() == expected.other.block()) << operation.name << ", source";
}

constexpr int bytes[] = {0, 0, 1, 100, 128, 254, 255};
constexpr DWORD scales[] = {1,     777,   8192,  16384, 20000, 30000,      32767,      32768,
                            32769, 40000, 49152, 65536, 98304, 0x40000000, 0x80000001, 0xFFFFFFFF};

TEST(Drawing, FollowsItsRulesForAnyPlacement) {
  test::Random random(7);
  for (int round = 0; round < 4600; ++round) {
    const Operation& operation = operations[round % std::size(operations)];
    const bool entries = operation.draw == copyEntry, oneImage = !entries && round % 3 == 0;
    // In one image often near enough for a row to read what it has written.
    const int reach = oneImage && round % 2 == 0 ? 3 : 20;
    const Layer from(test::randomImage(oneOf(random, test::sizes), oneOf(random, test::sizes),
                                       entries ? 8 : 32, random, entries ? palette : std::vector<DWORD>()),
                     test::randomPoint(random, reach));
    // One operation takes any whole bytes.
    const int depth = operation.draw == uniteAlpha && !oneImage ? oneOf(random, {8, 16, 24, 32}) : 32;
    Scene scene{Layer(random, depth, reach), from, Layer(random, entries ? 1 : 8, 20)};
    scene.oneImage = oneImage;
    scene.noMask = round % 4 == 0;
    scene.byte = oneOf(random, bytes);
    scene.factor = 1 + test::below(random, 4);
    scene.scale = oneOf(random, scales);
    // Now and then without translucent pixels.
    if (!entries && round % 5 == 0)
      test::forEachPixel(test::boundsOf(scene.from().dib()), [&](int x, int y) {
        BYTE& alpha = scene.from().bytesAt(x, y)[3];
        alpha = alpha > round % 100 ? 255 : 0;
      });
    SCOPED_TRACE(testing::Message() << "round " << round << ", scale " << scene.scale);
    expectRules(operation, scene);
    if (HasFatalFailure()) return;
  }
}

TEST(Drawing, IsExactForEveryPairOfAlphas) {
  test::Random random(8);
  for (const Operation& operation : operations) {
    if (operation.sourceOf != shifted || operation.draw == copyEntry) continue;
    for (int round = 2; round > 0; --round) {
      for (const bool swapped : {false, true}) {  // so that each alpha fills whole rows of each image
        const auto picture = [&](bool byRow) {
          Layer layer(test::randomImage(256, 256, 32, random));
          test::forEachPixel({0, 0, 256, 256},
                             [&](int x, int y) { layer.bytesAt(x, y)[3] = byteOf(byRow ? y : x); });
          return layer;
        };
        Scene scene{picture(swapped), picture(!swapped), Layer(test::randomImage(256, 256, 8, random))};
        scene.byte = bytes[round % 7];
        expectRules(operation, scene);
        if (HasFatalFailure()) return;
      }
    }
  }
}

TEST(Opacities, AreExactForEveryPair) {
  for (int a = 0; a < 256; ++a) {
    for (int b = 0; b < 256; ++b) {
      ASSERT_EQ(CDIB32::CalcuOpacity(byteOf(a), byteOf(b)), 255 - (255 - a) * (255 - b) / 255);
    }
  }
  // The sum d below (255 - a) / 255 + s a is undivided for an alpha of 0 and never exceeds 255.
  EXPECT_EQ(CDIB32::CalcuRGBValue(255, 128, 0, 255, 255), 128);
  EXPECT_EQ(CDIB32::CalcuRGBValue(255, 1, 0, 77, 0), 77);
  EXPECT_EQ(CDIB32::CalcuRGBValue(255, 10, 0, 30, 0), 255);
  EXPECT_EQ(CDIB32::CalcuRGBValue(255, 10, 0, 20, 1), 200);
}

}  // namespace
