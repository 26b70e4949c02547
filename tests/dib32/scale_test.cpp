#include <functional>

#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "dib32/literal_rules.h"
#include "dib32/placed.h"

namespace {

using dibkit::OwnedDib;
using test::Guarded;
using test::imageOf;
using test::pixelsOf;
using Dib = BITMAPINFOHEADER*;
using Pixels = std::vector<DWORD>;

void evenMix(BYTE* d, BYTE* s, int reduction) { test::evenMixAt(d, s, test::reducedAlpha(s, reduction)); }
void shade(BYTE* d, BYTE* s, int reduction) { test::shade(d, s, reduction); }

/// Told the destination's own pixel and the source pixel that it takes, in the order of drawing.
using Visit = std::function<void(int x, int y, int sourceX, int sourceY)>;

int edge(int position, DWORD scale) {
  const int value = static_cast<int>(static_cast<unsigned>(position) * scale);
  int quotient = value / 32768;
  if ((static_cast<unsigned>(value) & 0x7FFFU) >= 0x4000U) ++quotient;
  return quotient;
}

/// The source position for each of `count` destination positions from 0, with quotient and remainder carried.
std::vector<int> carried(int count, DWORD scale, int origin, int size) {
  std::vector<int> positions;
  std::int64_t quotient = 0;
  std::int64_t remainder = 0;
  for (int i = 0; i < count; ++i) {
    const std::int64_t rounded = remainder > scale / 2 ? quotient + 1 : quotient;
    positions.push_back(static_cast<int>(std::clamp<std::int64_t>(rounded - origin, 0, size - 1)));
    quotient += 32768 / scale;
    remainder += 32768 % scale;
    if (remainder >= scale) {
      ++quotient;
      remainder -= scale;
    }
  }
  return positions;
}

void literalStretch(Dib to, Dib from, POINT origin, DWORD scale, const Visit& visit) {
  const int left = std::max(edge(origin.x, scale), 0);
  const int top = std::max(edge(origin.y, scale), 0);
  const int right = std::min<int>(edge(origin.x + from->biWidth, scale), to->biWidth);
  const int bottom = std::min<int>(edge(origin.y + from->biHeight, scale), to->biHeight);
  const std::vector<int> columns = carried(to->biWidth, scale, origin.x, from->biWidth);
  const std::vector<int> rows = carried(to->biHeight, scale, origin.y, from->biHeight);
  for (int y = top; y < bottom; ++y) {
    for (int x = left; x < right; ++x) {
      visit(x, y, columns[static_cast<std::size_t>(x)], rows[static_cast<std::size_t>(y)]);
    }
  }
}

void literalZoomIn(Dib to, POINT toAt, Dib from, POINT fromAt, int f, const Visit& visit) {
  for (int y = toAt.y; y < toAt.y + to->biHeight; ++y) {
    for (int x = toAt.x; x < toAt.x + to->biWidth; ++x) {
      const int dx = x - fromAt.x * f;
      const int dy = y - fromAt.y * f;
      if (dx < 0 || dy < 0 || dx >= from->biWidth * f || dy >= from->biHeight * f) continue;
      visit(x - toAt.x, y - toAt.y, dx / f, dy / f);
    }
  }
}

void literalZoomOut(Dib to, POINT toAt, Dib from, POINT fromAt, int f, bool sizeAsEdge, const Visit& visit) {
  for (int y = toAt.y; y < toAt.y + to->biHeight; ++y) {
    for (int x = toAt.x; x < toAt.x + to->biWidth; ++x) {
      if (sizeAsEdge && (x >= to->biWidth || y >= to->biHeight)) continue;
      if (x < fromAt.x / f || x >= (fromAt.x + from->biWidth) / f) continue;
      if (y < fromAt.y / f || y >= (fromAt.y + from->biHeight) / f) continue;
      visit(x - toAt.x, y - toAt.y, (x - fromAt.x / f) * f, (y - fromAt.y / f) * f);
    }
  }
}

struct Arguments {
  Dib to;
  POINT toAt;
  Dib from;
  POINT fromAt;
  int factor;
  DWORD scale;
  BYTE reduction;
};

struct Operation {
  const char* name;
  void (*call)(const Arguments&);
  void (*visit)(const Arguments&, const Visit&);
  void (*rule)(BYTE* d, BYTE* s, int reduction);
};

using Stretch = void (*)(Dib, Dib, const POINT&, DWORD, BYTE);
template <Stretch function>
void callStretch(const Arguments& a) {
  function(a.to, a.from, a.fromAt, a.scale, a.reduction);
}
template <auto function>
void callZoom(const Arguments& a) {
  function(a.to, a.toAt, a.from, a.fromAt, a.factor, a.reduction);
}
void visitStretch(const Arguments& a, const Visit& visit) {
  literalStretch(a.to, a.from, a.fromAt, a.scale, visit);
}
void visitZoomIn(const Arguments& a, const Visit& visit) {
  literalZoomIn(a.to, a.toAt, a.from, a.fromAt, a.factor, visit);
}
template <bool sizeAsEdge>
void visitZoomOut(const Arguments& a, const Visit& visit) {
  literalZoomOut(a.to, a.toAt, a.from, a.fromAt, a.factor, sizeAsEdge, visit);
}

const Operation operations[] = {
    {"Stretch32DIB", callStretch<CDIB32::Stretch32DIB>, visitStretch, shade},
    {"Stretch32DIBMMX", callStretch<CDIB32::Stretch32DIBMMX>, visitStretch, evenMix},
    {"ZoomIn32DIB", callZoom<CDIB32::ZoomIn32DIB>, visitZoomIn, shade},
    {"ZoomIn32DIBMMX", callZoom<CDIB32::ZoomIn32DIBMMX>, visitZoomIn, evenMix},
    {"ZoomOut32DIB", callZoom<CDIB32::ZoomOut32DIB>, visitZoomOut<true>, shade},
    {"ZoomOut32DIBMMX", callZoom<CDIB32::ZoomOut32DIBMMX>, visitZoomOut<false>, evenMix},
};

constexpr DWORD scales[] = {1,     777,   8192,  16384, 20000, 30000,      32767,      32768,
                            32769, 40000, 49152, 65536, 98304, 0x40000000, 0x80000001, 0xFFFFFFFF};

/// Makes the opacities of an image 0 or 255.
void makeOpaqueOrNot(Guarded& image) {
  for (int y = 0; y < image.dib()->biHeight; ++y) {
    for (int x = 0; x < image.dib()->biWidth; ++x) image.at(x, y)[3] = image.at(x, y)[3] > 99 ? 255 : 0;
  }
}

void expectTwin(const Operation& operation, const Arguments& arguments, Guarded& to, Guarded& from) {
  Guarded expectedTo = to;
  Guarded expectedFrom = from;
  const bool oneImage = &to == &from;
  Guarded& twinFrom = oneImage ? expectedTo : expectedFrom;
  operation.visit(arguments, [&](int x, int y, int sx, int sy) {
    operation.rule(expectedTo.at(x, y), twinFrom.at(sx, sy), arguments.reduction);
  });
  operation.call(arguments);
  ASSERT_EQ(to.block(), expectedTo.block());
  ASSERT_EQ(from.block(), twinFrom.block());
}

TEST(Scaling, EqualsItsTwinForAnyPlacement) {
  test::Random random(21);
  for (int round = 0; round < 1600; ++round) {
    const Operation& operation = operations[round % static_cast<int>(std::size(operations))];
    Guarded to(random, 32), other(random, 32);
    // Now and then within one image, which reads what it has drawn.
    Guarded& from = round % 7 == 0 ? to : other;
    if (round % 5 == 0) makeOpaqueOrNot(from);
    const DWORD scale = scales[test::below(random, static_cast<int>(std::size(scales)))];
    const Arguments arguments{to.dib(),
                              test::randomPoint(random, 15),
                              from.dib(),
                              test::randomPoint(random, 15),
                              1 + test::below(random, 4),
                              scale,
                              test::byteOf(round % 3 == 0 ? test::below(random, 256) : 0)};
    SCOPED_TRACE(testing::Message() << operation.name << ", round " << round << ", scale " << scale);
    expectTwin(operation, arguments, to, from);
    if (HasFatalFailure()) return;
  }
}

TEST(Stretch32DIB, RoundsAndWrapsOnItsOwnTerms) {
  Pixels numbered;
  for (DWORD i = 0; i < 9; ++i) numbered.push_back(0xFF000000 | i);
  const struct {
    int height;
    LONG at;
    DWORD scale;
    Pixels drawn;
  } cases[] = {
      // Twice the size: line 1 lies at 0.5 and takes line 0, line 3 at 1.5 and takes line 1.
      {2, 0, 65536, {0xFF000000, 0xFF000000, 0xFF000001, 0xFF000001}},
      {2, 1, 32768, {0, 0xFF000000, 0xFF000001, 0}},
      // A quarter from -1 on: the upper edge -0.25 has the low bits 24576 and becomes 1, the lower one is
      // (9 - 1) / 4 = 2, and line 1 takes line 4 - (-1) = 5.
      {9, -1, 8192, {0, 0xFF000005, 0, 0}},
      // 32768 times: 4 lines end at 2^32 / 2^15, which is 0 after wrapping, and 5 end at 32768.
      {4, 0, 0x40000000, Pixels(4, 0)},
      {5, 0, 0x40000000, Pixels(4, 0xFF000000)},
  };
  for (const auto& expected : cases) {
    // As wide as high, so that a part of it is left in both directions.
    Pixels pixels;
    for (int i = 0; i < expected.height * 9; ++i) pixels.push_back(numbered[static_cast<std::size_t>(i) / 9]);
    const OwnedDib source = imageOf(9, expected.height, 32, pixels);
    const OwnedDib to = test::image(2, 4, 32);
    const OwnedDib mixed = test::image(2, 4, 32);
    CDIB32::Stretch32DIB(to.get(), source.get(), {0, expected.at}, expected.scale);
    CDIB32::Stretch32DIBMMX(mixed.get(), source.get(), {0, expected.at}, expected.scale);
    EXPECT_EQ(pixelsOf(mixed), pixelsOf(to));
    for (int y = 0; y < 4; ++y) {
      EXPECT_EQ(test::pixel(to, 0, y), expected.drawn[static_cast<std::size_t>(y)])
          << expected.height << " by " << expected.scale << ", line " << y;
    }
  }
}

TEST(Draw8Bits, EqualsItsTwins) {
  test::Random random(23);
  std::vector<DWORD> palette;
  for (int i = 0; i < 256; ++i) palette.push_back(static_cast<DWORD>(random()));
  for (int round = 0; round < 600; ++round) {
    const int width = 1 + test::below(random, 40);
    const int height = 1 + test::below(random, 40);
    const OwnedDib source = test::randomImage(width, height, 8, random, palette);
    // Now and then none, or one of another size.
    const bool other = round % 4 == 1;
    const OwnedDib mask = round % 4 == 0
                              ? nullptr
                              : test::randomImage(other ? 1 + test::below(random, 40) : width,
                                                  other ? 1 + test::below(random, 40) : height, 1, random);
    Guarded to(random, 32);
    Guarded expected = to;
    const POINT toAt = test::randomPoint(random, 15);
    const POINT fromAt = test::randomPoint(random, 15);
    const int factor = 1 + test::below(random, 4);
    const auto draw = [&](int x, int y, int sx, int sy) {
      if (mask && sx < mask->biWidth && sy < mask->biHeight && test::pixel(mask, sx, sy) != 0) return;
      std::memcpy(expected.at(x, y), &palette[test::pixel(source, sx, sy)], 3);
    };
    switch (round % 3) {
      case 0:
        literalZoomIn(to.dib(), toAt, source.get(), fromAt, 1, draw);
        CDIB32::BitBlt8BitsDIB(to.dib(), toAt, source.get(), mask.get(), fromAt);
        break;
      case 1:
        literalZoomIn(to.dib(), toAt, source.get(), fromAt, factor, draw);
        CDIB32::ZoomIn8BitsDIB(to.dib(), toAt, source.get(), mask.get(), fromAt, factor);
        break;
      default:
        literalZoomOut(to.dib(), toAt, source.get(), fromAt, factor, false, draw);
        CDIB32::ZoomOut8BitsDIB(to.dib(), toAt, source.get(), mask.get(), fromAt, factor);
        break;
    }
    ASSERT_EQ(to.block(), expected.block()) << "round " << round;
  }
}

}  // namespace
