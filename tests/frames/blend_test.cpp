#include <gtest/gtest.h>

#include "plain.h"

namespace {

using dibkit::OwnedDib;
using test::Given;
using test::PlainPicture;
using test::Shot;

DWORD byteBlend(DWORD top, DWORD under, int a) {
  return test::mixed(top, under, [a](int t, int u) { return (t * a + u * 256 - u * (a + 1)) / 255; });
}

enum Operation { byColour, byFrame, merge, byFrame2 };

TEST(Blends, EqualThePlainMixturesOnTheCanvas) {
  test::Random random(61);
  for (int round = 0; round < 1500; ++round) {
    const auto operation = static_cast<Operation>(round % 4);
    // A larger pair now and then, with more colours than a palette holds.
    const int width = round % 5 == 0 ? 60 : 24, height = width / 2;
    const Shot a(random, 0, width, height), b(random, 0, width, height);
    const auto colour = static_cast<DWORD>(random());
    // A word above 256 leaves the low byte of the shifted sum; bytes meet their ends now and then.
    const int opacity = operation == byFrame2 ? test::below(random, round % 3 == 0 ? 65536 : 257)
                                              : std::clamp(test::below(random, 300) - 20, 0, 255);
    const SIZE canvas{test::below(random, 30), test::below(random, 20)};
    const RECT boxA = a.box(), boxB = b.box(), whole{0, 0, canvas.cx, canvas.cy};
    RECT area = boxA;
    if (operation >= merge) UnionRect(&area, &boxA, &boxB);
    if (operation == byFrame2) IntersectRect(&area, &area, &whole);
    PlainPicture expected(area);
    test::forEachPixel(area, [&](int x, int y) {
      const bool below = operation != byColour && b.shows(x, y);
      if (!a.shows(x, y) && operation < merge) return;
      if (!a.shows(x, y)) return below ? expected.put(x, y, b.colour(x, y)) : expected.leaveOut(x, y);
      const DWORD top = a.colour(x, y), under = below ? b.colour(x, y) : test::swapped(colour);
      expected.put(x, y,
                   operation == merge      ? top
                   : operation == byFrame2 ? test::wordBlend(top, under, opacity)
                                           : byteBlend(top, under, opacity));
    });
    BITMAPINFOHEADER *da = a.dib.get(), *ma = a.mask.get(), *db = b.dib.get(), *mb = b.mask.get();
    const auto byte = static_cast<BYTE>(opacity);
    const auto word = static_cast<WORD>(opacity);
    const Given got = operation == byColour ? test::given(AlphaBlendByColor, da, ma, colour, byte)
                      : operation == byFrame
                          ? test::given(AlphaBlendByFrame, da, ma, a.at, db, mb, b.at, colour, byte)
                      : operation == merge
                          ? test::given(MergeFrames, da, ma, a.at, db, mb, b.at)
                          : test::given(AlphaBlendByFrame2, da, ma, a.at, db, mb, b.at, colour, word, canvas);
    ASSERT_TRUE(test::same(got, operation < merge ? expected.finishWith(a.mask) : expected.finish()))
        << "round " << round;
  }
}

}  // namespace
