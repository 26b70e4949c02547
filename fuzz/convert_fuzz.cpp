#include <span>

#include "convert/convert.h"
#include "convert/palette_finish.h"
#include "drawing/device.h"
#include "palette/palette.h"
#include "support.h"

/// Every conversion and palette function with images, maps and numbers of the fuzzer's choice.
namespace {

using ColourMap = CMap<DWORD, DWORD&, int, int&>;
using IndexMap = CMap<int, int&, int, int&>;
using dibkit::OwnedDib;

/// Cancels after a few lines, or never.
class Progress : public CQorCommonProgress {
 public:
  explicit Progress(int lines) : lines_(lines) {}
  float SetProgress(float) override {
    if (--lines_ == 0) m_bCancel = 1;
    return 0;
  }

 private:
  int lines_;
};

ColourMap colourMap(fuzz::Input& input) {
  ColourMap map;
  const int count = input.byte() >= 250 ? 300 : input.byte() % 20;
  for (int i = 0; i < count; ++i) {
    DWORD key = static_cast<DWORD>(input.number());
    int value = input.byte() >= 250 ? input.number() : i;
    map.SetAt(key, value);
  }
  return map;
}

using Conversion = BITMAPINFOHEADER* (*)(BITMAPINFOHEADER*, CQorCommonProgress*);
using Reduction = BITMAPINFOHEADER* (*)(BITMAPINFOHEADER*, int, CQorCommonProgress*);
using Reindexing = BITMAPINFOHEADER* (*)(BITMAPINFOHEADER*, ColourMap*, CQorCommonProgress*);
using Convert = CBitmapConverter;

constexpr Conversion conversions[] = {
    Convert::Convert1BitsTo24Bits,       Convert::Convert4BitsTo24Bits,
    Convert::Convert8BitsTo24Bits,       Convert::Convert16BitsTo24Bits,
    Convert::Convert32BitsTo24Bits,      Convert::ConvertDIBTo24Bits,
    Convert::Convert1BitsTo16Bits,       Convert::Convert4BitsTo16Bits,
    Convert::Convert8BitsTo16Bits,       Convert::Convert24BitsTo16Bits,
    Convert::Convert32BitsTo16Bits,      Convert::ConvertDIBTo16Bits,
    Convert::ConvertDIBTo256Grays,       Convert::Convert24BitsDIBTo256GraysDIB,
    Convert::ConvertTrueDibToLowBitsDib,
};
constexpr Reduction reductions[] = {Convert::ConvertTrueDibTo1BitsDib, Convert::ConvertTrueDibTo4BitsDib,
                                    Convert::ConvertTrueDibTo8BitsDib, Convert::Convert8BitsGrayDibTo1BitsDib,
                                    Convert::Convert24BitsTo32Bits};
constexpr Reindexing reindexings[] = {
    Convert::Convert1BitsDibTo4BitsDib, Convert::Convert1BitsDibTo8BitsDib,
    Convert::Convert4BitsDibTo8BitsDib, Convert::Convert8BitsDibTo4BitsDib,
    Convert::Convert8BitsDibTo1BitsDib, Convert::Convert4BitsDibTo1BitsDib,
};

template <class Operation, std::size_t count>
Operation choose(const Operation (&operations)[count], fuzz::Input& input) {
  return operations[input.byte() % count];
}

void countColours(BITMAPINFOHEADER* dib, ColourMap& map) {
  CPaletteFuns::GetColorsNumFrom24BitsDib(dib);
  CPaletteFuns::GetColorsNumFromTrueDib(dib, &map);
  IndexMap indexes;
  CPaletteFuns::GetColorsNumFromPaletteDib(dib, &indexes);
  CPaletteFuns::IsPaletteEqual(dib, &map);
  CPaletteFuns::IsGrayScaleImage(dib);
  CPaletteFuns::GetThreshValueForm8BitsGrayDib(dib);
}

void finishFrame(BITMAPINFOHEADER* dib, fuzz::Input& input) {
  const dibkit::ConstView view(dib);
  if (!view || view.bitCount() != 24) return;
  dibkit::FrameColours colours;
  for (int y = 0; y < view.lines(); ++y) {
    const int left = input.byte() % (view.width() + 1);
    colours.note(view.row(y), left, view.width());
  }
  const OwnedDib result = colours.finish(OwnedDib(CBitmapCreator::Clone(dib)));
}

void paletteArrays(fuzz::Input& input, ColourMap& map) {
  std::vector<RGBQUAD> palette(1 + input.byte() % 8U);
  for (RGBQUAD& entry : palette) entry = {input.byte(), input.byte(), input.byte(), input.byte()};
  const int count = static_cast<int>(palette.size());
  const DWORD colour = static_cast<DWORD>(input.number());
  CPaletteFuns::GetNearestPaletteIndex(palette.data(), count, colour);
  CPaletteFuns::GetMaxDifferenceColor(palette.data(), count, input.byte(), input.byte(), input.byte());
  CPaletteFuns::SumDibImagePalEntries(map, palette.data(), count);
  CPaletteFuns::GrayPalette(palette.data(), count);
  CPaletteFuns::MakeGrayPalette(palette.data(), count);
}

/// By way of the platform: onto a logical palette, through a bitmap, and over the clipboard.
OwnedDib throughThePlatform(BITMAPINFOHEADER* dib, fuzz::Input& input) {
  std::vector<BYTE> block(4 + 4 * 256);
  auto* description = reinterpret_cast<LOGPALETTE*>(block.data());
  description->palVersion = 0x300;
  description->palNumEntries = static_cast<WORD>(input.byte() % 17U * 16U);
  for (BYTE& byte : std::span(block).subspan(4, 64)) byte = input.byte();
  CPalette palette;
  palette.CreatePalette(description);
  static constexpr UINT depths[] = {1, 4, 8, 16, 24, 32, 2, 0};
  const UINT depth = depths[input.byte() % 8];
  OwnedDib converted(ConvertDIBFormat(dib, depth, static_cast<HPALETTE>(palette.GetSafeHandle())));
  CBitmapConverter::CopyBitmapToClipboard(converted ? converted.get() : dib, nullptr);
  return converted;
}

OwnedDib throughABitmap(fuzz::Input& input) {
  const int width = input.byte() % 40;
  const int height = input.byte() % 40;
  const dibkit::OwnedBitmap bitmap(CreateBitmap(width, height, 1, input.byte() % 40U, nullptr));
  return OwnedDib(CBitmapConverter::ConvertDDBToDIB(bitmap.get()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  static constexpr int depths[] = {0, 1, 4, 8, 24};
  const std::uint8_t operation = input.byte();
  fuzz::Image image(input, depths[input.byte() % 5]);
  Progress progress(input.byte());
  OwnedDib result;
  switch (operation % 10) {
    case 0:
    case 1:
      result.reset(choose(conversions, input)(image.get(), &progress));
      break;
    case 2:
      // A palette of any size is made as asked; only the fuzzer's memory sets a limit.
      result.reset(choose(reductions, input)(image.get(), input.number() % 1000000, &progress));
      break;
    case 3: {
      ColourMap map = colourMap(input);
      result.reset(
          choose(reindexings, input)(image.get(), input.byte() % 2 != 0 ? &map : nullptr, &progress));
      break;
    }
    case 4: {
      ColourMap map = colourMap(input);
      result.reset(Convert24BitsDIBToLowerBitsDIB(image.get(), map));
      break;
    }
    case 5: {
      ColourMap map = colourMap(input);
      result.reset(CPaletteFuns::ChangeDibBitsPalette(image.get(), input.byte() % 4 != 0 ? &map : nullptr));
      break;
    }
    case 6: {
      ColourMap map = colourMap(input);
      countColours(image.get(), map);
      paletteArrays(input, map);
      break;
    }
    case 7:
      finishFrame(image.get(), input);
      break;
    case 8:
      result = throughABitmap(input);
      break;
    default:
      result = throughThePlatform(image.get(), input);
  }
  return 0;
}
