#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "dib32/placed.h"

namespace {

using dibkit::OwnedDib;
using test::Layer;
using Dib = BITMAPINFOHEADER*;

bool isVisible(DWORD pixel) { return pixel >> 24 != 0; }

/// Two placed images, the second one also used for its rectangle alone.
struct Scene {
  Layer first, second;
  BYTE reduction, secondReduction;

  RECT box() {
    const RECT a = first.box(), b = second.box();
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom)};
  }
};

// What each merge shows at a point of the box around both.

DWORD combined(Scene& s, int x, int y) {
  const DWORD below = s.first.pixelAt(x, y), above = s.second.pixelAt(x, y);
  const auto lowered = [](DWORD pixel, int by) { return std::max(static_cast<int>(pixel >> 24) - by, 0); };
  const DWORD left = (below & test::colourBits) | static_cast<DWORD>(lowered(below, s.reduction)) << 24;
  return s.second.covers(x, y) ? test::over(left, above, lowered(above, s.secondReduction)) : left;
}
/// Colours without alpha. A visible pixel in a row sets the row's byte 12, counted in memory: the blue of its
/// fourth pixel, or in a narrow row of a pixel further up.
DWORD coloursWithMark(Scene& s, int x, int y) {
  const DWORD above = s.second.pixelAt(x, y), below = s.first.pixelAt(x, y);
  const DWORD colour = isVisible(above) ? above : isVisible(below) ? below : 0;
  const RECT box = s.box();
  const int fromFourth = x - box.left - 3, width = box.right - box.left;
  bool marked = false;
  for (int i = box.left; i < box.right && fromFourth % width == 0; ++i) {
    const int row = y - fromFourth / width;
    marked = marked || isVisible(s.first.pixelAt(i, row)) || isVisible(s.second.pixelAt(i, row));
  }
  return (colour & test::colourBits) | (marked ? 0xFF : 0);
}
DWORD secondWhereVisible(Scene& s, int x, int y) {
  return isVisible(s.second.pixelAt(x, y)) ? s.second.pixelAt(x, y) : s.first.pixelAt(x, y);
}
DWORD firstWithHole(Scene& s, int x, int y) { return s.second.covers(x, y) ? 0 : s.first.pixelAt(x, y); }
/// The image's transparent pixels are kept: the colour shows around it only.
DWORD firstOverColour(Scene& s, int x, int y) {
  return s.first.covers(x, y) ? s.first.pixelAt(x, y) : s.second.covers(x, y) ? 0xFF102030 : 0;
}

struct Merge {
  const char* name;
  DWORD (*rule)(Scene& s, int x, int y);
  BOOL (*call)(Scene& s, Dib* out, POINT* origin);
  BOOL mergesNothing;  ///< makes an image of 0 x 0 from two of them
};

const Merge merges[] = {
    {"CombineDIBs", combined,
     [](Scene& s, Dib* out, POINT* origin) {
       return CDIB32::CombineDIBs(s.first.dib(), s.first.at, s.reduction, s.second.dib(), s.second.at,
                                  s.secondReduction, out, origin);
     },
     TRUE},
    {"Merge32DIBs", coloursWithMark,
     [](Scene& s, Dib* out, POINT* origin) {
       return CDIB32::Merge32DIBs(s.first.dib(), s.first.at, s.second.dib(), s.second.at, out, origin);
     },
     TRUE},
    {"Merge32BitsDIB, two images", secondWhereVisible,
     [](Scene& s, Dib* out, POINT* origin) {
       return CDIB32::Merge32BitsDIB(s.first.dib(), s.first.at, s.second.dib(), s.second.at, out, origin);
     },
     FALSE},
    {"Merge32BitsDIB, a rectangle", firstWithHole,
     [](Scene& s, Dib* out, POINT* origin) {
       return CDIB32::Merge32BitsDIB(s.first.dib(), s.first.at, s.second.box(), out, origin);
     },
     FALSE},
    {"Merge32BitsDIB, a coloured rectangle", firstOverColour,
     [](Scene& s, Dib* out, POINT* origin) {
       return CDIB32::Merge32BitsDIB(s.first.dib(), s.first.at, RGB(16, 32, 48), s.second.box(), out, origin);
     },
     FALSE},
};

TEST(Merging, FollowsItsRuleForAnyPlacement) {
  test::Random random(11);
  for (int round = 0; round < 600; ++round) {
    const Merge& merge = merges[round % std::size(merges)];
    // Far enough apart, now and then, for a gap between them, or in a narrow box.
    const bool narrow = round % 2 == 0;
    const auto layer = [&] {
      return narrow ? Layer(test::randomImage(1 + test::below(random, 2), 1 + test::below(random, 6), 32,
                                              random),
                            test::randomPoint(random, 1))
                    : Layer(random, 32, 30);
    };
    Scene scene{layer(), layer(), test::byteOf(round % 3 == 0 ? 0 : test::below(random, 256)),
                test::byteOf(round % 4 == 0 ? 255 : test::below(random, 256))};
    const RECT box = scene.box();
    SCOPED_TRACE(testing::Message() << merge.name << ", round " << round);
    const std::vector<BYTE> before = scene.first.block();
    Dib out = nullptr;
    POINT origin{};
    ASSERT_TRUE(merge.call(scene, &out, &origin));
    const OwnedDib result(out);
    ASSERT_EQ(std::pair(origin.x, origin.y), std::pair(box.left, box.top));
    const OwnedDib expected = test::drawn(box.right - box.left, box.bottom - box.top, 32, [&](int x, int y) {
      return merge.rule(scene, box.left + x, box.top + y);
    });
    ASSERT_TRUE(test::bytesOf(result) == test::bytesOf(expected));
    ASSERT_TRUE(scene.first.block() == before);
  }
}

TEST(Merging, MakesSomethingOrNothingOfTwoEmptyImages) {
  for (const Merge& merge : merges) {
    const OwnedDib empty = test::image(0, 0, 32);
    Scene scene{Layer(empty, {4, 5}), Layer(empty, {4, 5}), 0, 0};
    Dib out = nullptr;
    POINT origin{-7, -7};
    EXPECT_EQ(merge.call(scene, &out, &origin), merge.mergesNothing) << merge.name;
    EXPECT_EQ(OwnedDib(out) != nullptr, merge.mergesNothing == TRUE) << merge.name;
    EXPECT_NE(origin.x, -7) << merge.name;
  }
}

}  // namespace
