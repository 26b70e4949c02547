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

/// From a palette to a palette: the frame's indexes are unchanged.
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

/// From any depth to a format without palette.
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

void flattenRows(PlacedCel& frame, const View& target, std::int64_t index, Rgb matte) {
  if (target.lines() == 0) return;
  withFormat(frame.cel().bitCount(), [&](auto sourceFormat) {
    using Source = decltype(sourceFormat);
    withFormat(target.bitCount(), [&](auto targetFormat) {
      using Target = decltype(targetFormat);
      if constexpr (Target::bits > 8) {
        flattenColours<Target>(frame, target, matte);
      } else if constexpr (Source::bits <= Target::bits) {
        flattenIndexes<Source, Target>(frame, target, lowByte(index));
      }
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

MatteImage imageWithMatte(const BITMAPINFOHEADER* dib, Rgb matte, const SIZE& size) {
  const auto create = [&](int bitCount, std::int64_t clrUsed) {
    return createDib(size.cx, size.cy, bitCount, static_cast<int>(clrUsed), InitialPixels::unwritten);
  };
  const int bitCount = dib->biBitCount;
  if (bitCount > 8) return {create(bitCount, 0), 0};
  const RGBQUAD* palette = paletteOf(dib);
  const std::int64_t count = GetDIBPaletteSize(dib);
  const std::int64_t index =
      std::find_if(palette, palette + count, [&](const RGBQUAD& entry) { return rgbOf(entry) == matte; }) -
      palette;
  const bool full = count == std::int64_t{1} << bitCount;
  if (index == count && full && bitCount == 8) return {create(Bgr24::bits, 0), 0};
  MatteImage result{nullptr, index};
  if (index < count) {
    result.image = create(bitCount, dib->biClrUsed);  // which is 0 for some full palettes
  } else {
    result.image = create(!full ? bitCount : bitCount == 1 ? 4 : 8, count + 1);
  }
  if (!result.image) return result;
  copyPalette(dib, result.image.get());
  if (index == count) putEntry(result.image.get(), index, {matte.blue, matte.green, matte.red, 0});
  return result;
}

OwnedDib flattenOnto(const BITMAPINFOHEADER* dib, const BITMAPINFOHEADER* mask, Rgb matte,
                     const Margins& margins) {
  PlacedCel frame(dib, mask, POINT{margins.left, margins.top});
  if (!frame || !hasFormat(dib->biBitCount)) return nullptr;
  const std::optional<SIZE> size = paddedSize(frame.box(), margins);
  if (!size) return nullptr;

  MatteImage result = imageWithMatte(dib, matte, *size);
  if (result.image) flattenRows(frame, View(result.image.get()), result.index, matte);
  return std::move(result.image);
}

}  // namespace dibkit

using namespace dibkit;

BITMAPINFOHEADER* CMaskedBitmapTransform::OutputDIBStream(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask,
                                                          DWORD transparent) {
  return catchOutOfMemory([&]() -> BITMAPINFOHEADER* {
    if (mask == nullptr) return nullptr;
    return flattenOnto(frame, mask, fromColorRef(transparent), {}).release();
  });
}
