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
  const Case cases[] = {{18, picture.get(), 0},    {-1, picture.get(), 0},  {INT_MIN, picture.get(), 0},
                        {10, picture.get(), 2},    {10, picture.get(), -1}, {11, picture.get(), 2},
                        {13, picture.get(), 5},    {13, picture.get(), -1}, {12, nullptr, 0},
                        {12, trueColour.get(), 0}, {12, noPixels.get(), 0}};
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

TEST(GeneralEffectFrame, BaseClassMakesNothing) {
  const OwnedDib picture = numberedPicture(8, 6);
  CGeneralEffectFrame effect(picture.get());
  EffectOutput output{};
  effect.SetParameters(1, 50);
  EXPECT_EQ(effect.GenerateFrame(&output), FALSE);
  EXPECT_EQ(output.image, nullptr);
}

// A host may be built with another compiler: it finds the operations by their slots.
TEST(GeneralEffectFrame, OperationsFollowTheDestructorInTheirSlots) {
  struct Probe : CGeneralEffectFrame {
    BOOL GenerateFrame(EffectOutput*) override { return 71; }
    void SetParameters(long a, long b) override { sum = a + b; }
    long sum = 0;
  } probe;
  using Slot = void (*)();
  Slot* table = nullptr;
  std::memcpy(&table, static_cast<const void*>(&probe), sizeof(table));
#if defined(_MSC_VER)
  constexpr int first = 1;
#else
  constexpr int first = 2;  // this compiler's table starts with two destructors
#endif
  EXPECT_EQ(reinterpret_cast<BOOL (*)(CGeneralEffectFrame*, EffectOutput*)>(table[first])(&probe, nullptr),
            71);
  reinterpret_cast<void (*)(CGeneralEffectFrame*, long, long)>(table[first + 1])(&probe, 30, 4);
  EXPECT_EQ(probe.sum, 34);
}

}  // namespace
