#include <gtest/gtest.h>

#include "plain.h"

namespace {

using dibkit::OwnedDib;
using test::Given;
using test::PlainPicture;
using test::Shot;

DWORD tinted(DWORD pixel, DWORD fill, int percent) {
  return test::wordBlend(test::swapped(fill), pixel, percent * 256 / 100);
}

/// The parameters of the fills, beside the frame.
struct Fill {
  DWORD target, colour;
  int percent, tolerance;
};

Given everywhere(const OwnedDib& frame, const OwnedDib& mask, const Fill& f) {
  return test::given(ExtFillFrame, frame.get(), mask.get(), f.target, f.colour, f.percent, f.tolerance);
}
Given adjacent(const OwnedDib& frame, const OwnedDib& mask, const Fill& f, POINT seed) {
  return test::given(ExtFillAdjacentArea, frame.get(), mask.get(), f.target, f.colour, f.percent, f.tolerance,
                     seed);
}

TEST(FrameFills, EqualThePlainFillAndTheWalkPixelByPixel) {
  test::Random random(71);
  for (int round = 0; round < 800; ++round) {
    Shot a(random, 0, round % 8 == 0 ? 140 : 40);
    a.at = {0, 0};
    const int width = a.dib->biWidth, height = a.dib->biHeight;
    const POINT seed{test::below(random, width), test::below(random, height)};
    const DWORD centre = a.colour(test::below(random, width), test::below(random, height));
    // The top bytes count for nothing.
    const Fill fill{test::swapped(centre) | 0xC9000000, static_cast<DWORD>(random()),
                    test::below(random, 101), test::below(random, 5) * 30 - 1};
    const auto matches = [&](int x, int y) {
      return a.shows(x, y) && test::nearby(a.colour(x, y), centre, fill.tolerance);
    };
    const test::Bitmap reached = test::reachedFrom(seed, width, height, matches);
    PlainPicture whole(a.box()), area(a.box());
    test::forEachPixel(a.box(), [&](int x, int y) {
      const DWORD old = a.shows(x, y) ? a.colour(x, y) : 0, tint = tinted(old, fill.colour, fill.percent);
      // A transparent seed is tinted from black, too, but enters no palette.
      if (!a.shows(x, y)) return reached.at(x, y) ? area.write(x, y, tint) : void();
      whole.put(x, y, matches(x, y) ? tint : old);
      area.put(x, y, reached.at(x, y) ? tint : old);
    });
    ASSERT_TRUE(test::same(everywhere(a.dib, a.mask, fill), whole.finishWith(a.mask))) << "round " << round;
    ASSERT_TRUE(test::same(adjacent(a.dib, a.mask, fill, seed), area.finishWith(a.mask)))
        << "round " << round;
  }
}

TEST(FrameFills, TakeAnyStrengthAndTolerance) {
  const OwnedDib frame = test::imageOf(1, 1, 24, {0x800000});
  const auto filled = [&](int percent, int tolerance) {
    return test::colourAt(everywhere(frame, nullptr, {0x000080, 0x000000, percent, tolerance}).image, 0, 0);
  };
  EXPECT_EQ(filled(50, 0), 0x400000U);
  EXPECT_EQ(filled(100, INT32_MAX), 0x000000U);
  EXPECT_EQ(filled(100, INT32_MIN), 0x800000U);
  // s = 118 x 256 / 100 = 302: (128 x 256 - 128 x 302) >> 8 = -23, low byte 0xE9.
  EXPECT_EQ(filled(118, 0), 0xE90000U);
}

TEST(ExclusiveWhiteFill2BitsDib, SetsWhatLiesOutside) {
  test::Random random(74);
  for (int round = 0; round < 100; ++round) {
    const OwnedDib image =
        test::randomImage(1 + test::below(random, 70), 1 + test::below(random, 6), 1, random);
    RECT rect{test::below(random, 80) - 5, test::below(random, 8) - 2, test::below(random, 80) - 5,
              test::below(random, 8) - 2};
    const OwnedDib expected = test::copyOf(image);
    test::forEachPixel(test::boundsOf(image), [&](int x, int y) {
      if (!PtInRect(&rect, {x, y})) test::setPixel(expected, x, y, 1);
    });
    ExclusiveWhiteFill2BitsDib(GetDIBBits(image.get()), image->biWidth, image->biHeight, rect);
    ASSERT_TRUE(test::same(image, expected));
  }
}

Given background(const Shot& a, SIZE canvas, DWORD fill, int percent, POINT seed) {
  return test::given(ExtFillBkgnd, a.dib.get(), a.mask.get(), a.at, canvas, fill, percent, 12345, seed);
}

/// The same one pixel at a time.
Given plainBackground(const Shot& a, SIZE canvas, DWORD fill, int percent, POINT seed) {
  // A mask of another height than the frame's does not cover the canvas.
  if (a.mask && a.mask->biHeight != a.dib->biHeight) return {};
  // White tinted with the fill; its red is the lowest byte again.
  const DWORD background = test::swapped(tinted(0xFFFFFF, fill, percent));
  const RECT box = a.box();
  Given end{1, nullptr, nullptr, {0, 0}};
  end.image.reset(InflateDib(a.dib.get(), a.mask.get(), background, a.at.x, a.at.y, canvas.cx - box.right,
                             canvas.cy - box.bottom));
  // The mask keeps its palette as it is counted.
  end.mask =
      a.mask ? test::image(canvas.cx, canvas.cy, 1, {0, 0xFFFFFF}) : test::newMask(canvas.cx, canvas.cy);
  // The flood fill takes one pixel for visited from the start: the one at the frame's x, not the seed's.
  const int visited = seed.y * canvas.cx + a.at.x;
  const test::Bitmap filled = test::reachedFrom(seed, canvas.cx, canvas.cy, [&](int x, int y) {
    return !a.shows(x, y) && y * canvas.cx + x != visited;
  });
  test::forEachPixel({0, 0, canvas.cx, canvas.cy}, [&](int x, int y) {
    test::setPixel(end.mask, x, y, !a.shows(x, y) && !filled.at(x, y));
  });
  int left, top, right, bottom;
  CaclOpaqueBoundary(end.mask.get(), &left, &top, &right, &bottom);
  if (left + top + right + bottom == 0) return end;
  const dibkit::OwnedRegion region(CreateRectRgn(left, top, canvas.cx - right, canvas.cy - bottom));
  Given trimmed = test::given(CropFrame, end.image.get(), end.mask.get(), region.get());
  trimmed.position = {left, top};
  return trimmed;
}

TEST(ExtFillBkgnd, EqualsThePlainFillOnTheCanvas) {
  test::Random random(75);
  for (int round = 0; round < 800; ++round) {
    const Shot a(random);
    const SIZE canvas{1 + test::below(random, 30), 1 + test::below(random, 16)};
    const POINT seed{test::below(random, canvas.cx), test::below(random, canvas.cy)};
    const auto fill = static_cast<DWORD>(random());
    const int percent = test::below(random, 101);
    ASSERT_TRUE(test::same(background(a, canvas, fill, percent, seed),
                           plainBackground(a, canvas, fill, percent, seed)))
        << "round " << round;
  }
}

TEST(ExtFillBkgnd, NeedsAMaskThatCoversTheCanvas) {
  test::Random random(76);
  Shot a(random, 24);
  a.mask = test::image(a.dib->biWidth, a.dib->biHeight, 1, {0, 0});  // no white entry for what is beside it
  EXPECT_EQ(background(a, {40, 40}, 0, 50, {39, 39}).result, 0);
}

}  // namespace
