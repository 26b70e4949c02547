#include <cmath>

#include "effects/stage.h"

namespace {

using namespace test;

struct Turned {
  double z, x, y;
};

Turned turnPlainly(long orientation, int w, int h, double s, double c, int x, int y) {
  switch (orientation) {
    case 0:
      return {-x * s, -w / 2.0 + x * c, h / 2.0 - y};
    case 1:
      return {-y * s, x - w / 2.0, h / 2.0 - y * c};
    case 2:
      return {-(w - x) * s, w / 2.0 - (w - x) * c, h / 2.0 - y};
    default:
      return {-(h - y) * s, static_cast<double>(x - w / 2), (h - y) * c - h / 2.0};
  }
}

/// Corner by corner, then pixel by pixel, each with a division of its own.
Stage gatePlainly(const OwnedDib& source, long orientation, long angle) {
  const int w = source->biWidth;
  const int h = source->biHeight;
  const double turned = static_cast<double>(angle) * 3.1415926 / 180.0;
  const double s = static_cast<float>(std::sin(turned));
  const double c = static_cast<float>(std::cos(turned));
  const double e = orientation % 2 == 0 ? w : h;
  float minX = 1e9F, maxX = -1e9F, minY = 1e9F, maxY = -1e9F;
  for (const auto& [x, y] : {std::pair{0, 0}, {w, 0}, {w, h}, {0, h}}) {
    const Turned corner = turnPlainly(orientation, w, h, s, c, x, y);
    const auto px = static_cast<float>(corner.x / (1 - corner.z / e));
    const auto py = static_cast<float>(corner.y / (1 - corner.z / e));
    minX = std::min(minX, px), maxX = std::max(maxX, px);
    minY = std::min(minY, py), maxY = std::max(maxY, py);
  }
  const double left = w / 2.0 + minX;
  const double top = h / 2.0 - maxY;
  const int ow = std::max(1, static_cast<int>(w / 2.0 + maxX) - static_cast<int>(left));
  const int oh = std::max(1, static_cast<int>(h / 2.0 - minY) - static_cast<int>(top));
  Stage stage{1, image(ow, oh, 32), {}};
  for (int j = 0; j < oh; ++j) {
    for (int i = 0; i < ow; ++i) {
      const double x = i + left - w / 2.0;
      const double y = h / 2.0 - j - top;
      float t;
      double sx, sy;
      if (orientation == 0) {
        t = static_cast<float>((w / 2.0 + x) / (x / e - c / s));
        sx = -t / s, sy = h / 2.0 - (1 - t / e) * y;
      } else if (orientation == 1) {
        t = static_cast<float>((y - h / 2.0) / (y / e + c / s));
        sx = w / 2.0 + (1 - t / e) * x, sy = -t / s;
      } else if (orientation == 2) {
        t = static_cast<float>((x - w / 2) / (c / s + x / e));
        sx = t / s + w, sy = h / 2.0 - (1 - t / e) * y;
      } else {
        t = static_cast<float>((h / 2 + y) / (y / e - c / s));
        sx = w / 2.0 + (1 - t / e) * x, sy = t / s + h;
      }
      if (!(std::abs(sx) < 1e6 && std::abs(sy) < 1e6)) continue;
      const int fromX = static_cast<int>(sx);
      const int fromY = static_cast<int>(sy);
      if (fromX >= 0 && fromY > 0 && fromX < w && fromY < h)
        setPixel(stage.image, i, j, pixel(source, fromX, fromY));
    }
  }
  const int x = orientation == 2 ? w - ow : 0;
  const int y = orientation == 3 ? h - oh : 0;
  stage.rect = {x, y, x + ow, y + oh};
  return stage;
}

TEST(Gate, MatchesItsPlainTwin) {
  expectTwin(0, {{1, 1}, {2, 3}, {7, 5}, {33, 16}, {16, 33}, {100, 61}}, {0, 1, 2, 3},
             {1, 2, 15, 30, 45, 60, 75, 88, 89, 90, 120, 179, 180, 360, -20}, gatePlainly);
}

TEST(Gate, RoundsToSinglePrecision) {
  // Sine and cosine are 0.70710677 both, and column 18 has t = 18 / (-0.32 - 1) = -13.6363636, in single
  // precision -13.6363640. So row 8 shows row 30 - (1 + 0.13636364) * 22 = 4.9999999; with doubles it is 5.
  const OwnedDib picture = numberedPicture(100, 60);
  EXPECT_EQ(pixel(render(0, picture, 0, 45).image, 18, 8), pixel(picture, 19, 4));
}

TEST(Spin, SquashesAboutTheMiddle) {
  const OwnedDib picture = numberedPicture(100, 100);
  // The cosine of 60 degrees, with eight digits of pi, is a hair above a half.
  for (const long axis : {0L, 1L}) {
    const Stage stage = render(7, picture, axis, 60);
    EXPECT_EQ(stage.rect, axis == 0 ? (RECT{0, 25, 100, 75}) : (RECT{25, 0, 75, 100}));
    const double squash = std::cos(60 * 3.1415926 / 180.0);
    for (int y = 0; y < stage.image->biHeight; ++y) {
      for (int x = 0; x < stage.image->biWidth; ++x) {
        const int sx = axis == 0 ? x : static_cast<int>(x / squash);
        const int sy = axis == 0 ? static_cast<int>(y / squash) : y;
        ASSERT_EQ(pixel(stage.image, x, y), pixel(picture, sx, sy));
      }
    }
  }
}

TEST(Spin, ShowsNothingEdgeOnAndHasNoBack) {
  const OwnedDib picture = numberedPicture(21, 11);
  const Stage edge = render(7, picture, 0, 90);
  EXPECT_EQ(edge.result, 1);
  EXPECT_EQ(edge.rect, (RECT{0, 5, 21, 5}));
  EXPECT_EQ(edge.image->biHeight, 0);
  EXPECT_EQ(render(7, picture, 0, 120).result, 0);
}

}  // namespace
