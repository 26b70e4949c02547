#include <cstdlib>

#include <gtest/gtest.h>

#include "dibkit.h"
#include "support/images.h"

namespace {

using namespace test;

/// The water as it is written down: one cell after the other, two whole pages.
struct PlainWater {
  PlainWater(int width, int height) : w(width), h(height) {
    for (auto& page : pages) page.assign(static_cast<std::size_t>(w * h), 0);
  }
  int& at(int page, int x, int y) { return pages[page][static_cast<std::size_t>(y * w + x)]; }

  void blob(int x, int y, int radius, int height, int page) {
    for (int cy = 1; cy < h - 1; ++cy) {
      for (int cx = 1; cx < w - 1; ++cx) {
        if ((cx - x) * (cx - x) + (cy - y) * (cy - y) < radius * radius) at(page, cx, cy) += height;
      }
    }
  }
  void grid() {
    for (int y = 0; y < h; y += 100) {
      for (int x = 0; x < w; x += 100) {
        blob((x + std::min(x + 100, w - 1)) / 2, (y + std::min(y + 100, h - 1)) / 2, 20, 50, 0);
      }
    }
  }
  void step(int page) {
    const auto read = pages[1 - page];
    for (int y = 1; y < h - 1; ++y) {
      for (int x = 1; x < w - 1; ++x) {
        int sum = 0;
        for (int dy = -1; dy <= 1; ++dy) {
          for (int dx = -1; dx <= 1; ++dx) {
            if (dx != 0 || dy != 0) sum += read[static_cast<std::size_t>((y + dy) * w + x + dx)];
          }
        }
        const int v = (sum >> 2) - at(page, x, y);
        at(page, x, y) = v - (v >> 5);
      }
    }
  }
  void round(int& page) {
    for (int i = 0; i < 4; ++i) {
      step(page);
      page = 1 - page;
    }
  }
  OwnedDib render(const OwnedDib& source) {
    OwnedDib out = image(w, h, 32);
    for (int y = 0; y < h; ++y) {
      for (int x = 0; x < w; ++x) {
        if (x == 0 || x == w - 1 || y == 0 || y == h - 1) {
          setPixel(out, x, y, pixel(source, x, y));
          continue;
        }
        const int dx = at(0, x, y) - at(0, x + 1, y);
        const int dy = at(0, x, y) - at(0, x, y + 1);
        int sy = std::clamp(y + (dy >> 3), 0, h - 1);
        int sx = x + (dx >> 3);
        if (sx < 0) sx = 0;
        if (sx > w) sx = w - 1;
        if (sx == w && sy == 0) sx = w - 1;
        if (sx == w) sx = 0, --sy;
        const DWORD from = pixel(source, sx, sy);
        DWORD lit = 0xFF000000;
        for (const int shift : {0, 8, 16}) {
          lit |= static_cast<DWORD>(std::clamp(static_cast<int>(from >> shift & 255) - dx, 0, 255)) << shift;
        }
        setPixel(out, x, y, lit);
      }
    }
    return out;
  }

