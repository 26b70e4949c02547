#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <type_traits>

#include "dib/layout.h"
#include "dib/palette_table.h"
#include "dib/pixel_format.h"

/// \file
/// Access to the pixels of a packed DIB: rows counted from the top line of the picture, pixels by their
/// format (pixel_format.h), loops over all of them.
///
/// \code
/// dibkit::Bgra32::put(dibkit::View(pair.get()).row(0), 0, 0xFF0000FF);  // the top left pixel: blue, opaque
/// \endcode
///
/// \code
/// dibkit::forEachPixel(image, [&](int, int, dibkit::Rgb colour) {
///   sum += colour.green;
///   ++pixels;
/// });
/// \endcode
///
/// Threads: many may read an image through views, one at a time may write it. Aliasing: any number of views
/// may be of one image. Cost: a loop is one pass over the pixels.

namespace dibkit {

/// The header type that goes with a byte type: const when the bytes are.
template <class Byte>
using HeaderOf = std::conditional_t<std::is_const_v<Byte>, const BITMAPINFOHEADER, BITMAPINFOHEADER>;

/// The pixel rows of a packed DIB, addressed from the top line of the picture. Only this class knows that
/// rows are stored bottom-up and padded. A few words that are cheap to copy; does not own the block.
template <class Byte>
class BasicView {
 public:
  BasicView() = default;
  /// The rows as the header describes them. A null image or an unusable header gives a null view.
  explicit BasicView(HeaderOf<Byte>* dib) : BasicView(dib, dib != nullptr ? dib->biBitCount : 0) {}
  /// The rows read at another depth than the header's, as operations made for one depth do. They start where
  /// the header says and have the stride of `bitCount`. If they are not all inside the block, the view is
  /// null.
  BasicView(HeaderOf<Byte>* dib, int bitCount);

  /// False for a null view, which has neither width nor height.
  explicit operator bool() const { return bits_ != nullptr; }
  int width() const { return width_; }
  int height() const { return height_; }
  /// How many lines hold pixels: none in an image without width. Loops run over these, so that a header of 0
  /// x 2147483647 pixels costs nothing.
  int lines() const { return width_ > 0 ? height_ : 0; }
  int bitCount() const { return bitCount_; }
  /// Bytes from a row to the next one in memory, which is the line above it.
  std::ptrdiff_t stride() const { return stride_; }
  bool contains(std::int64_t x, std::int64_t y) const {
    return x >= 0 && x < width_ && y >= 0 && y < height_;
  }

  /// First byte of line y, counted from the top line of the picture. y is not checked.
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

/// Rows to read and write.
using View = BasicView<BYTE>;
/// Rows to read.
using ConstView = BasicView<const BYTE>;

/// The rows of an image that has to have the given depth; null for any other image.
inline View viewOfDepth(BITMAPINFOHEADER* dib, int bitCount) {
  return dib != nullptr && dib->biBitCount == bitCount ? View(dib) : View();
}
inline ConstView viewOfDepth(const BITMAPINFOHEADER* dib, int bitCount) {
  return dib != nullptr && dib->biBitCount == bitCount ? ConstView(dib) : ConstView();
}

/// Calls use(x, y, colour) for every pixel of an image of any depth, line by line from the top left one.

/// \return false when nothing was read: a null or unusable image, or a depth without a format
template <class Use>
bool forEachPixel(const BITMAPINFOHEADER* dib, Use&& use) {
  const ConstView view(dib);
  if (!view) return false;
  const PaletteTable palette(dib);
  return withFormat(view.bitCount(), [&](auto format) {
    using Format = decltype(format);
    for (int y = 0; y < view.lines(); ++y) {
      const BYTE* row = view.row(y);
      for (int x = 0; x < view.width(); ++x) use(x, y, Format::colour(Format::get(row, x), palette));
    }
    return true;
  });
}

/// Stores value(x, y), a raw value of the format, in every pixel of a view of that depth, line by line from
/// the top left one.
template <class Format, class Value>
void fillPixels(const View& view, Value&& value) {
  for (int y = 0; y < view.lines(); ++y) {
    BYTE* row = view.row(y);
    for (int x = 0; x < view.width(); ++x) Format::put(row, x, value(x, y));
  }
}

}  // namespace dibkit
