#include "kernels/median.h"

#include <algorithm>
#include <array>
#include <vector>

#include "dib/allocate.h"
#include "dib/view.h"
#include "dib32/bgra.h"
#include "dib32/dib32.h"
#include "dib32/median_of_nine.h"
#include "dib32/median_sliding.h"
#include "platform/guard.h"

namespace dibkit {
namespace {

// Large medians are found in histograms, at a cost that does not grow with the neighbourhood. Each column has
// a histogram of its pixels within the rows of the neighbourhood; the next row adds one pixel to it and
// removes one. The window's histogram is the sum of those of its columns; the next pixel adds one column and
// removes one. (S. Perreault, P. Hebert, "Median filtering in constant time", 2007.)

/// Counts of 16 neighbouring luminances, or of 16 groups of such.
using Counts = std::array<std::uint32_t, 16>;

void add(Counts& sums, const Counts& counts) {
  for (std::size_t i = 0; i < sums.size(); ++i) sums[i] += counts[i];
}
void subtract(Counts& sums, const Counts& counts) {
  for (std::size_t i = 0; i < sums.size(); ++i) sums[i] -= counts[i];
}

/// The place of the value that is at `index` in ascending order, and `index` counted from its first one.
std::size_t find(const Counts& counts, std::uint32_t& index) {
  std::size_t place = 0;
  for (; counts[place] <= index; ++place) index -= counts[place];
  return place;
}

/// A histogram of luminances in two levels: groups of 16, and each luminance.
struct Column {
  Counts groups{};
  std::array<Counts, 16> lumas{};

  void enter(BYTE luma) {
    ++groups[luma >> 4];
    ++lumas[luma >> 4][luma & 15];
  }
  void leave(BYTE luma) {
    --groups[luma >> 4];
    --lumas[luma >> 4][luma & 15];
  }
  bool has(BYTE luma) const { return lumas[luma >> 4][luma & 15] != 0; }
};

/// The histogram of a window that moves along a row of columns. Of the luminances only those groups are kept
/// up to date in which a median is.
class Window {
 public:
  Window(const std::vector<Column>& columns, const Reach& reach)
      : columns_(columns), size_(static_cast<int>(columns.size())), reach_(reach) {}

  /// To the column before x, which is the first one to move to.
  void begin(int x) {
    groups_ = {};
    const int end = std::min(x + reach_.after, size_);
    for (int i = 0; i < end; ++i) add(groups_, at(i).groups);
    updated_.fill(never);
  }
  void moveTo(int x) {
    x_ = x;
    slide(groups_, x, [](const Column& column) -> const Counts& { return column.groups; });
  }
  /// The luminance at the given index in ascending order.
  BYTE luma(std::uint32_t index) {
    const std::size_t group = find(groups_, index);
    update(group);
    return static_cast<BYTE>(group << 4 | find(lumas_[group], index));
  }

 private:
  static constexpr int never = -1;

  const Column& at(int x) const { return columns_[static_cast<std::size_t>(x)]; }

  template <class CountsOf>
  void slide(Counts& sums, int x, CountsOf&& countsOf) const {
    if (x + reach_.after < size_) add(sums, countsOf(at(x + reach_.after)));
    if (x - reach_.before > 0) subtract(sums, countsOf(at(x - reach_.before - 1)));
  }

  void update(std::size_t group) {
    const auto lumasOf = [group](const Column& column) -> const Counts& { return column.lumas[group]; };
    Counts& sums = lumas_[group];
    int& updated = updated_[group];
    if (updated != never && x_ - updated <= reach_.total() / 2) {
      for (int x = updated + 1; x <= x_; ++x) slide(sums, x, lumasOf);
    } else {
      sums = {};
      const int end = std::min(x_ + reach_.after + 1, size_);
      for (int x = std::max(x_ - reach_.before, 0); x < end; ++x) add(sums, lumasOf(at(x)));
    }
    updated = x_;
  }

  const std::vector<Column>& columns_;
  int size_;
  Reach reach_;
  int x_ = 0;
  Counts groups_{};
  std::array<Counts, 16> lumas_{};
  std::array<int, 16> updated_{};  ///< the column at which each group of lumas_ was up to date
};

/// The filter of an image, in strips of columns that are few enough for the cache.
class MedianFilter {
 public:
  /// \param source a copy of the image
  MedianFilter(const ConstView& source, const View& image, int n)
      : source_(source),
        image_(image),
        across_(n, image.width()),
        down_(n, image.height()),
        lumas_(static_cast<std::size_t>(image.width()) * static_cast<std::size_t>(image.height())) {
    for (int y = 0; y < source.height(); ++y) {
      kernels<MedianKernels>().luminances(source.row(y), source.width(), lumasOf(y));
    }
  }

