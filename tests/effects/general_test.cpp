#include "effects/stage.h"

namespace {

using namespace test;

TEST(GeneralEffectFrame, MakesNothingInAnUnknownStyle) {
  const OwnedDib picture = numberedPicture(8, 6);
  const std::pair<int, long> styles[] = {{0, 4}, {6, 4}, {7, 2}, {8, 2}, {10, 2}, {11, 2}, {13, 5}, {17, 4}};
  for (const auto& [effect, count] : styles) {
    for (const long unknown : {-1L, count})
      EXPECT_EQ(render(effect, picture, unknown, 50).result, 0) << effect;
  }
}

TEST(GeneralEffectFrame, MakesNothingOfAStageThatShowsNothing) {
  const OwnedDib picture = numberedPicture(40, 40);
  for (const int effect : {5, 6, 8, 14}) EXPECT_EQ(render(effect, picture, 0, 0).result, 0) << effect;
}

// A region without pixels is still cut; only where no region was made at all there is no piece.
TEST(GeneralEffectFrame, CutsNothingToAnEmptyPiece) {
  const OwnedDib picture = numberedPicture(40, 30);
  for (const auto& [effect, a] : {std::pair{1, 0}, {2, 0}, {3, 0}, {9, 0}, {13, 1}, {15, 0}}) {
    const Stage stage = render(effect, picture, a, 0);
    EXPECT_EQ(stage.result, 1) << effect;
    EXPECT_EQ(stage.rect, RECT{}) << effect;
    EXPECT_EQ(stage.image->biWidth, 0) << effect;
  }
}

TEST(GeneralEffectFrame, BaseClassMakesNothing) {
  const OwnedDib picture = numberedPicture(8, 6);
  CGeneralEffectFrame effect(picture.get());
  EffectOutput output{};
  effect.SetParameters(1, 50);
  EXPECT_EQ(effect.GenerateFrame(&output), FALSE);
  EXPECT_EQ(output.image, nullptr);
}

}  // namespace
