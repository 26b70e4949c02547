#include <algorithm>
#include <cmath>

#include "effects/stage.h"

namespace {

using namespace test;
using dibkit::Effect;

TEST(Catalogue, HoldsEveryEffectAndStyleOnce) {
  std::vector<int> numbers;
  for (const Effect& effect : dibkit::effects()) {
    SCOPED_TRACE(effect.name);
    EXPECT_EQ(dibkit::findEffect(effect.name), &effect);
    if (effect.number) numbers.push_back(*effect.number);
    EXPECT_LT(effect.defaultStyle, std::max<int>(1, static_cast<int>(effect.styles.size())));
    for (std::size_t i = 0; i < effect.styles.size(); ++i) {
      EXPECT_EQ(dibkit::findStyle(effect, effect.styles[i].name), static_cast<int>(i));
    }
  }
  std::ranges::sort(numbers);
  EXPECT_EQ(numbers, (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17}));
}

TEST(Catalogue, TurnsProgressIntoParameters) {
  struct Case {
    const char* effect;
    double progress;
    SIZE size;
    long a, b;
  };
  // 30.5 rounds away from zero; a progress outside 0 to 1 counts as the nearer end, no number as 0. The inner
  // points of the iris reach the corners: half the width, for a picture of none that of one.
  for (const Case& c : {Case{"slide", 0.305, {100, 50}, 3, 31},
                        {"slide", -0.2, {100, 50}, 3, 0},
                        {"slide", 1.2, {100, 50}, 3, 100},
                        {"slide", std::nan(""), {100, 50}, 3, 0},
                        {"thaw", 0.25, {100, 50}, 75, 0},
                        {"iris", 1.0, {100, 50}, 50, 0},
                        {"iris", 1.0, {0, -5}, 1, 0},
                        // Eleven columns of one pixel do not reach the end; beyond 100 everything shows.
                        {"mosaic-sweep", 1.0, {19, 20}, 3, 101},
                        {"mosaic-sweep", 1.0, {100, 50}, 3, 100}}) {
    const auto [a, b] = dibkit::findEffect(c.effect)->parameters(c.progress, c.size, 3);
    EXPECT_TRUE(a == c.a && b == c.b) << c.effect << " at " << c.progress << ": " << a << ' ' << b;
  }
}

TEST(GeneralEffectFrame, GivesTheResultsAndPlacesWorkedOutByHand) {
  struct Case {
    int effect;
    SIZE picture;
    long a, b;
    int result;
    RECT place;
  };
  const Case cases[] = {
      // The diagonal of 200 x 195 is at 45.7 degrees and counts as 45. At 180 - 45 degrees the hand therefore
      // still ends on the right side, at tan 45 * 100 + 97.5 = 197, two rows below the picture.
      {1, {100, 100}, 1, 90, 1, {50, 0, 100, 50}},
      {1, {200, 195}, 1, 135, 1, {100, 0, 200, 197}},
      // Half of 101 is 50 on either side of column 50: the last column stays away, deliberately.
      {13, {100, 60}, 1, 100, 1, {0, 0, 100, 60}},
      {13, {101, 61}, 1, 100, 1, {0, 0, 100, 60}},
      // 19 columns are eleven cells of one column: eight are left over until more than everything shows.
      {5, {19, 20}, 100, 0, 1, {0, 0, 11, 20}},
      {5, {19, 20}, 101, 0, 1, {0, 0, 19, 20}},
      // Upside down, the star covers the picture as well.
      {3, {100, 20}, -1000, 0, 1, {0, 0, 100, 20}},
      // A region without pixels is still cut; only where no region was made at all there is no piece.
      {3, {40, 30}, 0, 0, 1, {}},
      {9, {40, 30}, 0, 0, 1, {}},
      {13, {40, 30}, 1, 0, 1, {}},
      {8, {40, 40}, 0, 0, 0, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.effect << '/' << c.a << " at " << c.b);
    const Stage stage = render(c.effect, numberedPicture(c.picture.cx, c.picture.cy), c.a, c.b);
    EXPECT_EQ(stage.result, c.result);
    EXPECT_EQ(stage.rect, c.place);
  }
  // Unknown styles; the effects that are not here take any.
  for (const auto& [effect, count] :
       {std::pair{0, 4L}, {6, 4L}, {7, 2L}, {8, 2L}, {10, 2L}, {11, 2L}, {13, 5L}, {17, 4L}}) {
    for (const long style : {-1L, count})
      EXPECT_EQ(render(effect, numberedPicture(8, 6), style, 50).result, 0) << effect;
  }
}

}  // namespace
