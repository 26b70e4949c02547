#pragma once

#include "dib/view.h"
#include "raster/mask_rows.h"

namespace dibkit {

/// The mask of a frame: bit 1 is transparent. Mask and frame are aligned at their top lines, and each mask
/// row has the frame's width, even if the mask's own header gives another. Lines outside the mask's block
/// have no transparent pixel.
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

  /// False for an image that cannot be a mask: a depth other than 1, or an unusable header.
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

}  // namespace dibkit