  int w, h;
  std::vector<int> pages[2];
};

TEST(Ripple, OneShotMatchesThePlainWater) {
  Random random(1);
  for (const auto& [w, h] : {std::pair{1, 1}, {2, 2}, {3, 3}, {7, 33}, {64, 50}, {130, 120}}) {
    const OwnedDib picture = randomImage(w, h, 32, random);
    for (const int iterations : {0, 1, 2, 9, -3}) {
      SCOPED_TRACE(testing::Message() << w << 'x' << h << " after " << iterations);
      PlainWater water(w, h);
      water.blob(w / 2, h / 2, 5, 50, 0);
      water.grid();
      int page = 0;
      for (int i = 0; i < iterations; ++i) water.round(page);
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
  int page = 0;
  for (int i = 0; i < 5; ++i) {
    water.round(page);
    EXPECT_TRUE(bytesOf(OwnedDib(ripple.NextToRipple())) == bytesOf(water.render(picture)));
  }
  // A picture made meanwhile leaves the animation alone.
  EXPECT_NE(OwnedDib(ripple.GenerateRippleEffect()), nullptr);
  water.round(page);
  EXPECT_TRUE(bytesOf(OwnedDib(ripple.NextToRipple())) == bytesOf(water.render(picture)));
  // Starting again levels the water.
  ripple.StartToRipple();
  PlainWater fresh(140, 60);
  fresh.grid();
  page = 0;
  fresh.round(page);
  EXPECT_TRUE(bytesOf(OwnedDib(ripple.NextToRipple())) == bytesOf(fresh.render(picture)));
  ripple.EndToRipple();
  EXPECT_EQ(ripple.NextToRipple(), nullptr);
}

/// Water without drops, in which a test lays its own.
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
  void expectSame() {
    EXPECT_TRUE(bytesOf(OwnedDib(ripple.GenerateRippleEffect(7, 9))) == bytesOf(water.render(picture)));
  }

  OwnedDib picture;
  CRippleEffect ripple;
  PlainWater water{0, 0};
};

TEST_F(Basin, StepsWriteThePageTheyAreTold) {
  start(60, 40);
  for (const int page : {0, 1}) {
    ripple.HeightBlob(20, 15, 9, 3000, page);
    water.blob(20, 15, 9, 3000, page);
  }
  for (const int page : {1, 0, 0, 1, 1, 0}) {
    ripple.CalcWater(page, 5);
    water.step(page);
    expectSame();  // always the first page
  }
}

TEST_F(Basin, SteepWaterReadsOverTheEdgesWithoutLeavingThePicture) {
  start(31, 17);
  // Steps down to the right send the source column far beyond the width, or just onto it; those to the bottom
  // to the last line.
  for (const auto& [x, rise] : {std::pair{29, 8}, {28, 16}, {20, 88}, {25, 100000}, {3, -90}, {9, -100000}}) {
    ripple.HeightBlob(x, 8, 4, rise, 0);
    water.blob(x, 8, 4, rise, 0);
    expectSame();
  }
  ripple.HeightBlob(28, 1, 3, -24, 0);
  water.blob(28, 1, 3, -24, 0);
  expectSame();
}

TEST_F(Basin, BlobStaysClearOfTheBorder) {
  // Radius 20 at x = 5 reaches columns 1 to 24.
  start(60, 50);
  ripple.HeightBlob(5, 25, 20, 80, 0);
  const OwnedDib frame(ripple.GenerateRippleEffect(0, 0));
  // On level water every pixel is the source's, made opaque.
  const auto changed = [&](int x) { return pixel(frame, x, 25) != (pixel(picture, x, 25) | 0xFF000000); };
  EXPECT_TRUE(changed(24));
  for (int x = 25; x < 59; ++x) EXPECT_FALSE(changed(x)) << x;
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

TEST_F(Basin, BlobsOfAnySizeAreHarmless) {
  start(13, 9);
  for (const int radius : {INT_MIN, -1, 0, 1, 4, 6, 1000, INT_MAX}) {
    for (const int place : {-1, 0, 5, 13, INT_MAX}) {
      ripple.HeightBlob(place, place, radius, INT_MAX, 1);
      ripple.CalcWater(0, radius);
      ripple.CalcWaterBigFilter(1, place);
    }
  }
  EXPECT_NE(OwnedDib(ripple.GenerateRippleEffect(0, 0)), nullptr);
}

TEST_F(Basin, BroadWaveSpreadsAsFarAsAKnightMoves) {
  start(21, 21);
  // One cell of 6400: after a step into the first page, each cell holds (weight * 6400) / 8, damped by a
  // quarter: direct neighbours 2, diagonal ones 1, two away a half, a knight's move a quarter.
  ripple.HeightBlob(10, 10, 1, 6400, 1);
  ripple.CalcWaterBigFilter(0, 2);
  for (int y = 0; y < 21; ++y) {
    for (int x = 0; x < 21; ++x) {
      const int dx = std::abs(x - 10);
      const int dy = std::abs(y - 10);
      const int across = std::min(dx, dy);
      const int away = std::max(dx, dy);
      if (away == 1) water.at(0, x, y) = across == 0 ? 1200 : 600;
      if (away == 2 && across < 2) water.at(0, x, y) = across == 0 ? 300 : 150;
    }
  }
  expectSame();
}

TEST(RippleColour, ShiftsAndClamps) {
  struct Case {
    int shift;
    BYTE red, green, blue;
  };
  CRippleEffect ripple;
  for (const Case& c : {Case{-10, 255, 15, 10},
                        {10, 240, 0, 0},
                        {0, 250, 5, 0},
                        {INT_MAX, 0, 0, 0},
                        {INT_MIN, 255, 255, 255}}) {
    BYTE red = 250, green = 5, blue = 0;
    ripple.GetShiftedColor(&red, &green, &blue, c.shift);
    EXPECT_EQ(red, c.red);
    EXPECT_EQ(green, c.green);
    EXPECT_EQ(blue, c.blue);
  }
}

TEST(Ripple, CopiesShareTheWater) {
  const OwnedDib picture = image(40, 30, 32);
  CRippleEffect original(picture.get(), 3);
  original.StartToRipple();
  CRippleEffect copy(original);
  EXPECT_NE(OwnedDib(copy.NextToRipple()), nullptr);
  const OwnedDib fromCopy(copy.GenerateRippleEffect(0, 0));
  EXPECT_EQ(bytesOf(OwnedDib(original.GenerateRippleEffect(0, 0))), bytesOf(fromCopy));
  original.EndToRipple();
}

TEST(Ripple, StandsWrongArguments) {
  EXPECT_EQ(GenerateRippleEffect(nullptr, 3), nullptr);
  const OwnedDib trueColour = image(4, 4, 24);
  EXPECT_EQ(GenerateRippleEffect(trueColour.get(), 3), nullptr);
  const OwnedDib noPixels = image(0, INT_MAX, 32);
  EXPECT_NE(OwnedDib(GenerateRippleEffect(noPixels.get(), 100)), nullptr);  // 0 x n again, and at once
  CRippleEffect idle;
  idle.StartToRipple();
  idle.HeightBlob(1, 1, 1, 1, 0);
  idle.CalcWater(0, 5);
  idle.FlattenWater();
  EXPECT_EQ(idle.NextToRipple(), nullptr);
  idle.EndToRipple();
  // Another picture in the middle of a run has to have the size of the first.
  const OwnedDib small = image(20, 10, 32);
  const OwnedDib large = image(30, 40, 32);
  CRippleEffect ripple(small.get(), 0);
  ripple.StartToRipple();
  ripple.InitializeParams(large.get());
  EXPECT_EQ(ripple.NextToRipple(), nullptr);
  ripple.EndToRipple();
}

}  // namespace
