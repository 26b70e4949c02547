#include "dib32/median_of_nine.h"

#include <array>

#include "dib/view.h"
#include "dib32/row_history.h"
#include "raster/median.h"

namespace dibkit {
namespace {

/// A luminance with the place of its pixel in the neighbourhood, [0000LLLL LLLLRRCC]: row and column count
/// from 0. So no two keys of a neighbourhood are equal, and the low bits say which pixel is the median.
/// Signed, because plain vectors of 16 bits compare signed numbers.
using Key = std::int16_t;

/// The sorted three keys of each column; their column bits are 0.
struct SortedColumns {
  explicit SortedColumns(int width)
      : minimum(static_cast<std::size_t>(width)), median(minimum), maximum(minimum) {}

  void sort(const BYTE* top, const BYTE* centre, const BYTE* bottom, int width) {
    Key* const low = minimum.data();
    Key* const mid = median.data();
    Key* const high = maximum.data();
    for (int x = 0; x < width; ++x) {
      const auto a = static_cast<Key>(top[x] << 4);
      const auto b = static_cast<Key>(centre[x] << 4 | 4);
      const auto c = static_cast<Key>(bottom[x] << 4 | 8);
      const SortedColumn<Key> column = sortColumn(a, b, c);
      low[x] = column.low;
      mid[x] = column.middle;
      high[x] = column.high;
    }
  }

  std::vector<Key> minimum, median, maximum;
};

/// places[x] = the place of the median in the neighbourhood of column x + 1, for `count` columns.
void findMedians(const SortedColumns& columns, int count, BYTE* places) {
  const Key* const low = columns.minimum.data();
  const Key* const mid = columns.median.data();
  const Key* const high = columns.maximum.data();
  const auto columnAt = [&](int x, int number) {
    const auto key = [number](Key sorted) { return static_cast<Key>(sorted | number); };
    return SortedColumn<Key>{key(low[x + number]), key(mid[x + number]), key(high[x + number])};
  };
  for (int x = 0; x < count; ++x) {
    places[x] = static_cast<BYTE>(medianOfNine(columnAt(x, 0), columnAt(x, 1), columnAt(x, 2)) & 15);
  }
}

/// The median at the image's edge, where the neighbourhood has fewer pixels.
Bgra medianAtEdge(const RowHistory& rows, const View& image, int x, int y) {
  struct Sample {
    BYTE luma;
    Bgra pixel;
  };
  std::array<Sample, 9> samples;
  auto end = samples.begin();
  for (int nearby = std::max(y - 1, 0); nearby <= std::min(y + 1, image.height() - 1); ++nearby) {
    for (int column = std::max(x - 1, 0); column <= std::min(x + 1, image.width() - 1); ++column) {
      *end++ = {rows.lumas(nearby)[column], rows.pixels(nearby)[column]};
    }
  }
  const auto median = samples.begin() + (end - samples.begin()) / 2;
  std::nth_element(samples.begin(), median, end,
                   [](const Sample& a, const Sample& b) { return a.luma < b.luma; });
  return median->pixel;
}

}  // namespace

void filterByNine(const View& image) {
  const int width = image.width();
  const int height = image.height();
  RowHistory history(image, 3);
  SortedColumns columns(width);
  std::vector<BYTE> places(static_cast<std::size_t>(width));

  history.load(0);
  for (int y = 0; y < height; ++y) {
    if (y + 1 < height) history.load(y + 1);
    Bgra* const out = pixelsOf(image.row(y));
    const bool inside = width >= 3 && y > 0 && y + 1 < height;
    if (!inside) {
      for (int x = 0; x < width; ++x) out[x] = medianAtEdge(history, image, x, y);
      continue;
    }
    columns.sort(history.lumas(y - 1), history.lumas(y), history.lumas(y + 1), width);
    findMedians(columns, width - 2, places.data());
    // The pixel at each place of the neighbourhood of column 1. Of four places for a row three are used.
    std::array<const Bgra*, 12> at;
    for (std::size_t place = 0; place < at.size(); ++place) {
      at[place] = history.pixels(y - 1 + static_cast<int>(place / 4)) + place % 4;
    }
    for (int x = 0; x < width - 2; ++x) out[x + 1] = at[places[static_cast<std::size_t>(x)]][x];
    out[0] = medianAtEdge(history, image, 0, y);
    out[width - 1] = medianAtEdge(history, image, width - 1, y);
  }
}

}  // namespace dibkit
