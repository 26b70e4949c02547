#include <cmath>

#include "effects/stage.h"

namespace {

using namespace test;

void expectPolygon(int effect, const OwnedDib& picture, long amount, const std::vector<POINT>& points) {
  const OwnedRegion region(CreatePolygonRgn(points.data(), static_cast<int>(points.size()), ALTERNATE));
  expectStage(render(effect, picture, amount, 7), cutPlainly(picture, region));
}

TEST(Iris, HasEightPoints) {
  // 25 pixels across are 25 * 60 / 100 = 15 down.
  expectPolygon(9, numberedPicture(100, 60), 25,
                {{25, 15}, {0, 30}, {25, 45}, {50, 60}, {75, 45}, {100, 30}, {75, 15}, {50, 0}});
  // 3 * 10 / 7 = 4.28, and the centre of 7 x 10 is (3, 5).
  expectPolygon(9, numberedPicture(7, 10), 3,
                {{0, 1}, {0, 5}, {0, 9}, {3, 10}, {6, 9}, {7, 5}, {6, 1}, {3, 0}});
}

TEST(Star, HasTheVerticesOfAPentagram) {
  // Unit vertices: outer (0, 1), (-0.951, 0.309), (-0.588, -0.809); inner (-0.2245, 0.309), (-0.3633,
  // -0.118), (0, -0.382). 100 percent of 100 x 100 is a scale of 100 / 0.690983 = 144.721.
  expectPolygon(3, numberedPicture(100, 100), 100,
                {{50, -94},
                 {17, 5},
                 {-87, 5},
                 {-2, 67},
                 {-35, 167},
                 {50, 105},
                 {135, 167},
                 {102, 67},
                 {187, 5},
                 {82, 5}});
  // The width decides: 30 percent of 201 x 50 is a scale of 60.3 / 0.726543 = 82.996.
  expectPolygon(3, numberedPicture(201, 50), 30,
                {{100, -57},
                 {81, 0},
                 {21, 0},
                 {70, 34},
                 {51, 92},
                 {100, 56},
                 {149, 92},
                 {130, 34},
                 {179, 0},
                 {119, 0}});
}

TEST(Star, CoversThePictureUpsideDownAsWell) {
  const OwnedDib picture = numberedPicture(100, 20);
  EXPECT_EQ(pixelsOf(render(3, picture, -1000, 0).image), pixelsOf(picture));
}

Stage spiralPlainly(const OwnedDib& source, long direction, long angle) {
  const int w = source->biWidth;
  const int h = source->biHeight;
  const double radius = std::sqrt(static_cast<double>(w * w + h * h)) / 2.0;
  OwnedRegion region = rectangle(w / 2, h / 2, w / 2 + 1, h / 2 + 1);
  POINT p{w / 2 + 1, h / 2};
  for (long i = 0; i < angle; ++i) {
    const long j = std::min(i + 20, angle);
    const double rho = static_cast<double>(j) * radius / 720.0;
    const double turned = static_cast<double>(direction == 1 ? 360 - j : j) * 3.1415926 / 180.0;
    const POINT q{static_cast<int>(std::cos(turned) * rho + w / 2.0),
                  static_cast<int>(h / 2.0 - std::sin(turned) * rho)};
    const POINT triangle[] = {{w / 2, h / 2}, p, q};
    join(region, OwnedRegion(CreatePolygonRgn(triangle, 3, ALTERNATE)));
    p = q;
  }
  return cutPlainly(source, region);
}

TEST(Spiral, MatchesItsPlainTwin) {
  expectTwin(4, {{1, 1}, {2, 16}, {7, 5}, {16, 33}, {100, 60}, {61, 101}}, {0, 1, 2},
             {-5, 0, 1, 19, 20, 21, 90, 100, 200, 359, 360, 500, 720, 800, 1100, 1300}, spiralPlainly);
}

}  // namespace
