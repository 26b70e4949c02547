#include <algorithm>
#include <cmath>
#include <numeric>

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
  std::vector<int> all(18);
  std::iota(all.begin(), all.end(), 0);
  EXPECT_EQ(numbers, all);
  EXPECT_EQ(dibkit::findEffect("no such"), nullptr);
  EXPECT_EQ(dibkit::findStyle(*dibkit::findEffect("slide"), "inside-out"), -1);
}

TEST(Catalogue, TurnsProgressIntoParameters) {
  struct Case {
    const char* effect;
    double progress;
    SIZE size;
    long a, b;
  };
  // 30.5 rounds away from zero; a progress outside 0 to 1 counts as the nearer end, no number as 0.
  for (const Case& c :
       {Case{"slide", 0.305, {100, 50}, 3, 31},
        {"slide", -0.2, {100, 50}, 3, 0},
        {"slide", 1.2, {100, 50}, 3, 100},
        {"slide", std::nan(""), {100, 50}, 3, 0},
        {"thaw", 0.25, {100, 50}, 75, 0},
        // The inner points reach the corners: half the width, for a picture of none that of one.
        {"iris", 1.0, {100, 50}, 50, 0},
        {"iris", 1.0, {0, -5}, 1, 0}}) {
    SCOPED_TRACE(testing::Message() << c.effect << " at " << c.progress);
    const auto [a, b] = dibkit::findEffect(c.effect)->parameters(c.progress, c.size, 3);
    EXPECT_EQ(a, c.a);
    EXPECT_EQ(b, c.b);
  }
}

}  // namespace
