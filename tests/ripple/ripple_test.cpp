#include <cstdlib>

#include <gtest/gtest.h>

#include "dibkit.h"
#include "support/images.h"

namespace {

using namespace test;

/// The water by its definition: one cell after the other, two whole pages.
struct PlainWater {
  PlainWater(int width, int height) : w(width), h(height) {
    for (auto& page : pages) page.assign(static_cast<std::size_t>(w * h), 0);
  }
  int& at(int page, int x, int y) { return pages[page][static_cast<std::size_t>(y * w + x)]; }
  /// The cells that are `margin` cells away from the border.
  RECT inner(int margin) const { return {margin, margin, w - margin, h - margin}; }

  void blob(int centreX, int centreY, int radius, int height, int page) {
    forEachPixel(inner(1), [&](int x, int y) {
      const int dx = x - centreX, dy = y - centreY;
      if (dx * dx + dy * dy < radius * radius) at(page, x, y) += height;
    });
  }
  void grid() {
    for (int y = 0; y < h; y += 100) {
      for (int x = 0; x < w; x += 100) {
        blob((x + std::min(x + 100, w - 1)) / 2, (y + std::min(y + 100, h - 1)) / 2, 20, 50, 0);
      }
    }
  }
  void step(int page, int density = 5, int reach = 1) {
    forEachPixel(inner(reach), [&](int x, int y) {
      int sums[9] = {};  // of the cells at each squared distance
      forEachPixel({-reach, -reach, reach + 1, reach + 1},
                   [&](int dx, int dy) { sums[dx * dx + dy * dy] += at(1 - page, x + dx, y + dy); });
      const int wave = reach == 1 ? (sums[1] + sums[2]) >> 2
                                  : (2 * sums[1] + sums[2] + (sums[4] >> 1) + (sums[5] >> 2)) >> 3;
      const int v = wave - at(page, x, y);
      at(page, x, y) = v - (v >> density);
    });
  }
  void round() {
    for (const int page : {0, 1, 0, 1}) step(page);
  }
  OwnedDib render(const OwnedDib& source) {
    OwnedDib out = copyOf(source);
    forEachPixel(inner(1), [&](int x, int y) {
      const int dx = at(0, x, y) - at(0, x + 1, y), dy = at(0, x, y) - at(0, x, y + 1);
      int sy = std::clamp(y + (dy >> 3), 0, h - 1), sx = std::max(x + (dx >> 3), 0);
      if (sx > w || (sx == w && sy == 0)) sx = w - 1;
      if (sx == w) sx = 0, --sy;  // the first pixel of the next row in memory
      const DWORD from = pixel(source, sx, sy);
      DWORD lit = 0xFF000000;
      for (const int shift : {0, 8, 16}) {
        lit |= static_cast<DWORD>(std::clamp(static_cast<int>(from >> shift & 255) - dx, 0, 255)) << shift;
      }
      setPixel(out, x, y, lit);
    });
    return out;
  }

  int w, h;
  std::vector<int> pages[2];
};

TEST(Ripple, OneShotMatchesThePlainWater) {
  Random random(1);
  for (const auto& [w, h] : {std::pair{1, 1}, {2, 2}, {3, 3}, {7, 33}, {64, 50}, {130, 120}}) {
    const OwnedDib picture = randomImage(w, h, 32, random);
    for (const int iterations : {0, 1, 2, 9, 150, -3}) {
      SCOPED_TRACE(testing::Message() << w << 'x' << h << " after " << iterations);
      PlainWater water(w, h);
      water.blob(w / 2, h / 2, 5, 50, 0);
      water.grid();
      for (int i = 0; i < iterations; ++i) water.round();
      const OwnedDib rippled(GenerateRippleEffect(picture.get(), iterations));
      EXPECT_TRUE(bytesOf(rippled) == bytesOf(water.render(picture)));
    }
  }
}

TEST(Ripple, AnimationMatchesThePlainWater) {
  Random random(2);
  const OwnedDib picture = randomImage(140, 60, 32, random);
  PlainWater water(140, 60);
  water.grid();  // without the drop at the centre
  CRippleEffect ripple;
  ripple.InitializeParams(picture.get());
  ripple.StartToRipple();
  const auto expectNextRound = [&] {
    water.round();
    EXPECT_TRUE(bytesOf(OwnedDib(ripple.NextToRipple())) == bytesOf(water.render(picture)));
  };
  for (int i = 0; i < 5; ++i) expectNextRound();
  // A picture made meanwhile leaves the animation alone.
  EXPECT_NE(OwnedDib(ripple.GenerateRippleEffect()), nullptr);
  expectNextRound();
  // Starting again levels the water.
  ripple.StartToRipple();
  water = PlainWater(140, 60);
  water.grid();
  expectNextRound();
  ripple.EndToRipple();
  EXPECT_EQ(ripple.NextToRipple(), nullptr);
}

/// Water without drops, in which a test sets its own.
class Basin : public testing::Test {
 protected:
  void start(int w, int h) {
    Random random(3);
    picture = randomImage(w, h, 32, random);
    ripple.InitializeParams(picture.get());
    ripple.StartToRipple();
    ripple.FlattenWater();
    water = PlainWater(w, h);
  }
  void TearDown() override { ripple.EndToRipple(); }
  void drop(int x, int y, int radius, int height, int page) {
    ripple.HeightBlob(x, y, radius, height, page);
    water.blob(x, y, radius, height, page);
  }
  void expectSame() {
    EXPECT_TRUE(bytesOf(OwnedDib(ripple.GenerateRippleEffect(7, 9))) == bytesOf(water.render(picture)));
  }

