#include <algorithm>
#include <array>
#include <vector>

#include "dib/allocate.h"
#include "dib/view.h"
#include "dib32/dib32.h"
#include "dib32/median_of_nine.h"
#include "dib32/row_history.h"
#include "platform/guard.h"

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

/// How far a window extends from its pixel. With an even n it extends one pixel more to the left and the top.
struct Reach {
  int before, after;
  /// Limited by the size of the image, outside which there are no pixels.
  Reach(int n, int size) : before(std::min(n / 2, size - 1)), after(std::min(n - n / 2 - 1, size - 1)) {}
};

/// The median from a histogram that slides along the row: a step removes one column and adds one.
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

/// Writes `from` into `to` with rows and columns exchanged.
void transpose(const ConstView& from, const View& to) {
  for (int y = 0; y < from.height(); ++y) {
    const Bgra* row = pixelsOf(from.row(y));
    for (int x = 0; x < from.width(); ++x) pixelsOf(to.row(x))[y] = row[x];
  }
}

/// The sliding median of an image that is taller than wide and has fewer columns than the neighbourhood.
/// Transposed, it has shorter columns to add and remove.
void filterTransposed(const BITMAPINFOHEADER* dib, const View& image, int n) {
  const OwnedDib transposed = createDib(image.height(), image.width(), 32, 0, InitialPixels::unwritten);
  if (!transposed) return;
  const View columns(transposed.get());
  transpose(ConstView(dib), columns);
  filterSliding(columns, n);
  transpose(ConstView(static_cast<const BITMAPINFOHEADER*>(transposed.get())), image);
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

void CDIB32::MedianFilter32BitsImage(BITMAPINFOHEADER* image, int n) {
  const View view = viewOfDepth(image, 32);
  // The median of one pixel is the pixel.
  if (view.width() == 0 || view.height() == 0 || n <= 1) return;
  catchOutOfMemory([&] {
    if (n == 3) {
      filterByNine(view);
    } else if (n > view.width() && view.height() > view.width()) {
      filterTransposed(image, view, n);
    } else {
      filterSliding(view, n);
    }
  });
}
