#include <algorithm>
#include <array>
#include <vector>

#include "cel/cel.h"
#include "dib/allocate.h"
#include "dib/row_progress.h"
#include "dib/view.h"
#include "frames/frames.h"
#include "kernels/median.h"
#include "platform/guard.h"
#include "raster/bit_grid.h"
#include "raster/mask_rows.h"

namespace dibkit {
namespace {

/// A row beyond the frame's first or last one. Of any three pixels of it in a row one is the smallest and two
/// are the largest that there are, so that the median of these and six others is the upper middle one of the
/// six.
std::vector<BYTE> rowOutside(int width) {
  std::vector<BYTE> row(static_cast<std::size_t>(width) * 3, 255);
  for (std::size_t i = 0; i < row.size(); i += 9)
    std::fill_n(row.begin() + static_cast<std::ptrdiff_t>(i), 3, BYTE{0});
  return row;
}

/// A kernel is fastest with at least this many bytes, the longest vector of any processor.
constexpr int vectorBytes = 64;

/// The filter of one frame: whole rows by a kernel; the pixels at the ends of the rows and those near
/// transparent ones are filtered again, one by one.
class NoiseFilter {
 public:
  NoiseFilter(const ConstView& source, const FrameMask& mask, const View& result)
      : source_(source),
        mask_(mask),
        result_(result),
        outside_(rowOutside(source.width())),
        marked_((static_cast<std::size_t>(source.width()) + 63) / 64),
        line_(marked_.size()),
        end_(std::ptrdiff_t{source.width()} * 3) {}

  void filterRow(int y) {
    const int width = source_.width();
    const BYTE* own = source_.row(y);
    BYTE* out = result_.row(y);
    // The bytes after the last pixel are those of the source.
    std::memcpy(out + end_, own + end_, static_cast<std::size_t>(source_.stride() - end_));
    if (source_.height() == 1 || width < 3) {
      for (int x = 0; x < width; ++x) filterPixel(x, y);
      return;
    }
    const BYTE* above = y == 0 ? outside_.data() : source_.row(y - 1);
    const BYTE* below = y == source_.height() - 1 ? outside_.data() : source_.row(y + 1);
    ofBytes_(above + 3, own + 3, below + 3, width * 3 - 6, out + 3);
    if (y == 0 || y == source_.height() - 1) {
      filterPixel(0, y);
      filterPixel(width - 1, y);
    } else {
      filterEnds(y);
    }
    if (!markLines(y)) return;
    forEachRun(marked_.data(), width, [&](int left, int right) {
      const int end = std::min(right + 1, width);
      for (int x = std::max(left - 1, 0); x < end; ++x) filterPixel(x, y);
    });
  }

 private:
  /// The first and the last pixel of a line that is neither the first nor the last, by the kernel too: the
  /// two pixels at each end, with pixels outside next to them that are one smallest and two largest.
  void filterEnds(int y) {
    constexpr std::ptrdiff_t pair = 2 * 3;
    BYTE rows[3][3 + vectorBytes + 3] = {};
    BYTE medians[vectorBytes];
    for (int i = 0; i < 3; ++i) {
      const BYTE* row = source_.row(y - 1 + i);
      const BYTE outside = i == 0 ? 0 : 255;
      std::fill_n(rows[i], 3, outside);
      std::memcpy(rows[i] + 3, row, pair);
      std::memcpy(rows[i] + 3 + pair, row + end_ - pair, pair);
      std::fill_n(rows[i] + 3 + 2 * pair, 3, outside);
    }
    ofBytes_(rows[0] + 3, rows[1] + 3, rows[2] + 3, vectorBytes, medians);
    std::memcpy(result_.row(y), medians, 3);
    std::memcpy(result_.row(y) + end_ - 3, medians + 2 * pair - 3, 3);
  }

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
  std::vector<BYTE> outside_;
  std::vector<std::uint64_t> marked_;
  std::vector<std::uint64_t> line_;
  std::ptrdiff_t end_;  ///< bytes of the pixels of a row
  decltype(MedianKernels::ofBytes) ofBytes_ = kernels<MedianKernels>().ofBytes;
};

/// A clone whose rows have yet to be written. The header may give another depth than that of the rows, so
/// there may be bytes after them.
OwnedDib cloneExceptRows(const BITMAPINFOHEADER* dib, const ConstView& rows) {
  const Layout layout = *layoutOf(dib);
  BYTE* block = allocateBlock(layout.total);
  if (block == nullptr) return nullptr;
  const auto* from = reinterpret_cast<const BYTE*>(dib);
  const std::int64_t end = layout.bits + std::int64_t{rows.stride()} * rows.height();
  std::memcpy(block, from, static_cast<std::size_t>(layout.bits));
  std::memcpy(block + end, from + end, static_cast<std::size_t>(layout.total - end));
  return OwnedDib(reinterpret_cast<BITMAPINFOHEADER*>(block));
}

OwnedDib removeNoise(BITMAPINFOHEADER* dib, BITMAPINFOHEADER* maskDib, CQorCommonProgress* progress) {
  const ConstView source(dib, Bgr24::bits);
  const FrameMask mask(maskDib, source.width());
  if (!source || !mask.usable()) return nullptr;
  OwnedDib result = cloneExceptRows(dib, source);
  if (!result || source.lines() == 0) return result;
  NoiseFilter filter(source, mask, View(result.get(), Bgr24::bits));
  const bool finished = forEachRowReporting(source.lines(), progress, [&](int y) {
    // In the order of memory, which is the faster one.
    filter.filterRow(source.height() - 1 - y);
  });
  return finished ? std::move(result) : nullptr;
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

BITMAPINFOHEADER* RemoveNoiseDIB(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask,
                                 CQorCommonProgress* progress) {
  return catchOutOfMemory([&] { return removeNoise(frame, mask, progress).release(); });
}
