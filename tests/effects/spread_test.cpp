#include "effects/stage.h"

namespace {

using namespace test;

constexpr int effect = 13;

void expectRegion(const OwnedDib& picture, long shape, long amount, OwnedRegion region) {
  expectStage(render(effect, picture, shape, amount), cutPlainly(picture, region));
}

TEST(SmoothSpread, ShapesFollowTheirFormulas) {
  const OwnedDib picture = numberedPicture(101, 50);  // centre (50, 25)
  // Half the diagonal of 101 x 50 is 56.35, 40 percent of it 22.54.
  expectRegion(picture, 0, 40, OwnedRegion(CreateEllipticRgn(28, 3, 72, 47)));
  // 40 and 20, halved; 41 percent of 101 is 41, and half of that 20 again.
  expectRegion(picture, 1, 40, rectangle(30, 15, 70, 35));
  expectRegion(picture, 1, 41, rectangle(30, 15, 70, 35));
  // 101 / 0.717 = 140.86, 50 / 0.717 = 69.74; 40 percent are 56 and 27.
  expectRegion(picture, 2, 40, OwnedRegion(CreateEllipticRgn(22, 12, 78, 38)));
  // 101 / 0.8 = 126.25, 50 / 0.8 = 62.5; 40 percent are 50 and 25.
  expectRegion(picture, 3, 40, OwnedRegion(CreateRoundRectRgn(25, 13, 75, 37, 12, 6)));
  const POINT diamond[] = {{50, 5}, {10, 25}, {50, 45}, {90, 25}};
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
