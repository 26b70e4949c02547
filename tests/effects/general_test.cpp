#include "effects/stage.h"

namespace {

using namespace test;

TEST(GeneralEffectFrame, RefusesWhatItCannotUseAndWritesNothing) {
  const OwnedDib picture = numberedPicture(8, 6);
  const OwnedDib trueColour = image(8, 6, 24);
  const OwnedDib noPixels = image(0, 6, 32);
  struct Case {
    int effect;
    BITMAPINFOHEADER* source;
    long a;
  };
  std::vector<Case> cases = {{18, picture.get(), 0}, {-1, picture.get(), 0},    {INT_MIN, picture.get(), 0},
                             {12, nullptr, 0},       {12, trueColour.get(), 0}, {12, noPixels.get(), 0}};
  struct Styles {
    int effect;
    long count;
  };
  for (const Styles& known : {Styles{0, 4}, {6, 4}, {7, 2}, {8, 2}, {10, 2}, {11, 2}, {13, 5}, {17, 4}}) {
    for (const long unknown : {-1L, known.count}) cases.push_back({known.effect, picture.get(), unknown});
  }
  for (const Case& wrong : cases) {
    auto* untouched = reinterpret_cast<BITMAPINFOHEADER*>(std::uintptr_t{4});
    RECT rect{1, 2, 3, 4};
    EXPECT_EQ(GeneralEffectFrame(wrong.effect, wrong.source, wrong.a, 50, &untouched, &rect), 0);
    EXPECT_EQ(untouched, reinterpret_cast<BITMAPINFOHEADER*>(std::uintptr_t{4}));
    EXPECT_EQ(rect, (RECT{1, 2, 3, 4}));
  }
  BITMAPINFOHEADER* piece = nullptr;
  RECT rect{};
  EXPECT_EQ(GeneralEffectFrame(12, picture.get(), 0, 50, nullptr, &rect), 0);
  EXPECT_EQ(GeneralEffectFrame(12, picture.get(), 0, 50, &piece, nullptr), 0);
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
