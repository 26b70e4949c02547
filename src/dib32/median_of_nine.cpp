#include "dib32/median_of_nine.h"

#include <algorithm>
#include <array>
#include <vector>

#include "dib/view.h"
#include "dib32/row_history.h"
#include "kernels/median.h"
#include "kernels/sorted_column.h"

namespace dibkit {
namespace {

using Rows = std::array<MedianKernels::Row, 3>;

/// A row outside the image. Of any three pixels in a row one is the darkest and two are the brightest that
/// there are, so that the median of these and six others is the upper middle one of the six. Where both have
/// the median's luminance the kernel takes the other one, which is in a lower row.
std::vector<BYTE> lumasOutside(int width) {
  std::vector<BYTE> lumas(static_cast<std::size_t>(width), 255);
  for (std::size_t x = 0; x < lumas.size(); x += 3) lumas[x] = 0;
  return lumas;
}

/// The median of column x in `height` rows at an edge of the image.
Bgra medianAtEdge(const MedianKernels::Row* rows, int height, int x, int imageWidth) {
  const int left = std::max(x - 1, 0);
  const int width = std::min(x + 2, imageWidth) - left;
  // Each key has luminance, row and column. The absent keys are as small and as large as it takes to make the
  // upper middle one of the others the middle one of all.
  constexpr int none = 1 << 12;
  std::array<int, 9> keys{none, none, none, none, none, none, none, none, none};
  std::fill_n(keys.begin(), 4 - height * width / 2, -1);
  auto end = keys.end();
  for (int row = 0; row < height; ++row) {
    for (int column = 0; column < width; ++column) {
      *--end = rows[row].lumas[left + column] << 4 | row << 2 | column;
    }
  }
  using Column = SortedColumn<int>;
  const auto columnAt = [&](std::size_t i) { return Column(keys[i], keys[i + 1], keys[i + 2]); };
  const int median = Column::medianOfNine(columnAt(0), columnAt(3), columnAt(6));
  return pixelsOf(rows[median >> 2 & 3].pixels)[left + (median & 3)];
}

}  // namespace

void filterByNine(const View& image) {
  const int width = image.width();
  const int height = image.height();
  RowHistory history(image, 3);
  const auto ofPixels = kernels<MedianKernels>().ofPixels;
  const std::vector<BYTE> outside = lumasOutside(width);

  // In the order of memory, from the last line to the first, which is the faster one.
  history.load(height - 1);
  for (int y = height - 1; y >= 0; --y) {
    if (y > 0) history.load(y - 1);
    const auto rowAt = [&](int line) {
      return MedianKernels::Row{history.lumas(line), reinterpret_cast<const BYTE*>(history.pixels(line))};
    };
    Rows rows;
    std::size_t count = 0;
    for (int line = std::max(y - 1, 0); line <= std::min(y + 1, height - 1); ++line)
      rows[count++] = rowAt(line);
    const bool wide = width >= 3 && count > 1;
    if (wide) {
      const MedianKernels::Row first =
          count == 3 ? rows[0] : MedianKernels::Row{outside.data(), rows[0].pixels};
      ofPixels(first, rows[count - 2], rows[count - 1], width - 2, image.row(y) + 4);
    }
    Bgra* const out = pixelsOf(image.row(y));
    const int step = wide ? width - 1 : 1;
    for (int x = 0; x < width; x += step)
      out[x] = medianAtEdge(rows.data(), static_cast<int>(count), x, width);
  }
}

}  // namespace dibkit