  OwnedDib picture;
  CRippleEffect ripple;
  PlainWater water{0, 0};
};

TEST_F(Basin, StepsWriteTheGivenPage) {
  start(60, 40);
  for (const int page : {0, 1}) {
    drop(20, 15, 9, 3001, page);
    drop(40, 20, 9, -3001, page);
  }
  for (const int page : {1, 0, 0, 1, 1, 0}) {
    ripple.CalcWater(page, 5);
    water.step(page);
    expectSame();  // always the first page
    ripple.CalcWaterBigFilter(page, 2);
    water.step(page, 2, 2);
    expectSame();
  }
}

TEST_F(Basin, SteepWaterReadsOverTheEdgesWithoutLeavingThePicture) {
  start(31, 17);
  // Steps down to the right send the source column far beyond the width, or just onto it; those to the bottom
  // to the last line.
  for (const auto& [x, rise] : {std::pair{29, 8}, {28, 16}, {20, 88}, {25, 100000}, {3, -90}, {9, -100000}}) {
    drop(x, 8, 4, rise, 0);
    expectSame();
  }
  drop(28, 1, 3, -24, 0);
  expectSame();
}

TEST_F(Basin, RandomBlobsDrawColumnThenLine) {
  start(60, 50);
  std::srand(77);
  const int x = std::rand() % (60 - 2 * 6 - 1) + 7;
  const int y = std::rand() % (50 - 2 * 6 - 1) + 7;
  water.blob(x, y, 6, 90, 0);
  std::srand(77);
  ripple.HeightBlob(-1, -1, 6, 90, 0);
  expectSame();
}

TEST(RippleColour, ShiftsAndClamps) {
  CRippleEffect ripple;
  const auto shifted = [&](int shift) {
    BYTE red = 250, green = 5, blue = 0;
    ripple.GetShiftedColor(&red, &green, &blue, shift);
    ripple.GetShiftedColor(nullptr, nullptr, nullptr, shift);
    return std::vector<int>{red, green, blue};
  };
  EXPECT_EQ(shifted(-10), (std::vector<int>{255, 15, 10}));
  EXPECT_EQ(shifted(10), (std::vector<int>{240, 0, 0}));
  EXPECT_EQ(shifted(INT_MAX), (std::vector<int>{0, 0, 0}));
  EXPECT_EQ(shifted(INT_MIN), (std::vector<int>{255, 255, 255}));
}

TEST(Ripple, CopiesShareTheWater) {
  Random random(4);
  const OwnedDib picture = randomImage(40, 30, 32, random);
  CRippleEffect original(picture.get(), 3);
  original.StartToRipple();
  CRippleEffect copy(original);
  const OwnedDib fromCopy(copy.NextToRipple());
  ASSERT_TRUE(fromCopy);
  EXPECT_EQ(bytesOf(OwnedDib(original.GenerateRippleEffect(0, 0))), bytesOf(fromCopy));
  original.EndToRipple();
}

TEST(Ripple, NeedsPicturesOfOneSizeThroughARun) {
  const OwnedDib small = image(20, 10, 32), large = image(30, 40, 32);
  CRippleEffect ripple(small.get(), 0);
  ripple.StartToRipple();
  ripple.InitializeParams(large.get());
  EXPECT_EQ(ripple.NextToRipple(), nullptr);
  ripple.EndToRipple();
}

}  // namespace
