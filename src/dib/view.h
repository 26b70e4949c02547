#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <type_traits>

#include "dib/dib.h"

namespace dibkit {

/// The largest block that a packed DIB may be: its size has to fit the header's signed arithmetic.
constexpr std::int64_t maximumDibBytes = INT32_MAX;

/// Bytes from one row to the next. Both factors are at most 32 bits wide, so nothing overflows.
constexpr std::int64_t strideOf(std::int64_t width, std::int64_t bitCount) {
  return (width * bitCount + 31) / 32 * 4;
}

/// Where the parts of a packed DIB lie, counted from its first byte.
struct Layout {
  std::int64_t bits = 0;   ///< first byte of the pixel rows
  std::int64_t total = 0;  ///< size of the whole block
};

/// The layout that a header describes; nothing for a null pointer or a header that describes no possible
/// block: one shorter than a BITMAPINFOHEADER, a size below 0, or more bytes than a packed DIB may have.
inline std::optional<Layout> layoutOf(const BITMAPINFOHEADER* dib) {
  if (dib == nullptr || dib->biSize < sizeof(BITMAPINFOHEADER) || dib->biWidth < 0 || dib->biHeight < 0) {
    return std::nullopt;
  }
  Layout layout;
  layout.bits = dib->biSize;
  if (dib->biCompression == BI_BITFIELDS) layout.bits += 12;
  layout.bits += std::int64_t{GetDIBPaletteSize(dib)} * 4;
  const std::int64_t stride = strideOf(dib->biWidth, dib->biBitCount);
  if (dib->biHeight > 0 && stride > maximumDibBytes / dib->biHeight) return std::nullopt;
  layout.total = layout.bits + stride * dib->biHeight;
  if (layout.total > maximumDibBytes) return std::nullopt;
  return layout;
}

/// The header type that goes with a byte type: const when the bytes are.
template <class Byte>
using HeaderOf = std::conditional_t<std::is_const_v<Byte>, const BITMAPINFOHEADER, BITMAPINFOHEADER>;

/// The pixel rows of a packed DIB, addressed from the top line of the picture. The one place that knows that
/// rows lie upside down and padded. Does not own the block.
template <class Byte>
class BasicView {
 public:
  BasicView() = default;
  /// The rows as the header describes them. An unusable header gives a null view.
  explicit BasicView(HeaderOf<Byte>* dib) : BasicView(dib, dib != nullptr ? dib->biBitCount : 0) {}
  /// The rows read at another depth than the header's, as operations made for one depth do: such rows
  /// start where the header says and have the stride of `bitCount`. Rows that would not all lie in the block
  /// give a null view.
  BasicView(HeaderOf<Byte>* dib, int bitCount);

  explicit operator bool() const { return bits_ != nullptr; }
  int width() const { return width_; }
  int height() const { return height_; }
  /// How many lines hold pixels: none in an image without width, however high it is. Loops run over these, so
  /// that a header of 0 x 2147483647 pixels costs nothing.
  int lines() const { return width_ > 0 ? height_ : 0; }
  int bitCount() const { return bitCount_; }
  /// Bytes from one row to the next one in memory, which is the picture's line above it.
  std::ptrdiff_t stride() const { return stride_; }
  bool contains(std::int64_t x, std::int64_t y) const {
    return x >= 0 && x < width_ && y >= 0 && y < height_;
  }

  /// First byte of line y, y = 0 being the top line of the picture.
  Byte* row(int y) const { return bits_ + (height_ - 1 - std::ptrdiff_t{y}) * stride_; }

 private:
  Byte* bits_ = nullptr;
  int width_ = 0;
  int height_ = 0;
  int bitCount_ = 0;
  std::ptrdiff_t stride_ = 0;
};

template <class Byte>
BasicView<Byte>::BasicView(HeaderOf<Byte>* dib, int bitCount) {
  const std::optional<Layout> layout = layoutOf(dib);
  if (!layout) return;
  const std::int64_t stride = strideOf(dib->biWidth, bitCount);
  if (dib->biHeight > 0 && stride > (layout->total - layout->bits) / dib->biHeight) return;
  bits_ = reinterpret_cast<Byte*>(dib) + layout->bits;
  width_ = dib->biWidth;
  height_ = dib->biHeight;
  bitCount_ = bitCount;
  stride_ = static_cast<std::ptrdiff_t>(stride);
}

/// The first palette entry, right after the header wherever the header says that it ends.
inline RGBQUAD* paletteOf(BITMAPINFOHEADER* dib) {
  return reinterpret_cast<RGBQUAD*>(reinterpret_cast<BYTE*>(dib) + dib->biSize);
}
inline const RGBQUAD* paletteOf(const BITMAPINFOHEADER* dib) {
  return paletteOf(const_cast<BITMAPINFOHEADER*>(dib));
}

using View = BasicView<BYTE>;
using ConstView = BasicView<const BYTE>;

/// The rows of an image that has to have the given depth; null for any other image.
inline View viewOfDepth(BITMAPINFOHEADER* dib, int bitCount) {
  return dib != nullptr && dib->biBitCount == bitCount ? View(dib) : View();
}
inline ConstView viewOfDepth(const BITMAPINFOHEADER* dib, int bitCount) {
  return dib != nullptr && dib->biBitCount == bitCount ? ConstView(dib) : ConstView();
}

/// A palette of 256 entries whatever the image's own has, so that no index needs a check. Entries are read
/// where the image's would lie, on into the rows for an index beyond the palette, as the interface promises;
/// what would lie outside the block is black.
class PaletteTable {
 public:
  PaletteTable() = default;
  /// The palette that starts `offset` bytes from the start of a block with a usable header.
  PaletteTable(const BITMAPINFOHEADER* dib, std::int64_t offset) {
    const std::optional<Layout> layout = layoutOf(dib);
    if (!layout || offset < 0 || offset >= layout->total) return;
    const std::int64_t readable = std::min<std::int64_t>(sizeof(entries_), layout->total - offset);
    std::memcpy(entries_.data(), reinterpret_cast<const BYTE*>(dib) + offset,
                static_cast<std::size_t>(readable));
  }
  /// The palette right after the header, wherever the header says that it ends.
  explicit PaletteTable(const BITMAPINFOHEADER* dib) : PaletteTable(dib, dib != nullptr ? dib->biSize : 0) {}

  const RGBQUAD& operator[](std::size_t index) const { return entries_[index]; }
  const RGBQUAD* data() const { return entries_.data(); }

 private:
  std::array<RGBQUAD, 256> entries_{};
};

}  // namespace dibkit
