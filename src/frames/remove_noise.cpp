#include <algorithm>
#include <array>
#include <vector>

#include "cel/cel.h"
#include "dib/allocate.h"
#include "dib/row_progress.h"
#include "dib/view.h"
#include "frames/frames.h"
#include "platform/guard.h"
#include "raster/bit_grid.h"
#include "raster/mask_rows.h"
#include "raster/median.h"

namespace dibkit {
namespace {

/// The medians of all inner pixels of a line, channel by channel.
class MedianRows {
 public:
  explicit MedianRows(int width) : bytes_(static_cast<std::size_t>(width) * 3), columns_(bytes_ * 3) {}

  /// Writes bytes [3, 3 * width - 3) of `out`.
  void filter(const BYTE* above, const BYTE* row, const BYTE* below, BYTE* out) {
    BYTE* low = columns_.data();
    BYTE* middle = low + bytes_;
    BYTE* high = middle + bytes_;
    for (std::size_t i = 0; i < bytes_; ++i) {
      const SortedColumn<BYTE> column = sortColumn(above[i], row[i], below[i]);
      low[i] = column.low;
      middle[i] = column.middle;
      high[i] = column.high;
    }
    const auto columnAt = [&](std::size_t i) { return SortedColumn<BYTE>{low[i], middle[i], high[i]}; };
    for (std::size_t i = 3; i + 3 < bytes_; ++i) {
      out[i] = medianOfNine(columnAt(i - 3), columnAt(i), columnAt(i + 3));
    }
  }

 private:
  std::size_t bytes_;
  std::vector<BYTE> columns_;
};

/// The filter of one frame: MedianRows for most pixels, one by one those at the edges and near transparent
/// pixels.
class NoiseFilter {
 public:
  NoiseFilter(const ConstView& source, const FrameMask& mask, const View& result)
      : source_(source),
        mask_(mask),
        result_(result),
        medians_(source.width()),
        marked_((static_cast<std::size_t>(source.width()) + 63) / 64),
        line_(marked_.size()) {}

  void filterRow(int y) {
    const int width = source_.width();
    if (y == 0 || y == source_.height() - 1 || width < 3) {
      for (int x = 0; x < width; ++x) filterPixel(x, y);
      return;
    }
    medians_.filter(source_.row(y - 1), source_.row(y), source_.row(y + 1), result_.row(y));
    filterPixel(0, y);
    filterPixel(width - 1, y);
    if (!markLines(y)) return;
    forEachRun(marked_.data(), width, [&](int left, int right) {
      const int end = std::min(right + 1, width);
      for (int x = std::max(left - 1, 0); x < end; ++x) filterPixel(x, y);
    });
  }

 private:
  /// Marks the columns with a transparent pixel in the lines y - 1 to y + 1.
  bool markLines(int y) {
    std::fill(marked_.begin(), marked_.end(), 0);
    std::uint64_t any = 0;
    for (int line = y - 1; line <= y + 1; ++line) {
      const BYTE* row = mask_.row(line);
      if (row == nullptr) continue;
      loadMaskRow(row, source_.width(), line_.data());
      for (std::size_t i = 0; i < marked_.size(); ++i) any |= marked_[i] |= line_[i];
    }
    return any != 0;
  }

  void filterPixel(int x, int y) {
    const BYTE* own = source_.row(y) + std::ptrdiff_t{x} * 3;
    BYTE* out = result_.row(y) + std::ptrdiff_t{x} * 3;
    std::memcpy(out, own, 3);
    if (mask_.transparent(x, y)) return;
    std::array<std::array<BYTE, 9>, 3> samples;
    std::size_t count = 0;
    for (int line = std::max(y - 1, 0); line <= std::min(y + 1, source_.height() - 1); ++line) {
      const BYTE* row = source_.row(line);
      for (int column = std::max(x - 1, 0); column <= std::min(x + 1, source_.width() - 1); ++column) {
        if (mask_.transparent(column, line)) continue;
        for (std::size_t i = 0; i < 3; ++i)
          samples[i][count] = row[std::ptrdiff_t{column} * 3 + static_cast<int>(i)];
        ++count;
      }
    }
    if (count < 2) return;
    for (std::size_t i = 0; i < 3; ++i) {
      std::sort(samples[i].begin(), samples[i].begin() + static_cast<std::ptrdiff_t>(count));
      // Of an even number of samples the upper middle one, on purpose.
      out[i] = samples[i][count / 2];
    }
  }

  ConstView source_;
  const FrameMask& mask_;
  View result_;
  MedianRows medians_;
  std::vector<std::uint64_t> marked_;
  std::vector<std::uint64_t> line_;
};

OwnedDib removeNoise(BITMAPINFOHEADER* dib, BITMAPINFOHEADER* maskDib, CQorCommonProgress* progress) {
  const ConstView source(dib, Bgr24::bits);
  const FrameMask mask(maskDib, source.width());
  if (!source || !mask.usable()) return nullptr;
  OwnedDib result(CBitmapCreator::Clone(dib));
  if (!result || source.lines() == 0) return result;
  NoiseFilter filter(source, mask, View(result.get(), Bgr24::bits));
  const bool finished = forEachRowReporting(source.lines(), progress, [&](int y) { filter.filterRow(y); });
  return finished ? std::move(result) : nullptr;
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

BITMAPINFOHEADER* RemoveNoiseDIB(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask,
                                 CQorCommonProgress* progress) {
  return catchOutOfMemory([&] { return removeNoise(frame, mask, progress).release(); });
}
