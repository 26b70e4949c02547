#pragma once

#include <algorithm>
#include <vector>

#include "dib/view.h"
#include "dib32/bgra.h"
#include "kernels/median.h"

namespace dibkit {

/// Luminances and pixels of the last rows of an image as they were before the filter changed them.
class RowHistory {
 public:
  RowHistory(const View& image, int rows)
      : image_(image),
        rows_(rows),
        pixels_(static_cast<std::size_t>(rows) * static_cast<std::size_t>(image.width())),
        lumas_(pixels_.size()) {}

  /// Stores line y in the slot of line y - rows.
  void load(int y) {
    const Bgra* row = pixelsOf(image_.row(y));
    std::copy_n(row, image_.width(), pixels_.begin() + start(y));
    kernels<MedianKernels>().luminances(image_.row(y), image_.width(), lumas_.data() + start(y));
  }
  const Bgra* pixels(int y) const { return pixels_.data() + start(y); }
  const BYTE* lumas(int y) const { return lumas_.data() + start(y); }

 private:
  std::ptrdiff_t start(int y) const { return std::ptrdiff_t{y % rows_} * image_.width(); }

  View image_;
  int rows_;
  std::vector<Bgra> pixels_;
  std::vector<BYTE> lumas_;
};

}  // namespace dibkit
