#include <array>

#include "convert/convert.h"
#include "convert/fill_rows.h"
#include "dib/view.h"
#include "palette/colour_index.h"
#include "palette/palette.h"
#include "raster/index_rows.h"

namespace dibkit {
namespace {

/// The palette of an image under construction, as 256 entries from its start. Entries beyond its size
/// overwrite the rows that follow it, as the interface promises; those beyond the block are in a separate
/// array.
class UnboundedPalette {
 public:
  explicit UnboundedPalette(BITMAPINFOHEADER* dib)
      : block_(reinterpret_cast<BYTE*>(dib)),
        room_(layoutOf(dib)->total - dib->biSize),
        start_(dib->biSize) {}

  Rgb operator[](int index) { return {byte(index, 2), byte(index, 1), byte(index, 0)}; }
  /// The reserved byte is unchanged.
  void set(int index, Rgb colour) {
    byte(index, 0) = colour.blue;
    byte(index, 1) = colour.green;
    byte(index, 2) = colour.red;
  }

 private:
  BYTE& byte(int index, int channel) {
    const int offset = index * 4 + channel;
    return offset < room_ ? block_[start_ + static_cast<std::size_t>(offset)]
                          : aside_[static_cast<std::size_t>(offset)];
  }

  BYTE* block_;
  std::int64_t room_;
  std::size_t start_;
  std::array<BYTE, 1024> aside_{};
};

/// Converts rows to indexes of a palette that grows with them. After the 256th entry the count wraps to 0,
/// and the palette is cleared and written again from its start. Deliberate: hosts rely on the bytes that
/// images at this limit have always had.
template <class Format>
class ExactReducer {
 public:
  ExactReducer(const ConstView& source, BITMAPINFOHEADER* result)
      : source_(source), target_(result), result_(result), palette_(result) {}

  void row(BYTE* to, int y) {
    if (!overflowed_) {
      const int count = colours_.size();
      overflowed_ = !indexRow(source_.row(y), to);
      if (overflowed_) leavePalette(y, count);
    }
    if (overflowed_) indexRowInMemory(source_.row(y), to);
  }

 private:
  /// False when the palette has no room for a colour of the row.
  bool indexRow(const BYTE* from, BYTE* to) {
    BYTE indexes[indexChunk];
    for (int left = 0, count = 0; left < source_.width(); left += count) {
      count = std::min(indexChunk, source_.width() - left);
      const bool fits = forEachColour<Bgr24>(from, left, left + count, [&](DWORD key, int x, auto same) {
        const int index = indexOf(key);
        if (index == ColourIndex::none) return false;
        std::memset(indexes + (x - left), storedLowBits(Format::bits, index), same());
        // The 256th colour wraps the count, and it is always found in a single pixel. Every further colour is
        // new.
        if (colours_.size() == ColourIndex::capacity) colours_ = ColourIndex();
        return true;
      });
      if (!fits) return false;
      storeIndexes<Format>(indexes, left, count, to);
    }
    return true;
  }

  int indexOf(DWORD key) {
    const int known = colours_.size();
    const int index = colours_.enter(key);
    if (index < known) return index;
    if (static_cast<DWORD>(index) >= GetDIBPaletteSize(result_)) return ColourIndex::none;
    palette_.set(index, {lowByte(key >> 16), lowByte(key >> 8), lowByte(key)});
    return index;
  }

  /// From line y on, palette entries are written over rows and rows over palette entries, so colours are
  /// compared with the first `found_` entries as they are in memory at that time.
  void leavePalette(int y, int count) {
    found_ = count;
    BYTE* lowest = target_.row(target_.height() - 1);
    std::memset(lowest, 0, static_cast<std::size_t>(target_.row(y) + target_.stride() - lowest));
  }

  void indexRowInMemory(const BYTE* from, BYTE* to) {
    for (int x = 0; x < source_.width(); ++x) {
      const BYTE stored = storedLowBits(Format::bits, indexInMemory(Bgr24::get(from, x)));
      constexpr int pixelsPerByte = 8 / Format::bits;
      BYTE& byte = to[x / pixelsPerByte];
      if constexpr (Format::bits == 8) {
        byte = stored;
      } else {
        // Only sets bits; the palette may have set others here.
        byte = static_cast<BYTE>(byte | stored << (8 - Format::bits - x % pixelsPerByte * Format::bits));
      }
    }
  }

  int indexInMemory(Rgb colour) {
    for (int i = 0; i < found_; ++i) {
      if (palette_[i] == colour) return i;
    }
    palette_.set(found_, colour);
    const int index = found_;
    found_ = (found_ + 1) % 256;
    return index;
  }

  ConstView source_;
  View target_;
  BITMAPINFOHEADER* result_;
  UnboundedPalette palette_;
  ColourIndex colours_;
  bool overflowed_ = false;
  int found_ = 0;
};

template <class Format>
OwnedDib reduceExactly(const BITMAPINFOHEADER* dib, int colourCount, CQorCommonProgress* progress) {
  const ConstView source(dib, Bgr24::bits);
  if (!source) return nullptr;
  OwnedDib result =
      createDib(source.width(), source.height(), Format::bits, colourCount, InitialPixels::unwritten);
  if (!result) return nullptr;
  ExactReducer<Format> reducer(source, result.get());
  return fillRowsFromTop(std::move(result), progress, [&](BYTE* to, int y) { reducer.row(to, y); });
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

BITMAPINFOHEADER* CBitmapConverter::ConvertTrueDibTo8BitsDib(BITMAPINFOHEADER* source, int colourCount,
                                                             CQorCommonProgress* progress) {
  return reduceExactly<Index8>(source, colourCount, progress).release();
}

BITMAPINFOHEADER* CBitmapConverter::ConvertTrueDibTo4BitsDib(BITMAPINFOHEADER* source, int colourCount,
                                                             CQorCommonProgress* progress) {
  return reduceExactly<Index4>(source, colourCount, progress).release();
}

BITMAPINFOHEADER* CBitmapConverter::ConvertTrueDibTo1BitsDib(BITMAPINFOHEADER* source, int colourCount,
                                                             CQorCommonProgress* progress) {
  return reduceExactly<Index1>(source, colourCount, progress).release();
}

BITMAPINFOHEADER* CBitmapConverter::ConvertTrueDibToLowBitsDib(BITMAPINFOHEADER* source,
                                                               CQorCommonProgress* progress) {
  const int colours = CPaletteFuns::GetColorsNumFrom24BitsDib(source);
  if (colours > 256) return nullptr;
  if (colours > 16) return ConvertTrueDibTo8BitsDib(source, colours, progress);
  if (colours > 2) return ConvertTrueDibTo4BitsDib(source, colours, progress);
  return ConvertTrueDibTo1BitsDib(source, colours, progress);
}
