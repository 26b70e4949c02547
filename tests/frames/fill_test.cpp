#include <gtest/gtest.h>

#include "plain.h"

namespace {

using dibkit::OwnedDib;
using test::Given;
using test::PlainPicture;
using test::Shot;

/// (old 256 + (fill - old) s) >> 8 for each channel; red is the lowest byte of the fill.
DWORD tinted(DWORD pixel, DWORD fill, int percent) {
  DWORD result = 0;
  for (const int shift : {0, 8, 16}) {
    const int old = test::channel(pixel, 16 - shift);
    const int value = (old * 256 + (test::channel(fill, shift) - old) * (percent * 256 / 100)) >> 8;
    result |= static_cast<DWORD>(value & 255) << (16 - shift);
  }
  return result;
}
bool nearby(DWORD pixel, DWORD target, int tolerance) {
  bool all = true;
  for (const int shift : {0, 8, 16}) {
    all = all && std::abs(test::channel(pixel, 16 - shift) - test::channel(target, shift)) <= tolerance;
  }
  return all;
}

TEST(FrameFills, EqualThePlainFillAndTheWalkPixelByPixel) {
  test::Random random(71);
  for (int round = 0; round < 800; ++round) {
    Shot a(random, 0, 40);
    a.at = {0, 0};
    const int width = a.dib->biWidth, height = a.dib->biHeight;
    const POINT seed{test::below(random, width), test::below(random, height)};
    const DWORD own = a.colour(test::below(random, width), test::below(random, height));
    // The top byte counts for nothing.
    const DWORD target = (own & 255) << 16 | (own & 0xFF00) | own >> 16 | 0xC9000000;
    const auto fill = static_cast<DWORD>(random());
    const int percent = test::below(random, 101), tolerance = test::below(random, 5) * 30 - 1;
    const auto matches = [&](int x, int y) {
      return a.shows(x, y) && nearby(a.colour(x, y), target, tolerance);
    };

    std::vector<bool> reached(static_cast<std::size_t>(width * height));
    std::vector<POINT> work{seed};
    while (!work.empty()) {
      const POINT p = work.back();
      work.pop_back();
      // The seed is tinted whatever it is.
      const bool inside = p.x >= 0 && p.y >= 0 && p.x < width && p.y < height;
      const auto index = static_cast<std::size_t>(inside ? p.y * width + p.x : 0);
      if (!inside || reached[index] || (!matches(p.x, p.y) && (p.x != seed.x || p.y != seed.y))) continue;
      reached[index] = true;
      for (const POINT& step : {POINT{0, 1}, {1, 0}, {0, -1}, {-1, 0}})
        work.push_back({p.x + step.x, p.y + step.y});
    }
    PlainPicture everywhere(a.box()), adjacent(a.box());
    test::forEachPixel(a.box(), [&](int x, int y) {
      const bool filled = reached[static_cast<std::size_t>(y * width + x)];
      // A transparent seed is tinted from black but enters no palette.
      if (!a.shows(x, y)) return filled ? adjacent.write(x, y, tinted(0, fill, percent)) : void();
      const DWORD old = a.colour(x, y);
      everywhere.put(x, y, matches(x, y) ? tinted(old, fill, percent) : old);
      adjacent.put(x, y, filled ? tinted(old, fill, percent) : old);
    });
    ASSERT_TRUE(test::same(test::given([&](auto image, auto mask, POINT*) {
                             return ExtFillFrame(a.dib.get(), a.mask.get(), target, fill, percent, tolerance,
                                                 image, mask);
                           }),
                           everywhere.finishWith(a.mask)))
        << "round " << round;
    ASSERT_TRUE(test::same(test::given([&](auto image, auto mask, POINT*) {
                             return ExtFillAdjacentArea(a.dib.get(), a.mask.get(), target, fill, percent,
                                                        tolerance, seed, image, mask);
                           }),
                           adjacent.finishWith(a.mask)))
        << "round " << round;
  }
}

TEST(FrameFills, TakeAnyStrengthAndToleranceAndRefuseSeedsOutside) {
  const OwnedDib frame = test::imageOf(1, 1, 24, {0x800000});
  const auto filled = [&](int percent, int tolerance) {
    const Given got = test::given([&](auto image, auto mask, POINT*) {
      return ExtFillFrame(frame.get(), nullptr, 0x000080, 0x000000, percent, tolerance, image, mask);
    });
    return test::colourAt(got.image, 0, 0);
  };
  EXPECT_EQ(filled(50, 0), 0x400000U);
  EXPECT_EQ(filled(100, INT32_MAX), 0x000000U);
  EXPECT_EQ(filled(100, INT32_MIN), 0x800000U);
  // s = 118 x 256 / 100 = 302: (128 x 256 - 128 x 302) >> 8 = -23, low byte 0xE9.
  EXPECT_EQ(filled(118, 0), 0xE90000U);
  filled(INT32_MAX, 0);
  filled(INT32_MIN, 0);
  for (const POINT& seed : {POINT{1, 0}, {0, 1}, {-1, 0}, {0, -1}, {INT32_MIN, INT32_MAX}}) {
    EXPECT_TRUE(test::same(test::given([&](auto image, auto mask, POINT*) {
                             return ExtFillAdjacentArea(frame.get(), nullptr, 0, 0, 100, 0, seed, image,
                                                        mask);
                           }),
                           Given()));
  }
}

TEST(ExclusiveWhiteFill2BitsDib, SetsWhatLiesOutside) {
  test::Random random(74);
  for (int round = 0; round < 100; ++round) {
    const OwnedDib image =
        test::randomImage(1 + test::below(random, 70), 1 + test::below(random, 6), 1, random);
    RECT rect{test::below(random, 80) - 5, test::below(random, 8) - 2, test::below(random, 80) - 5,
              test::below(random, 8) - 2};
    const OwnedDib expected = test::copyOf(image);
    test::forEachPixel({0, 0, image->biWidth, image->biHeight}, [&](int x, int y) {
      if (!PtInRect(&rect, {x, y})) test::setPixel(expected, x, y, 1);
    });
    ExclusiveWhiteFill2BitsDib(GetDIBBits(image.get()), image->biWidth, image->biHeight, rect);
    ASSERT_TRUE(test::same(image, expected));
  }
  RECT rect{0, 0, 1, 1};
  ExclusiveWhiteFill2BitsDib(nullptr, 5, 5, rect);
}

/// Everything as told, one pixel at a time.
Given plainBackground(const Shot& a, SIZE canvas, DWORD fill, int percent, POINT seed) {
  // White tinted with the fill; its red is the lowest byte again.
  const DWORD mixed = tinted(0xFFFFFF, fill, percent);
  const DWORD background = (mixed & 255) << 16 | (mixed & 0xFF00) | mixed >> 16;
  const RECT box = a.box();
  Given end{1, nullptr, nullptr, {0, 0}};
  end.image.reset(InflateDib(a.dib.get(), a.mask.get(), background, a.at.x, a.at.y, canvas.cx - box.right,
                             canvas.cy - box.bottom));
  // The mask keeps its palette as it is counted.
  end.mask =
      a.mask ? test::image(canvas.cx, canvas.cy, 1, {0, 0xFFFFFF}) : test::newMask(canvas.cx, canvas.cy);
  test::forEachPixel({0, 0, canvas.cx, canvas.cy},
                     [&](int x, int y) { test::setPixel(end.mask, x, y, !a.shows(x, y)); });
  std::vector<bool> visited(static_cast<std::size_t>(canvas.cx * canvas.cy));
  const int first = seed.y * canvas.cx + a.at.x;  // the frame's x, not the seed's
  if (first >= 0 && first < canvas.cx * canvas.cy) visited[static_cast<std::size_t>(first)] = true;
  std::vector<POINT> stack{seed};
  while (!stack.empty()) {
    const POINT p = stack.back();
    stack.pop_back();
    test::setPixel(end.mask, p.x, p.y, 0);
    for (const POINT& next : {POINT{p.x, p.y + 1}, {p.x + 1, p.y}, {p.x, p.y - 1}, {p.x - 1, p.y}}) {
      if (next.x < 0 || next.y < 0 || next.x >= canvas.cx || next.y >= canvas.cy) continue;
      const auto index = static_cast<std::size_t>(next.y * canvas.cx + next.x);
      if (!visited[index] && test::marked(end.mask, next.x, next.y)) stack.push_back(next);
      visited[index] = true;
    }
  }
  int left, top, right, bottom;
  CaclOpaqueBoundary(end.mask.get(), &left, &top, &right, &bottom);
  if (left + top + right + bottom == 0) return end;
  const dibkit::OwnedRegion region(CreateRectRgn(left, top, canvas.cx - right, canvas.cy - bottom));
  Given cut = test::given([&](auto image, auto mask, POINT*) {
    return CropFrame(end.image.get(), end.mask.get(), region.get(), image, mask);
  });
  cut.position = {left, top};
  return cut;
}

Given background(const Shot& a, SIZE canvas, DWORD fill, int percent, POINT seed) {
  return test::given([&](auto image, auto mask, POINT* at) {
    return ExtFillBkgnd(a.dib.get(), a.mask.get(), a.at, canvas, fill, percent, 12345, seed, image, mask, at);
  });
}

TEST(ExtFillBkgnd, EqualsThePlainFillOnTheCanvas) {
  test::Random random(75);
  int stopped = 0;
  for (int round = 0; round < 800; ++round) {
    const Shot a(random);
    const SIZE canvas{1 + test::below(random, 30), 1 + test::below(random, 16)};
    const POINT seed{test::below(random, canvas.cx), test::below(random, canvas.cy)};
    const auto fill = static_cast<DWORD>(random());
    const int percent = test::below(random, 101);
    const Given expected = plainBackground(a, canvas, fill, percent, seed);
    ASSERT_TRUE(test::same(background(a, canvas, fill, percent, seed), expected)) << "round " << round;
    stopped += expected.mask != nullptr;
  }
  EXPECT_GT(stopped, 100);
}

TEST(ExtFillBkgnd, RefusesWhatCannotBe) {
  test::Random random(76);
  Shot a(random, 24);
  a.mask.reset();
  const auto result = [&](POINT at, SIZE canvas, POINT seed) {
    a.at = at;
    return background(a, canvas, 0, 50, seed).result;
  };
  EXPECT_EQ(result({0, 0}, {2, 2}, {2, 0}), 0);
  EXPECT_EQ(result({0, 0}, {0, 0}, {0, 0}), 0);
  EXPECT_EQ(result({0, 0}, {-5, -5}, {-6, -6}), 0);
  EXPECT_EQ(result({INT32_MAX, INT32_MAX}, {4, 4}, {3, 3}), 1);
  EXPECT_EQ(result({INT32_MIN, INT32_MIN}, {4, 4}, {3, 3}), 1);
  a.mask = test::image(a.dib->biWidth, a.dib->biHeight, 1, {0, 0});  // no white entry for what lies beside it
  EXPECT_EQ(result({0, 0}, {40, 40}, {39, 39}), 0);
}

}  // namespace
