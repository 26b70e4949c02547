#include "convert/convert.h"
#include "convert/fill_rows.h"
#include "dib/view.h"
#include "kernels/conversion.h"
#include "palette/palette.h"
#include "raster/index_rows.h"

namespace dibkit {
namespace {

OwnedDib convertToGrays(const BITMAPINFOHEADER* dib, CQorCommonProgress* progress) {
  const ConstView source = viewOfDepth(dib, Bgr24::bits);
  if (!source) return nullptr;
  OwnedDib result = createDib(source.width(), source.height(), Index8::bits, 0, InitialPixels::unwritten);
  if (!result) return nullptr;
  CPaletteFuns::MakeGrayPalette(paletteOf(result.get()), 256);
  const auto toGray = kernels<ConversionKernels>().bgr24ToGray;
  return fillRows(std::move(result), progress,
                  [&](BYTE* to, int y) { toGray(source.row(y), source.width(), to); });
}

/// A stage that is half of the whole operation's progress.
class HalfOfProgress {
 public:
  explicit HalfOfProgress(CQorCommonProgress* progress) : progress_(progress) {
    if (progress_ != nullptr) progress_->BeginSubRange(0.5F);
  }
  ~HalfOfProgress() {
    if (progress_ != nullptr) progress_->EndSubRange();
  }
  HalfOfProgress(const HalfOfProgress&) = delete;
  HalfOfProgress& operator=(const HalfOfProgress&) = delete;

 private:
  CQorCommonProgress* progress_;
};

OwnedDib convertToGraysInTwoStages(BITMAPINFOHEADER* dib, CQorCommonProgress* progress) {
  OwnedDib colours;
  {
    const HalfOfProgress stage(progress);
    colours.reset(CBitmapConverter::ConvertDIBTo24Bits(dib, progress));
  }
  // The second stage is reported even if the first one gave no image.
  const HalfOfProgress stage(progress);
  return convertToGrays(colours.get(), progress);
}

OwnedDib convertToBlackAndWhite(const BITMAPINFOHEADER* dib, int threshold, CQorCommonProgress* progress) {
  const ConstView source = viewOfDepth(dib, Index8::bits);
  if (!source) return nullptr;
  OwnedDib result = createMask(source.width(), source.height());  // with the palette that is needed here
  if (!result) return nullptr;
  const bool reachable = threshold <= 255;  // by a byte; otherwise the rows are black
  const BYTE level = lowByte(std::clamp(threshold, 0, 255));
  return fillRows(std::move(result), progress, [&](BYTE* to, int y) {
    if (reachable) packBits(source.row(y), source.width(), to, level);
  });
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

BITMAPINFOHEADER* CBitmapConverter::Convert24BitsDIBTo256GraysDIB(BITMAPINFOHEADER* source,
                                                                  CQorCommonProgress* progress) {
  return convertToGrays(source, progress).release();
}

BITMAPINFOHEADER* CBitmapConverter::ConvertDIBTo256Grays(BITMAPINFOHEADER* source,
                                                         CQorCommonProgress* progress) {
  return convertToGraysInTwoStages(source, progress).release();
}

BITMAPINFOHEADER* CBitmapConverter::Convert8BitsGrayDibTo1BitsDib(BITMAPINFOHEADER* source, int threshold,
                                                                  CQorCommonProgress* progress) {
  return convertToBlackAndWhite(source, threshold, progress).release();
}
