#pragma once

#include "dib/allocate.h"
#include "dib/view.h"
#include "raster/mask_rows.h"

namespace dibkit {

/// A frame mask that is created with its first transparent pixel, so that a wholly opaque frame has none.
/// Palette entry 0 is black, entry 1 white.
class MaskOnDemand {
 public:
  MaskOnDemand(int width, int height) : width_(width), height_(height) {}

  /// Marks the pixels of [left, right) on line y transparent.
  void mark(int y, int left, int right) {
    if (left >= right || failed_) return;
    if (!mask_) make();
    if (mask_) fillMaskRow(View(mask_.get()).row(y), left, right, true);
  }

  /// A pixel was marked and the mask could not be allocated.
  bool failed() const { return failed_; }
  /// The mask, or null when nothing was marked.
  OwnedDib take() { return std::move(mask_); }

 private:
  void make() {
    mask_ = createMask(width_, height_);
    failed_ = mask_ == nullptr;
  }

  int width_;
  int height_;
  OwnedDib mask_;
  bool failed_ = false;
};

}  // namespace dibkit
