#include "gifmask/flatten.h"

#include <vector>

#include "cel/placed_cel.h"
#include "dib/allocate.h"
#include "dib/view.h"
#include "gifmask/gifmask.h"
#include "palette/map_entries.h"
#include "platform/guard.h"
#include "raster/index_rows.h"

namespace dibkit {
namespace {

/// The depth and palette of the result, and the index of the matte colour in it.
struct FlattenedFormat {
  int bitCount = 0;
  int clrUsed = 0;         ///< for the result's header
  std::int64_t index = 0;  ///< of the matte, where the result has a palette
  bool appended = false;   ///< the colour is a new entry
};

/// \return the first entry with the colour, or the palette's size
std::int64_t findColour(const BITMAPINFOHEADER* dib, Rgb matte) {
  const RGBQUAD* end = paletteOf(dib) + GetDIBPaletteSize(dib);
  return std::find_if(paletteOf(dib), end, [&](const RGBQUAD& entry) { return rgbOf(entry) == matte; }) -
         paletteOf(dib);
}

FlattenedFormat flattenedFormat(const BITMAPINFOHEADER* dib, Rgb matte) {
  const int bitCount = dib->biBitCount;
  if (bitCount > 8) return {bitCount, 0, 0, false};
  const std::int64_t size = GetDIBPaletteSize(dib);
  const std::int64_t index = findColour(dib, matte);
  // A palette that stays keeps biClrUsed as the frame has it, 0 for a full one.
  if (index < size) return {bitCount, static_cast<int>(dib->biClrUsed), index, false};
  if (size == std::int64_t{1} << bitCount) {
    if (bitCount == 8) return {24, 0, 0, false};
    return {bitCount == 1 ? 4 : 8, static_cast<int>(size) + 1, index, true};
  }
  return {bitCount, static_cast<int>(size) + 1, index, true};
}

/// From a palette to a palette: indexes keep their numbers.
template <class Source, class Target>
void flattenIndexes(PlacedCel& frame, const View& target, BYTE index) {
  const ConstView& source = frame.cel().view();
  const Box area = placedBox(target.width(), target.height(), POINT{0, 0});
  BitGrid opaque(target.width(), 1);
  std::vector<BYTE> buffer;
  std::vector<BYTE> indexes(static_cast<std::size_t>(target.width()));
  for (int y = 0; y < target.height(); ++y) {
    std::fill(indexes.begin(), indexes.end(), index);
    const std::int64_t sourceY = y - frame.box().top;
    if (source.contains(0, sourceY)) {
      buffer.resize(static_cast<std::size_t>(source.width()));
      const BYTE* own =
          indexesAt<Source>(source.row(static_cast<int>(sourceY)), 0, source.width(), buffer.data());
      frame.opaqueBits(y, area, opaque.row(0));
      forEachRun(opaque.row(0), target.width(), [&](int left, int right) {
        std::copy_n(own + (left - frame.box().left), right - left, indexes.begin() + left);
      });
    }
    storeIndexes<Target>(indexes.data(), 0, target.width(), target.row(y));
  }
}

/// To a format without palette, from any depth.
template <class Target>
void flattenColours(PlacedCel& frame, const View& target, Rgb matte) {
  const Box area = placedBox(target.width(), target.height(), POINT{0, 0});
  BitGrid opaque(target.width(), 1);
  for (int y = 0; y < target.height(); ++y) {
    BYTE* row = target.row(y);
    for (int x = 0; x < target.width(); ++x) Target::put(row, x, Target::encode(matte));
    frame.opaqueBits(y, area, opaque.row(0));
    forEachRun(opaque.row(0), target.width(), [&](int left, int right) {
      const BYTE* own = frame.bgr(left, y, right - left);
      for (int x = left; x < right; ++x) Target::put(row, x, Target::encode(Bgr24::get(own, x - left)));
    });
  }
}

void flattenRows(PlacedCel& frame, const View& target, const FlattenedFormat& format, Rgb matte) {
  if (target.lines() == 0) return;
  withFormat(frame.cel().bitCount(), 0, [&](auto sourceFormat) {
    using Source = decltype(sourceFormat);
    return withFormat(target.bitCount(), 0, [&](auto targetFormat) {
      using Target = decltype(targetFormat);
      if constexpr (Target::bits > 8) {
        flattenColours<Target>(frame, target, matte);
      } else if constexpr (Source::bits <= Target::bits) {
        flattenIndexes<Source, Target>(frame, target, lowByte(format.index));
      }
      return 0;
    });
  });
}

}  // namespace

std::optional<SIZE> paddedSize(const Box& box, const Margins& margins) {
  const std::int64_t width = box.width() + margins.left + margins.right;
  const std::int64_t height = box.height() + margins.top + margins.bottom;
  if (width < 0 || height < 0 || width > INT32_MAX || height > INT32_MAX) return std::nullopt;
  return SIZE{static_cast<LONG>(width), static_cast<LONG>(height)};
}

OwnedDib flattenOnto(const BITMAPINFOHEADER* dib, const BITMAPINFOHEADER* mask, Rgb matte,
                     const Margins& margins) {
  PlacedCel frame(dib, mask, POINT{margins.left, margins.top});
  if (!frame || !hasFormat(dib->biBitCount)) return nullptr;
  const std::optional<SIZE> size = paddedSize(frame.box(), margins);
  if (!size) return nullptr;

  const FlattenedFormat format = flattenedFormat(dib, matte);
  OwnedDib result = createDib(size->cx, size->cy, format.bitCount, format.clrUsed, InitialPixels::unwritten);
  if (!result) return nullptr;
  if (format.bitCount <= 8) {
    copyPalette(dib, result.get());
    // The new entry's fourth byte is 0.
    if (format.appended) putEntry(result.get(), format.index, {matte.blue, matte.green, matte.red, 0});
  }
  flattenRows(frame, View(result.get()), format, matte);
  return result;
}

}  // namespace dibkit

using namespace dibkit;

BITMAPINFOHEADER* CMaskedBitmapTransform::OutputDIBStream(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask,
                                                          DWORD transparent) {
  return orOutOfMemory<BITMAPINFOHEADER*>(nullptr, [&]() -> BITMAPINFOHEADER* {
    if (mask == nullptr) return nullptr;
    return flattenOnto(frame, mask, fromColorRef(transparent), {}).release();
  });
}
