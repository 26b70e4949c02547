#include <type_traits>

#include <dibkit.h>

#include "expect_function.h"

namespace {

using Dib = BITMAPINFOHEADER*;
using Progress = CQorCommonProgress*;
using ColourMap = CMap<DWORD, DWORD&, int, int&>;
using IndexMap = CMap<int, int&, int, int&>;
using Origin = const POINT&;
using MaskOrigin = const CPoint&;

TEST(Interface, Creation) {
  expectFunction<Dib(int, int, int, int)>(CBitmapCreator::CreateDibImage);
  expectFunction<Dib(const BITMAPINFOHEADER*)>(CBitmapCreator::Clone);
}

TEST(Interface, Conversions) {
  using C = CBitmapConverter;
  for (auto* member :
       {C::Convert1BitsTo24Bits, C::Convert4BitsTo24Bits, C::Convert8BitsTo24Bits, C::Convert16BitsTo24Bits,
        C::Convert32BitsTo24Bits, C::ConvertDIBTo24Bits, C::Convert1BitsTo16Bits, C::Convert4BitsTo16Bits,
        C::Convert8BitsTo16Bits, C::Convert24BitsTo16Bits, C::Convert32BitsTo16Bits, C::ConvertDIBTo16Bits,
        C::ConvertTrueDibToLowBitsDib, C::Convert24BitsDIBTo256GraysDIB, C::ConvertDIBTo256Grays}) {
    expectFunction<Dib(Dib, Progress)>(member);
  }
  for (auto* member : {C::Convert24BitsTo32Bits, C::ConvertTrueDibTo8BitsDib, C::ConvertTrueDibTo4BitsDib,
                       C::ConvertTrueDibTo1BitsDib, C::Convert8BitsGrayDibTo1BitsDib}) {
    expectFunction<Dib(Dib, int, Progress)>(member);
  }
  for (auto* member :
       {C::Convert1BitsDibTo4BitsDib, C::Convert1BitsDibTo8BitsDib, C::Convert4BitsDibTo8BitsDib,
        C::Convert8BitsDibTo4BitsDib, C::Convert8BitsDibTo1BitsDib, C::Convert4BitsDibTo1BitsDib}) {
    expectFunction<Dib(Dib, ColourMap*, Progress)>(member);
  }
  expectFunction<Dib(HBITMAP)>(C::ConvertDDBToDIB);
  expectFunction<int(Dib, HWND)>(C::CopyBitmapToClipboard);
  expectFunction<Dib(Dib, ColourMap&)>(Convert24BitsDIBToLowerBitsDIB);
  expectFunction<Dib(Dib, UINT, HPALETTE)>(ConvertDIBFormat);
}

TEST(Interface, Palettes) {
  using P = CPaletteFuns;
  expectFunction<int(Dib)>(P::GetColorsNumFrom24BitsDib);
  expectFunction<int(Dib, ColourMap*)>(P::GetColorsNumFromTrueDib);
  expectFunction<int(Dib, IndexMap*)>(P::GetColorsNumFromPaletteDib);
  expectFunction<int(ColourMap&, RGBQUAD*, int)>(P::SumDibImagePalEntries);
  expectFunction<Dib(Dib, ColourMap*)>(P::ChangeDibBitsPalette);
  expectFunction<int(Dib, ColourMap*)>(P::IsPaletteEqual);
  expectFunction<int(Dib)>(P::IsGrayScaleImage);
  expectFunction<void(RGBQUAD*, int)>(P::GrayPalette);
  expectFunction<void(RGBQUAD*, int)>(P::MakeGrayPalette);
  expectFunction<BYTE(RGBQUAD*, int, DWORD)>(P::GetNearestPaletteIndex);
  expectFunction<int(RGBQUAD*, int, BYTE, BYTE, BYTE)>(P::GetMaxDifferenceColor);
  expectFunction<int(Dib)>(P::GetThreshValueForm8BitsGrayDib);
}

TEST(Interface, Images32) {
  using D = CDIB32;
  static_assert(sizeof(D) == sizeof(void*) && std::has_virtual_destructor_v<D>);
  expectFunction<Dib(int, int)>(D::CreateBlank32BitsDIB);
  expectFunction<Dib(int, int, COLORREF, BYTE)>(D::CreateSimple32BitsDIB);
  expectFunction<Dib(Dib, Dib, BYTE, BYTE)>(D::ConvertTo32BitsDIB);
  expectFunction<Dib(Dib, Dib)>(D::ConvertBitField16BitsDIBTo32BitsDIB);
  expectFunction<void(DWORD, int&, int&)>(D::CalcuMaskShift);
  expectFunction<void(Dib, COLORREF)>(D::Make32BitsSimpleColorDIB);
  expectFunction<void(Dib, BYTE)>(D::MakeAllPixelsSameOpacity);
  expectFunction<void(Dib, BYTE)>(D::Reduce32BitsDIBOpacity);
  expectFunction<void(Dib, BYTE, BYTE, BYTE)>(D::Fill32DIBBackground);
  expectFunction<BOOL(Dib)>(D::IsFullOpacity32BitsImage);
  expectFunction<BOOL(Dib)>(D::IsTranslucence32BitsImage);
  expectFunction<BOOL(Dib, Origin)>(D::IsIn32BitsDIB);
  expectFunction<int(const void*, const void*)>(D::CompareColors);
  expectFunction<void(Dib, int*, int*, int*, int*)>(D::CheckBlankBorder);
  expectFunction<Dib(Dib, int, int, int, int)>(D::Trim32BitsDIB);
  expectFunction<Dib(Dib)>(D::CreateIconMaskFromAlphaChannel);
  expectFunction<Dib(Dib, COLORREF)>(D::CreateParaShadowDIB);
  expectFunction<int(RECT*, int, const RECT&)>(D::AddRect);
}

TEST(Interface, Compositing32) {
  using D = CDIB32;
  expectFunction<BYTE(BYTE, BYTE)>(D::CalcuOpacity);
  expectFunction<BYTE(BYTE, BYTE, BYTE, BYTE, BYTE)>(D::CalcuRGBValue);
  for (auto* member : {D::CombineBlock, D::BitBlt32DIBPlain, D::BitBlt32DIBMMX, D::BitBlt32DIB,
                       D::Mix32BitsDIBMMX, D::BitBltDIBAlphaChannelPlain, D::CopyBlock}) {
    expectFunction<void(Dib, Origin, Dib, Origin, BYTE)>(member);
  }
  expectFunction<void(Dib, Origin, Dib, Origin, BYTE)>(D::Erase32BitsBlock);
  expectFunction<void(Dib, Origin, Dib, Origin, BYTE, Dib, MaskOrigin)>(D::Erase32BitsBlock);
  expectFunction<void(Dib, Origin, Dib, Origin, BYTE, Dib, MaskOrigin)>(D::Mix32BitsDIBMMX_Mask);
  expectFunction<void(Dib, Origin, Dib, Origin)>(D::TransformBlock);
  expectFunction<void(Dib, Origin, Dib, Origin)>(D::TransformAlphaChannelBlock);
  expectFunction<BOOL(Dib, Origin, BYTE, Dib, Origin, BYTE, Dib*, POINT*)>(D::CombineDIBs);
  expectFunction<BOOL(Dib, Origin, Dib, Origin, Dib*, POINT*)>(D::Merge32DIBs);
  expectFunction<BOOL(Dib, POINT&, Dib, POINT&, Dib*, POINT*)>(D::Merge32BitsDIB);
  expectFunction<BOOL(Dib, POINT&, const RECT&, Dib*, POINT*)>(D::Merge32BitsDIB);
  expectFunction<BOOL(Dib, POINT&, COLORREF, const RECT&, Dib*, POINT*)>(D::Merge32BitsDIB);
}

TEST(Interface, FillsAndWands32) {
  using D = CDIB32;
  expectFunction<BOOL(Dib, DWORD, COLORREF, int, int, int, Origin, RECT*)>(D::ExtFillConnectedPixels);
  expectFunction<BOOL(Dib, DWORD, COLORREF, int, int, Origin, Dib, MaskOrigin)>(
      D::ExtFillConnectedPixels_Mask);
  expectFunction<BOOL(Dib, DWORD, COLORREF, int, int)>(D::ExtFill32BitsDIB);
  expectFunction<BOOL(Dib, DWORD, COLORREF, int, int, Dib, MaskOrigin)>(D::ExtFill32BitsDIB_Mask);
  expectFunction<BOOL(Dib, COLORREF, int, Origin)>(D::ExtFillConnectedTransPixels);
  expectFunction<BOOL(Dib, COLORREF, int, Origin, Dib, MaskOrigin)>(D::ExtFillConnectedTransPixels_Mask);
  expectFunction<BOOL(Dib, COLORREF, int)>(D::ExtFillTransBlock);
  expectFunction<BOOL(Dib, COLORREF, int, Dib, MaskOrigin)>(D::ExtFillTransBlock_Mask);
  expectFunction<BOOL(Dib, const RECT&, BYTE)>(D::Fill32DIBOpacityArea);
  expectFunction<BOOL(Dib, HRGN, BYTE)>(D::Fill32DIBOpacityArea);
  expectFunction<HRGN(Dib, POINT, int)>(D::MagicWandRegion);
  expectFunction<HRGN(Dib, POINT, int)>(D::MagicWandRegion2);
}

TEST(Interface, ScalingAndFilters32) {
  using D = CDIB32;
  expectFunction<void(Dib, Dib, Origin, DWORD)>(D::Stretch32DIB);
  expectFunction<void(Dib, Dib, Origin, DWORD, BYTE)>(D::Stretch32DIB);
  expectFunction<void(Dib, Dib, Origin, DWORD)>(D::Stretch32DIBMMX);
  expectFunction<void(Dib, Dib, Origin, DWORD, BYTE)>(D::Stretch32DIBMMX);
  for (auto* member : {D::ZoomIn32DIB, D::ZoomIn32DIBMMX, D::ZoomOut32DIB, D::ZoomOut32DIBMMX}) {
    expectFunction<void(Dib, Origin, Dib, Origin, int, BYTE)>(member);
  }
  expectFunction<void(Dib, Origin, Dib, Dib, Origin)>(D::BitBlt8BitsDIB);
  expectFunction<void(Dib, Origin, Dib, Dib, Origin, int)>(D::ZoomIn8BitsDIB);
  expectFunction<void(Dib, Origin, Dib, Dib, Origin, int)>(D::ZoomOut8BitsDIB);
  expectFunction<void(Dib, int)>(D::MedianFilter32BitsImage);
  expectFunction<void(Dib, int)>(D::Sharpen32BitsImage);
  expectFunction<void(Dib, Dib, Origin, int, int, HRGN)>(D::SmoothBlock);
  expectFunction<void(Dib, Dib, Origin, int, int, HRGN)>(D::SmoothFillBlock);
  expectFunction<void(Dib, Dib, Dib, Origin, int, int, HRGN)>(D::SmoothFillBlock);
}

TEST(Interface, Overlays32) {
  using D = CDIB32;
  expectFunction<void(Dib, BYTE, BYTE, BYTE, BYTE, BYTE, BYTE, int, int)>(D::Init32DIBBackground);
  expectFunction<void(Dib, MaskOrigin, COLORREF)>(D::Init32DIBWithHatedLines);
  for (auto* member :
       {D::DrawTopHatchedLine, D::DrawRightHatchedLine, D::DrawBottomHatchedLine, D::DrawLeftHatchedLine}) {
    expectFunction<int(Dib, Origin, int, int, int, BYTE, BYTE, BYTE, BYTE, BYTE, BYTE, int)>(member);
  }
  expectFunction<Dib(const RECT&, Origin, Origin, int, int, int, HRGN, POINT*)>(D::GenerateLine);
  expectFunction<void(Dib, Origin, const RECT&, int)>(D::DrawSelectedFlag);
}

}  // namespace
