#pragma once

#include "dib/bgr_row.h"
#include "dib/mask_rows.h"
#include "dib/pixel_format.h"

namespace dibkit {

/// The mask of a frame: bit 1 is transparent. Its rows pair with the frame's from the top line of both and
/// are as long as the frame is wide, whatever the mask's own header says of its width; lines that would lie
/// outside the block have no transparent pixel.
class FrameMask {
 public:
  /// No mask: wholly opaque.
  FrameMask() = default;
  /// \param mask null for a wholly opaque frame
  FrameMask(const BITMAPINFOHEADER* mask, int frameWidth) {
    if (mask == nullptr) return;
    const std::optional<Layout> layout = layoutOf(mask);
    usable_ = layout && mask->biBitCount == 1;
    if (!usable_) return;
    bits_ = reinterpret_cast<const BYTE*>(mask) + layout->bits;
    bytes_ = layout->total - layout->bits;
    height_ = mask->biHeight;
    stride_ = strideOf(frameWidth, 1);
  }

  /// False for an image that is no mask: another depth than 1, or an unusable header.
  bool usable() const { return usable_; }
  bool present() const { return bits_ != nullptr; }

  /// First byte of line y, or null when no pixel of that line is transparent.
  const BYTE* row(int y) const {
    if (bits_ == nullptr || y < 0 || y >= height_) return nullptr;
    const std::int64_t offset = (height_ - 1 - std::int64_t{y}) * stride_;
    return offset + stride_ <= bytes_ ? bits_ + offset : nullptr;
  }
  bool transparent(int x, int y) const {
    const BYTE* line = row(y);
    return line != nullptr && Get1BitPixel(line, x) != 0;
  }

 private:
  const BYTE* bits_ = nullptr;
  std::int64_t bytes_ = 0;
  int height_ = 0;
  std::int64_t stride_ = 0;
  bool usable_ = true;
};

/// A frame of any depth with its mask, as the frame operations read it.
class Frame {
 public:
  Frame(const BITMAPINFOHEADER* dib, const BITMAPINFOHEADER* mask)
      : view_(dib), palette_(dib), mask_(mask, view_.width()) {}

  /// False for an unusable image or mask.
  explicit operator bool() const { return static_cast<bool>(view_) && mask_.usable(); }
  const ConstView& view() const { return view_; }
  const PaletteTable& palette() const { return palette_; }
  const FrameMask& mask() const { return mask_; }
  int width() const { return view_.width(); }
  int height() const { return view_.height(); }
  int bitCount() const { return view_.bitCount(); }

  /// Pixels [x, x + count) of line y as blue, green, red bytes: the frame's own where it holds them so, else
  /// decoded to `buffer`.
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
