#include <cmath>

#include "effects/stage.h"

namespace {

using namespace test;

double radiansOf(double degrees) { return degrees * 3.1415926 / 180.0; }
double t(double degrees) { return std::tan(radiansOf(degrees)); }
int whole(double value) { return static_cast<int>(value); }

OwnedRegion clockPlainly(int w, int h, int angle, bool clockwise) {
  const int d = whole(std::atan(static_cast<double>(w) / h) / 3.1415926 * 180.0);
  const double hw = w / 2.0;
  const double hh = h / 2.0;
  std::vector<POINT> p = {{w / 2, h / 2}, {w / 2, 0}};
  const auto add = [&p](std::initializer_list<POINT> more) { p.insert(p.end(), more); };
  if (clockwise) {
    if (angle <= d) {
      add({{w / 2 + whole(t(angle) * hh), 0}});
    } else if (angle <= 180 - d) {
      add({{w, 0}, {w, whole(t(angle - 90) * hw + hh)}});
    } else if (angle <= 180 + d) {
      add({{w, 0}, {w, h}, {whole(t(180 - angle) * hh + hw), h}});
    } else if (angle <= 360 - d) {
      add({{w, 0}, {w, h}, {0, h}, {0, whole(t(270 - angle) * hw + hh)}});
    } else {
      add({{w, 0}, {w, h}, {0, h}, {0, 0}, {whole(hw - t(360 - angle) * hh), 0}});
    }
  } else {
    if (angle <= d) {
      add({{w / 2 - whole(t(angle) * hh), 0}});
    } else if (angle <= 180 - d) {
      add({{0, 0}, {0, whole(t(angle - 90) * hw + hh)}});
    } else if (angle <= 180 + d) {
      add({{0, 0}, {0, h}, {whole(t(angle - 180) * hh + hw), h}});
    } else if (angle <= 360 - d) {
      add({{0, 0}, {0, h}, {w, h}, {w, whole(t(270 - angle) * hw + hh)}});
    } else {
      add({{0, 0}, {0, h}, {w, h}, {w, 0}, {whole(t(360 - angle) * hh + hw), 0}});
    }
  }
  return OwnedRegion(CreatePolygonRgn(p.data(), static_cast<int>(p.size()), ALTERNATE));
}

// A hand before twelve o'clock or past a full turn still ends on the top side.
const std::vector<long> angles = {-60, -1,  361, 400, 0,   1,   20,  44,  45,  46,  60,  89,
                                  90,  91,  120, 134, 135, 136, 150, 179, 180, 181, 224, 225,
                                  226, 240, 269, 270, 271, 300, 314, 315, 316, 340, 359, 360};

Stage sweepClockPlainly(const OwnedDib& source, long direction, long angle) {
  const OwnedRegion region =
      clockPlainly(source->biWidth, source->biHeight, static_cast<int>(angle), direction != 0);
  RECT box{};
  GetRgnBox(region.get(), &box);
  Stage stage = cutPlainly(source, region);
  stage.rect = box;
  return stage;
}

Stage manyClocksPlainly(const OwnedDib& source, long direction, long angle) {
  const int w = source->biWidth;
  const int h = source->biHeight;
  const int tw = std::max(1, w / 10);
  const int th = std::max(1, h / 10);
  OwnedRegion region;
  for (int y = 0; y < h; y += th) {
    for (int x = 0; x < w; x += tw) {
      OwnedRegion tile =
          clockPlainly(std::min(tw, w - x), std::min(th, h - y), static_cast<int>(angle), direction != 0);
      OffsetRgn(tile.get(), x, y);
      join(region, std::move(tile));
    }
  }
  return cutPlainly(source, region);
}

TEST(Clocks, MatchTheirPlainTwins) {
  expectTwin(1, {{2, 2}, {7, 5}, {16, 33}, {100, 60}, {60, 100}, {101, 99}, {40, 40}}, {0, 1, -3}, angles,
             sweepClockPlainly);
  expectTwin(2, {{10, 10}, {19, 33}, {100, 60}, {105, 47}, {3, 9}}, {0, 1}, angles, manyClocksPlainly);
}

TEST(SweepClock, QuarterIsTheTopRightOne) {
  EXPECT_EQ(render(1, numberedPicture(100, 100), 1, 90).rect, (RECT{50, 0, 100, 50}));
}

TEST(SweepClock, PlaceIsThatOfTheHandBeforeClipping) {
  // The diagonal stands at 45.7 degrees and counts as 45. At 180 - 45 degrees the hand therefore still ends
  // on the right side, at tan 45 * 100 + 97.5 = 197, two rows below the picture.
  const Stage stage = render(1, numberedPicture(200, 195), 1, 135);
  EXPECT_EQ(stage.rect, (RECT{100, 0, 200, 197}));
  EXPECT_EQ(stage.image->biHeight, 195);
}

TEST(SweepClock, PointsAlongTheSidesOfAVeryThinPicture) {
  // The diagonal counts as 0 degrees, so that at 180 the hand ends far below on the right side: rows below
  // the centre show what lies right of a line that leaves column 1 at once and reaches column 2 never.
  const OwnedDib picture = numberedPicture(3, 200);
  const Stage stage = render(1, picture, 1, 180);
  ASSERT_EQ(stage.image->biWidth, 2);
  ASSERT_EQ(stage.image->biHeight, 200);
  for (int y = 0; y < 200; ++y) {
    EXPECT_EQ(pixel(stage.image, 0, y), pixel(picture, 1, y) & (y <= 100 ? 0xFFFFFFFF : 0xFFFFFF));
    EXPECT_EQ(pixel(stage.image, 1, y), pixel(picture, 2, y));
  }
  EXPECT_EQ(pixelsOf(render(1, picture, 1, 360).image), pixelsOf(picture));
}

}  // namespace
