#include "effects/stage.h"

namespace {

using namespace test;

constexpr int effect = 13;

void expectRegion(const OwnedDib& picture, long shape, long amount, OwnedRegion region) {
  expectStage(render(effect, picture, shape, amount), cutPlainly(picture, region));
}

TEST(SmoothSpread, ShapesFollowTheirFormulas) {
  const OwnedDib picture = numberedPicture(403, 200);  // centre (201, 100)
  // Half the diagonal of 403 x 200 is 224.95, 40 percent of it 89.98.
  expectRegion(picture, 0, 40, OwnedRegion(CreateEllipticRgn(112, 11, 290, 189)));
  // 161 and 80, halved.
  expectRegion(picture, 1, 40, rectangle(121, 60, 281, 140));
  // 403 / 0.717 = 562.06, 200 / 0.717 = 278.94; 40 percent are 224 and 111.
  expectRegion(picture, 2, 40, OwnedRegion(CreateEllipticRgn(89, 45, 313, 155)));
  // 403 / 0.8 = 503.75, 200 / 0.8 = 250; 40 percent are 201 and 100.
  expectRegion(picture, 3, 40, OwnedRegion(CreateRoundRectRgn(101, 50, 301, 150, 50, 25)));
  const POINT diamond[] = {{201, 20}, {40, 100}, {201, 180}, {362, 100}};
  expectRegion(picture, 4, 40, OwnedRegion(CreatePolygonRgn(diamond, 4, ALTERNATE)));
}

TEST(SmoothSpread, FullRectangleCoversAnEvenPictureOnly) {
  EXPECT_EQ(render(effect, numberedPicture(100, 60), 1, 100).rect, (RECT{0, 0, 100, 60}));
  // Half of 101 is 50 on either side of column 50: the last column stays away, deliberately.
  EXPECT_EQ(render(effect, numberedPicture(101, 61), 1, 100).rect, (RECT{0, 0, 100, 60}));
}

TEST(SmoothSpread, MirrorsANegativeSize) {
  const OwnedDib picture = numberedPicture(40, 30);
  for (long shape = 0; shape < 5; ++shape) {
    expectStage(render(effect, picture, shape, -60), render(effect, picture, shape, 60));
  }
}

}  // namespace
