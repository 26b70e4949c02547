#include "gifmask/burn.h"

#include <vector>

#include "dib/allocate.h"
#include "dib/guard.h"
#include "dib/index_rows.h"
#include "dib/map_walk.h"
#include "dib/placed_frame.h"
#include "gifmask/gifmask.h"

namespace dibkit {
namespace {

/// The depth and palette of the result, and what stands for the colour in it.
struct Ground {
  int bitCount = 0;
  int clrUsed = 0;         ///< for the result's header
  std::int64_t index = 0;  ///< of the colour, where the result has a palette
  bool appended = false;   ///< the colour is a new entry
};

/// \return the first entry with the colour, or the palette's size
std::int64_t findColour(const BITMAPINFOHEADER* dib, Rgb colour) {
  const RGBQUAD* end = paletteOf(dib) + GetDIBPaletteSize(dib);
  return std::find_if(paletteOf(dib), end, [&](const RGBQUAD& entry) { return fromEntry(entry) == colour; }) -
         paletteOf(dib);
}

Ground groundFor(const BITMAPINFOHEADER* dib, Rgb colour) {
  const int bitCount = dib->biBitCount;
  if (bitCount > 8) return {bitCount, 0, 0, false};
  const std::int64_t size = GetDIBPaletteSize(dib);
  const std::int64_t index = findColour(dib, colour);
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
void burnIndexes(PlacedFrame& frame, const View& target, BYTE index) {
  const ConstView& source = frame.frame().view();
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
void burnColours(PlacedFrame& frame, const View& target, Rgb colour) {
  const Box area = placedBox(target.width(), target.height(), POINT{0, 0});
  BitGrid opaque(target.width(), 1);
  for (int y = 0; y < target.height(); ++y) {
    BYTE* row = target.row(y);
    for (int x = 0; x < target.width(); ++x) Target::put(row, x, Target::encode(colour));
    frame.opaqueBits(y, area, opaque.row(0));
    forEachRun(opaque.row(0), target.width(), [&](int left, int right) {
      const BYTE* own = frame.bgr(left, y, right - left);
      for (int x = left; x < right; ++x) Target::put(row, x, Target::encode(Bgr24::get(own, x - left)));
    });
  }
}

void burnRows(PlacedFrame& frame, const View& target, const Ground& ground, Rgb colour) {
  if (target.lines() == 0) return;
  withFormat(frame.frame().bitCount(), 0, [&](auto sourceFormat) {
    using Source = decltype(sourceFormat);
    return withFormat(target.bitCount(), 0, [&](auto targetFormat) {
      using Target = decltype(targetFormat);
      if constexpr (Target::bits > 8) {
        burnColours<Target>(frame, target, colour);
      } else if constexpr (Source::bits <= Target::bits) {
        burnIndexes<Source, Target>(frame, target, lowByte(ground.index));
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

OwnedDib burnColour(const BITMAPINFOHEADER* dib, const BITMAPINFOHEADER* mask, Rgb colour,
                    const Margins& margins) {
  PlacedFrame frame(dib, mask, POINT{margins.left, margins.top});
  if (!frame || !hasFormat(dib->biBitCount)) return nullptr;
  const std::optional<SIZE> size = paddedSize(frame.box(), margins);
  if (!size) return nullptr;

  const Ground ground = groundFor(dib, colour);
  OwnedDib result = createDib(size->cx, size->cy, ground.bitCount, ground.clrUsed, Pixels::unwritten);
  if (!result) return nullptr;
  if (ground.bitCount <= 8) {
    copyPalette(dib, result.get());
    // The new entry's fourth byte is 0.
    if (ground.appended) putEntry(result.get(), ground.index, {colour.blue, colour.green, colour.red, 0});
  }
  burnRows(frame, View(result.get()), ground, colour);
  return result;
}

}  // namespace dibkit

BITMAPINFOHEADER* CMaskedBitmapTransform::OutputDIBStream(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask,
                                                          DWORD transparent) {
  using namespace dibkit;
  return orOutOfMemory<BITMAPINFOHEADER*>(nullptr, [&]() -> BITMAPINFOHEADER* {
    if (mask == nullptr) return nullptr;
    return burnColour(frame, mask, fromColorRef(transparent), {}).release();
  });
}
