#include "effects/stage.h"

namespace {

using namespace test;

constexpr int effect = 12;

TEST(SmoothSlide, CutsAndPlacesByDirection) {
  // 100 x 50 at 30 percent: 30 columns and 15 rows have come in.
  struct Case {
    long direction;
    int cutLeft, cutTop;
    RECT place;
  };
  const Case cases[] = {{0, 70, 0, {0, 0, 30, 50}},  {1, 70, 35, {0, 0, 30, 15}},
                        {2, 0, 35, {0, 0, 100, 15}}, {3, 0, 35, {70, 0, 100, 15}},
                        {4, 0, 0, {70, 0, 100, 50}}, {5, 0, 0, {70, 35, 100, 50}},
                        {6, 0, 0, {0, 35, 100, 50}}, {7, 70, 0, {0, 35, 30, 50}},
                        {8, 0, 0, {0, 0, 100, 50}},  {-1, 0, 0, {0, 0, 100, 50}}};
  const OwnedDib picture = numberedPicture(100, 50);
  for (const Case& expected : cases) {
    SCOPED_TRACE(expected.direction);
    const Stage stage = render(effect, picture, expected.direction, 30);
    ASSERT_EQ(stage.result, 1);
    EXPECT_EQ(stage.rect, expected.place);
    ASSERT_EQ(stage.image->biWidth, expected.place.right - expected.place.left);
    ASSERT_EQ(stage.image->biHeight, expected.place.bottom - expected.place.top);
    for (int y = 0; y < stage.image->biHeight; ++y) {
      for (int x = 0; x < stage.image->biWidth; ++x) {
        ASSERT_EQ(pixel(stage.image, x, y), pixel(picture, expected.cutLeft + x, expected.cutTop + y));
      }
    }
  }
}

TEST(SmoothSlide, TruncatesWhatHasComeIn) {
  const Stage stage = render(effect, numberedPicture(7, 3), 1, 50);
  EXPECT_EQ(stage.rect, (RECT{0, 0, 3, 1}));
}

}  // namespace
