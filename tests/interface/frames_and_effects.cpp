#include <cstring>
#include <type_traits>

#include <dibkit.h>

#include "expect_function.h"

namespace {

using Dib = BITMAPINFOHEADER*;
using Origin = const POINT&;

TEST(Interface, Frames) {
  expectFunction<void(BYTE*, int, int, RGBQUAD*, BYTE*, BYTE*, BYTE*)>(GetPixelRGB);
  expectFunction<int(Dib, Dib, Dib, Dib)>(CompareFrame);
  expectFunction<int(Dib, Dib, HRGN, Dib*, Dib*)>(CropFrame);
  expectFunction<Dib(Dib, HRGN)>(Crop32BitsDIB);
  expectFunction<HRGN(Dib, Dib, Origin, Origin, int, const SIZE&)>(MagicWandRegion);
  expectFunction<HRGN(Dib)>(CalcOpacityAreaRgn);
  expectFunction<void(Dib, int*, int*, int*, int*)>(CaclOpaqueBoundary);
  expectFunction<Dib(Dib, Dib, CQorCommonProgress*)>(RemoveNoiseDIB);
  expectFunction<Dib(Dib, int)>(Mosaic32BitsDIB);
  expectFunction<int(Dib, Dib, DWORD, BYTE, Dib*, Dib*)>(AlphaBlendByColor);
  expectFunction<int(Dib, Dib, Origin, Dib, Dib, Origin, DWORD, BYTE, Dib*, Dib*)>(AlphaBlendByFrame);
  expectFunction<int(Dib, Dib, Origin, Dib, Dib, Origin, Dib*, Dib*, POINT*)>(MergeFrames);
  expectFunction<int(Dib, Dib, Origin, Dib, Dib, Origin, DWORD, WORD, const SIZE&, Dib*, Dib*, POINT*)>(
      AlphaBlendByFrame2);
  expectFunction<int(Dib, Dib, DWORD, DWORD, int, int, Dib*, Dib*)>(ExtFillFrame);
  expectFunction<int(Dib, Dib, DWORD, DWORD, int, int, Origin, Dib*, Dib*)>(ExtFillAdjacentArea);
  expectFunction<int(Dib, Dib, Origin, const SIZE&, DWORD, int, int, Origin, Dib*, Dib*, POINT*)>(
      ExtFillBkgnd);
  expectFunction<Dib(Dib, Dib, DWORD, int, int, int, int)>(InflateDib);
  expectFunction<void(BYTE*, int, int, RECT&)>(ExclusiveWhiteFill2BitsDib);
  expectFunction<Dib(Dib, const RECT&, Origin, Origin, int, int)>(PaintLineOnPic);
  expectFunction<Dib(const RECT&, POINT*, int, int, int, POINT*)>(PaintLineOnPic2);
  expectFunction<Dib(const RECT&, int, int, int, Origin, POINT*)>(PaintShapeOnPic);
  expectFunction<Dib(POINT*, int, int, int, POINT*)>(PaintPolygonOnPic);
}

TEST(Interface, OutputMasks) {
  using M = CMaskedBitmapTransform;
  expectFunction<int(Dib, DWORD, DWORD, Dib*, Dib*)>(M::Spilt32BitsDIBForGIF);
  expectFunction<int(Dib, Dib, Dib*, Dib*, int, int, int, int)>(M::ExpandDIB);
  expectFunction<Dib(Dib, Dib, DWORD)>(M::OutputDIBStream);
  expectFunction<Dib(Dib, HRGN)>(M::FillMask);
  expectFunction<void(Dib, const RECT&, bool)>(M::FillMaskDIBBits);
  for (auto* member : {M::MarkedMaskDIB, M::MarkedBmpDIB, M::MarkHighBitsDIB, M::MarkLowBitsDIB}) {
    expectFunction<Dib(Dib, Dib)>(member);
  }
}

TEST(Interface, Effects) {
  expectFunction<int(int, Dib, long, long, Dib*, RECT*)>(GeneralEffectFrame);
  expectFunction<Dib(Dib, Dib, unsigned long, int, int)>(DiamondEffectDIB);
  expectFunction<Dib(Dib, Dib, long, long)>(GenerateRunPushEffect);
  expectFunction<Dib(Dib, int)>(GenerateRippleEffect);
}

/// The operation in a slot of an object's virtual table, on compilers whose tables start with the first
/// virtual and whose pointers to members start with the address of the code. Called as a member, since 32-bit
/// Windows passes the object in a register.
template <class Operation>
Operation inSlot(const void* object, int index) {
  void* const* table;
  std::memcpy(&table, object, sizeof(table));
  Operation operation{};
  std::memcpy(&operation, &table[index], sizeof(table[index]));
  return operation;
}

TEST(Interface, ProgressIsReportedThroughTheFirstSlot) {
  class Probe : public CQorCommonProgress {
   public:
    float SetProgress(float fraction) override {
      last = fraction;
      return 0;
    }
    float last = -1;
  };
  Probe probe;
  const auto report = inSlot<float (CQorCommonProgress::*)(float)>(&probe, 0);
  (probe.*report)(0.25F);
  EXPECT_EQ(probe.last, 0.25F);
  static_assert(sizeof(probe.m_bCancel) == 1);
}

TEST(Interface, EffectsRenderThroughTheSlotAfterTheDestructor) {
  class Probe : public CGeneralEffectFrame {
   public:
    BOOL GenerateFrame(EffectOutput* output) override {
      output->rect.left = 7;
      return TRUE;
    }
    void SetParameters(long a, long b) override { sum = a + b; }
    long sum = 0;
  };
  Probe probe;
  // Where a destructor takes two slots (complete and deleting), the others move down by one.
#if defined(_MSC_VER)
  constexpr int afterDestructor = 1;
#else
  constexpr int afterDestructor = 2;
#endif
  EffectOutput output{};
  const auto generate = inSlot<BOOL (CGeneralEffectFrame::*)(EffectOutput*)>(&probe, afterDestructor);
  EXPECT_EQ((probe.*generate)(&output), TRUE);
  EXPECT_EQ(output.rect.left, 7);
  const auto set = inSlot<void (CGeneralEffectFrame::*)(long, long)>(&probe, afterDestructor + 1);
  (probe.*set)(3, 4);
  EXPECT_EQ(probe.sum, 7);
  static_assert(sizeof(CGeneralEffectFrame) == 2 * sizeof(void*));
}

TEST(Interface, TheSplittersOnlyVirtualCutsThePiece) {
  // One pointer for the virtual table, four images, two points and four counts; no virtual destructor.
  static_assert(sizeof(CSpiltEmbededDIB) == 5 * sizeof(void*) + 2 * 8 + 4 * 4);
  static_assert(sizeof(CSpiltEmbededDIBEx) == sizeof(CSpiltEmbededDIB));
  static_assert(!std::has_virtual_destructor_v<CSpiltEmbededDIB>);
  static_assert(std::has_virtual_destructor_v<CRippleEffect>);
  class Probe : public CSpiltEmbededDIB {
   public:
    int CropEmbededDIB(Dib*, Dib*, POINT*, int makeSameTransparent, int* sameFound) const override {
      return 100 + makeSameTransparent + (sameFound != nullptr ? 10 : 0);
    }
    using CSpiltEmbededDIB::CalcBoundaryBottomRightInfo;
    using CSpiltEmbededDIB::CalcBoundaryTopLeftInfo;
  };
  const Probe probe;
  int same = 0;
  EXPECT_EQ(probe.SplitOpacity(nullptr, nullptr, nullptr, &same), 110);
  // The last argument goes nowhere: a splitter that makes equal pixels transparent does not tell of them.
  EXPECT_EQ(probe.SplitTransparency(nullptr, nullptr, nullptr, &same), 101);
  const auto crop = inSlot<int (CSpiltEmbededDIB::*)(Dib*, Dib*, POINT*, int, int*) const>(&probe, 0);
  EXPECT_EQ((probe.*crop)(nullptr, nullptr, nullptr, 1, nullptr), 101);
}

}  // namespace
