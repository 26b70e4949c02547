#include <algorithm>
#include <cmath>

#include "effects/stage.h"

namespace {

using namespace test;
using dibkit::Effect;
using dibkit::StyleParameter;

TEST(Catalogue, FindsEffectsAndStylesByName) {
  const Effect* slide = dibkit::findEffect("slide");
  ASSERT_NE(slide, nullptr);
  EXPECT_EQ(slide->number, 12);
  EXPECT_EQ(dibkit::findStyle(*slide, "bottom-right"), 5);
  EXPECT_EQ(dibkit::findStyle(*slide, "inside-out"), -1);
  EXPECT_EQ(dibkit::findEffect("no such"), nullptr);
}

TEST(Catalogue, NamesAreUniqueAndStylesExist) {
  for (const Effect& effect : dibkit::effects()) {
    SCOPED_TRACE(effect.name);
    EXPECT_EQ(dibkit::findEffect(effect.name), &effect);
    EXPECT_EQ(effect.isWholeFrame(), effect.number < 0);
    EXPECT_EQ(effect.styleParameter == StyleParameter::none, effect.isWholeFrame() || effect.styles.empty());
    EXPECT_LT(effect.defaultStyle, std::max<int>(1, static_cast<int>(effect.styles.size())));
    for (std::size_t i = 0; i < effect.styles.size(); ++i) {
      EXPECT_EQ(dibkit::findStyle(effect, effect.styles[i].name), static_cast<int>(i));
    }
  }
}

TEST(Catalogue, RoutesStyleAndAmount) {
  const SIZE size{100, 50};
  const auto stage = dibkit::findEffect("slide")->parameters(0.305, size, 3);
  EXPECT_EQ(stage.a, 3);
  EXPECT_EQ(stage.b, 31);  // 30.5 rounds away from zero
}

TEST(Catalogue, HoldsEveryNumberedEffectOnce) {
  for (int number = 0; number < 18; ++number) {
    const auto all = dibkit::effects();
    EXPECT_EQ(std::count_if(all.begin(), all.end(), [&](const Effect& e) { return e.number == number; }), 1)
        << number;
  }
}

TEST(Catalogue, ProgressOutsideItsRangeCountsAsTheNearerEnd) {
  const Effect& slide = *dibkit::findEffect("slide");
  const SIZE size{100, 50};
  EXPECT_EQ(slide.parameters(-0.2, size, 0).b, 0);
  EXPECT_EQ(slide.parameters(1.2, size, 0).b, 100);
  EXPECT_EQ(slide.parameters(std::nan(""), size, 0).b, 0);
}

TEST(Fade, WeighsColoursByOpacity) {
  const OwnedDib in = imageOf(3, 1, 32, {0xFF0000C8, 0xFF112233, 0x00FFFFFF});
  const OwnedDib out = imageOf(3, 1, 32, {0xFF000064, 0x00FFFFFF, 0x00112233});
  const Effect& fade = *dibkit::findEffect("fade");
  // Progress 0.4 is a weight of 102 of 255.
  const OwnedDib frame = fade.compose(in.get(), out.get(), 0, 0.4);
  EXPECT_EQ(pixel(frame, 0, 0), 0xFF00008CU);  // 100 + 0.4 * 100
  EXPECT_EQ(pixel(frame, 1, 0), 0x66112233U);  // the transparent white doesn't stain; opacity 0.4 * 255
  EXPECT_EQ(pixel(frame, 2, 0), 0U);
  EXPECT_EQ(pixelsOf(fade.compose(in.get(), out.get(), 0, 0.0)), pixelsOf(out));
  EXPECT_EQ(pixelsOf(fade.compose(in.get(), out.get(), 0, 1.0)), pixelsOf(in));
}

TEST(Fade, OpaqueRowsComeOutLikeMixedOnes) {
  Random random(3);
  OwnedDib in = randomImage(50, 2, 32, random);
  OwnedDib out = randomImage(50, 2, 32, random);
  for (int x = 0; x < 50; ++x) {
    // Row 0 opaque but for its last pixel, row 1 a wholly opaque copy.
    for (const OwnedDib* dib : {&in, &out}) {
      const DWORD opaque = pixel(*dib, x, 0) | 0xFF000000;
      setPixel(*dib, x, 0, x == 49 ? 0x33445566 : opaque);
      setPixel(*dib, x, 1, opaque);
    }
  }
  const Effect& fade = *dibkit::findEffect("fade");
  for (int step = 1; step < 20; ++step) {
    const OwnedDib frame = fade.compose(in.get(), out.get(), 0, step / 20.0);
    for (int x = 0; x < 49; ++x) ASSERT_EQ(pixel(frame, x, 0), pixel(frame, x, 1));
  }
}

TEST(Fade, RefusesPicturesThatDoNotMatch) {
  const Effect& fade = *dibkit::findEffect("fade");
  const OwnedDib a = image(4, 4, 32);
  const OwnedDib b = image(4, 5, 32);
  const OwnedDib c = image(4, 4, 24);
  EXPECT_EQ(fade.compose(a.get(), b.get(), 0, 0.5), nullptr);
  EXPECT_EQ(fade.compose(a.get(), c.get(), 0, 0.5), nullptr);
  EXPECT_EQ(fade.compose(nullptr, a.get(), 0, 0.5), nullptr);
  const OwnedDib noPixels = image(0, INT_MAX, 32);
  EXPECT_EQ(fade.compose(noPixels.get(), noPixels.get(), 0, 0.5), nullptr);
}

}  // namespace
