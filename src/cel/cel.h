#pragma once

#include "cel/frame_mask.h"
#include "dib/view.h"
#include "raster/colour_rows.h"

namespace dibkit {

/// A frame of any depth with its mask, for reading.
class Cel {
 public:
  Cel(const BITMAPINFOHEADER* dib, const BITMAPINFOHEADER* mask)
      : view_(dib), palette_(dib), mask_(mask, view_.width()) {}

  /// False for an unusable image or mask. An image of 0 bits per pixel is unusable.
  explicit operator bool() const { return view_ && view_.bitCount() > 0 && mask_.usable(); }
  const ConstView& view() const { return view_; }
  const PaletteTable& palette() const { return palette_; }
  const FrameMask& mask() const { return mask_; }
  int width() const { return view_.width(); }
  int height() const { return view_.height(); }
  int bitCount() const { return view_.bitCount(); }

  /// Pixels [x, x + count) of line y as blue, green, red bytes: the row itself in a 24-bit frame, otherwise
  /// `buffer`, to which they are decoded.
  const BYTE* bgr(int y, int x, int count, BYTE* buffer) const {
    if (bitCount() == Bgr24::bits) return view_.row(y) + std::ptrdiff_t{x} * 3;
    decodeBgrRow(bitCount(), view_.row(y), x, count, palette_, buffer);
    return buffer;
  }

 private:
  ConstView view_;
  PaletteTable palette_;
  FrameMask mask_;
};

}  // namespace dibkit