  void run() {
    const int step = std::max(256, across_.total());
    for (std::int64_t left = 0; left < image_.width(); left += step) {
      filterStrip(static_cast<int>(left),
                  static_cast<int>(std::min<std::int64_t>(left + step, image_.width())));
    }
  }

 private:
  struct Place {
    int x = -1;
    int y = -1;
  };

  BYTE* lumasOf(int y) { return lumas_.data() + std::ptrdiff_t{y} * image_.width(); }

  void filterStrip(int left, int right) {
    const int width = image_.width();
    const int height = image_.height();
    first_ = std::max(left - across_.before, 0);
    columns_.assign(static_cast<std::size_t>(std::min(right - 1 + across_.after, width - 1) - first_ + 1),
                    {});
    Window window(columns_, across_);
    for (int y = 0; y < down_.after; ++y) enterRow(y);
    for (int y = 0; y < height; ++y) {
      if (y + down_.after < height) enterRow(y + down_.after);
      if (y > down_.before) leaveRow(y - down_.before - 1);
      const int rows = std::min(y + down_.after, height - 1) - std::max(y - down_.before, 0) + 1;
      Bgra* const out = pixelsOf(image_.row(y));
      window.begin(left - first_);
      for (int x = left; x < right; ++x) {
        window.moveTo(x - first_);
        const int across = std::min(x + across_.after, width - 1) - std::max(x - across_.before, 0) + 1;
        out[x] = pixelOf(window.luma(static_cast<std::uint32_t>(rows * across / 2)), x, y);
      }
    }
  }

  void enterRow(int y) {
    const BYTE* lumas = lumasOf(y) + first_;
    for (Column& column : columns_) column.enter(*lumas++);
  }
  void leaveRow(int y) {
    const BYTE* lumas = lumasOf(y) + first_;
    for (Column& column : columns_) column.leave(*lumas++);
  }

  /// A pixel of the luminance in the window of (x, y): the one found last, if it is still there.
  const Bgra& pixelOf(BYTE luma, int x, int y) {
    Place& place = found_[luma];
    if (place.x < std::max(x - across_.before, 0) || place.x > x + across_.after ||
        place.y < std::max(y - down_.before, 0) || place.y > y + down_.after) {
      // From the right and from below: so it remains in the window for longest.
      place.x = std::min(x + across_.after, image_.width() - 1);
      while (!columns_[static_cast<std::size_t>(place.x - first_)].has(luma)) --place.x;
      place.y = std::min(y + down_.after, image_.height() - 1);
      while (lumasOf(place.y)[place.x] != luma) --place.y;
    }
    return pixelsOf(source_.row(place.y))[place.x];
  }

  ConstView source_;
  View image_;
  Reach across_;
  Reach down_;
  std::vector<BYTE> lumas_;
  std::vector<Column> columns_;  ///< of the strip and what its windows reach
  int first_ = 0;                ///< the first of them
  std::array<Place, 256> found_;
};

void filter(const BITMAPINFOHEADER* dib, const View& image, int n) {
  const OwnedDib source(CBitmapCreator::Clone(dib));
  if (source) MedianFilter(ConstView(static_cast<const BITMAPINFOHEADER*>(source.get())), image, n).run();
}

/// Writes `from` into `to` with rows and columns exchanged.
void transpose(const ConstView& from, const View& to) {
  for (int y = 0; y < from.height(); ++y) {
    const Bgra* row = pixelsOf(from.row(y));
    for (int x = 0; x < from.width(); ++x) pixelsOf(to.row(x))[y] = row[x];
  }
}

/// The filter of an image that is wider than tall and has fewer rows than the neighbourhood. Transposed, it
/// has fewer columns, and so needs less memory.
void filterTransposed(const BITMAPINFOHEADER* dib, const View& image, int n) {
  const OwnedDib source = createDib(image.height(), image.width(), 32, 0, InitialPixels::unwritten);
  const OwnedDib result = createDib(image.height(), image.width(), 32, 0, InitialPixels::unwritten);
  if (!source || !result) return;
  transpose(ConstView(dib), View(source.get()));
  const View transposed(result.get());
  MedianFilter(ConstView(static_cast<const BITMAPINFOHEADER*>(source.get())), transposed, n).run();
  transpose(ConstView(static_cast<const BITMAPINFOHEADER*>(result.get())), image);
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
    } else if (n <= largestSliding) {
      filterSliding(view, n);
    } else if (n > view.height() && view.width() > view.height()) {
      filterTransposed(image, view, n);
    } else {
      filter(image, view, n);
    }
  });
}
