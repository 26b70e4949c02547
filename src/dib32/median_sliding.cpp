#include "dib32/median_sliding.h"

#include <array>
#include <vector>

#include "dib32/row_history.h"

namespace dibkit {
namespace {

/// The pixels of a window as a histogram of their luminances, with one pixel for each luminance: the last
/// that was added. It is in the window as long as any pixel of that luminance is, because pixels are removed
/// in the order in which their columns (or, for whole rows, their rows) were added.
class MedianWindow {
 public:
  void add(BYTE luma, const Bgra& pixel) {
    ++counts_[luma];
    pixels_[luma] = pixel;
    below_ += luma < median_;
  }
  void remove(BYTE luma) {
    --counts_[luma];
    below_ -= luma < median_;
  }
  /// The pixel at the given index in order of luminance. The search starts at the last result.
  const Bgra& at(int index) {
    while (below_ > index) below_ -= counts_[--median_];
    while (below_ + counts_[median_] <= index) below_ += counts_[median_++];
    return pixels_[median_];
  }

 private:
  std::array<int, 256> counts_{};
  std::array<Bgra, 256> pixels_{};
  std::size_t median_ = 0;
  int below_ = 0;  ///< pixels darker than median_
};

}  // namespace

void filterSliding(const View& image, int n) {
  struct Row {
    const BYTE* lumas;
    const Bgra* pixels;
  };
  const int width = image.width();
  const int height = image.height();
  const Reach columns(n, width);
  const Reach rows(n, height);
  RowHistory history(image, rows.before + rows.after + 1);
  std::vector<Row> window;
  window.reserve(static_cast<std::size_t>(rows.before + rows.after) + 1);

  for (int y = 0; y < rows.after; ++y) history.load(y);
  for (int y = 0; y < height; ++y) {
    if (y + rows.after < height) history.load(y + rows.after);
    window.clear();
    const int last = std::min(y + rows.after, height - 1);
    for (int nearby = std::max(y - rows.before, 0); nearby <= last; ++nearby) {
      window.push_back({history.lumas(nearby), history.pixels(nearby)});
    }

    MedianWindow sliding;
    const auto enter = [&](int x) {
      for (const Row& row : window) sliding.add(row.lumas[x], row.pixels[x]);
    };
    for (int x = 0; x < columns.after; ++x) enter(x);
    Bgra* const out = pixelsOf(image.row(y));
    for (int x = 0; x < width; ++x) {
      const int leaving = x - columns.before - 1;
      const int entering = x + columns.after;
      if (leaving >= 0) {
        for (const Row& row : window) sliding.remove(row.lumas[leaving]);
      }
      if (entering < width) enter(entering);
      const int across = std::min(entering, width - 1) - std::max(leaving, -1);
      out[x] = sliding.at(across * static_cast<int>(window.size()) / 2);
    }
  }
}

}  // namespace dibkit
