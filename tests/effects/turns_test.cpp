#include <cmath>

#include "effects/stage.h"

namespace {

using namespace test;

struct Turned {
  double z, x, y;
};

Turned turnPlainly(int orientation, int w, int h, double s, double c, int x, int y) {
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
Stage gatePlainly(const OwnedDib& source, int orientation, int angle) {
  const int w = source->biWidth;
  const int h = source->biHeight;
  const double turned = angle * 3.1415926 / 180.0;
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
  for (const auto& [w, h] : {std::pair{1, 1}, {2, 3}, {7, 5}, {33, 16}, {16, 33}, {100, 61}}) {
    const OwnedDib picture = numberedPicture(w, h);
    for (int orientation = 0; orientation < 4; ++orientation) {
      for (const int angle : {1, 2, 15, 30, 45, 60, 75, 88, 89, 90, 120, 179, 180, 360, -20}) {
        SCOPED_TRACE(testing::Message()
                     << w << 'x' << h << " orientation " << orientation << " at " << angle);
        expectStage(render(0, picture, orientation, angle), gatePlainly(picture, orientation, angle));
      }
    }
  }
}

TEST(Gate, NeverShowsTheTopRow) {
  const OwnedDib picture = numberedPicture(40, 30);
  for (int orientation = 0; orientation < 4; ++orientation) {
    const Stage stage = render(0, picture, orientation, 10);
    for (const DWORD colour : pixelsOf(stage.image))
      EXPECT_FALSE((colour & 0xFFFFFF) != 0 && (colour & 0xFFFFFF) <= 40 * 3);
  }
}

TEST(Gate, StaysAtItsHinge) {
  const OwnedDib picture = numberedPicture(100, 60);
  const Stage right = render(0, picture, 2, 50);
  EXPECT_EQ(right.rect.right, 100);
  EXPECT_EQ(right.rect.top, 0);
  const Stage bottom = render(0, picture, 3, 50);
  EXPECT_EQ(bottom.rect.bottom, 60);
  EXPECT_EQ(bottom.rect.left, 0);
}

TEST(Gate, ShutIsThePicture) {
  const OwnedDib picture = numberedPicture(100, 60);
  const Stage stage = render(0, picture, 1, 0);
  EXPECT_EQ(stage.rect, (RECT{0, 0, 100, 60}));
  EXPECT_EQ(pixelsOf(stage.image), pixelsOf(picture));
}

TEST(Gate, StandsAnyArguments) {
  const OwnedDib picture = numberedPicture(20, 10);
  EXPECT_EQ(render(0, picture, 4, 45).result, 0);
  EXPECT_EQ(render(0, picture, -1, 45).result, 0);
  for (long orientation = 0; orientation < 4; ++orientation) {
    for (const long angle : {-90L, -89L, 270L, -1000L, 1000L, LONG_MAX, LONG_MIN})
      render(0, picture, orientation, angle);
  }
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

TEST(Spin, GoesFromThePictureToNothing) {
  const OwnedDib picture = numberedPicture(21, 11);
  EXPECT_EQ(pixelsOf(render(7, picture, 0, 0).image), pixelsOf(picture));
  EXPECT_EQ(pixelsOf(render(7, picture, 1, 0).image), pixelsOf(picture));
  const Stage edge = render(7, picture, 0, 90);
  EXPECT_EQ(edge.result, 1);
  EXPECT_EQ(edge.rect, (RECT{0, 5, 21, 5}));
  EXPECT_EQ(edge.image->biHeight, 0);
  EXPECT_EQ(render(7, picture, 0, 120).result, 0);  // its back
  EXPECT_EQ(render(7, picture, 2, 10).result, 0);
  for (const long angle : {LONG_MIN, -1000L, 1000L, LONG_MAX}) render(7, picture, 1, angle);
}

}  // namespace
