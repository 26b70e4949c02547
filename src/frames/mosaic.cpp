#include <array>
#include <vector>

#include "dib/allocate.h"
#include "dib/view.h"
#include "frames/frames.h"
#include "platform/guard.h"

namespace dibkit {
namespace {

/// Averages of one row of blocks of `size` x `size` pixels, extended by the column and the row that follow.
class BlockRow {
 public:
  BlockRow(const ConstView& source, int size)
      : source_(source),
        size_(size),
        columns_(static_cast<std::size_t>(source.width()) * 4),
        blocks_((static_cast<std::size_t>(source.width()) + static_cast<std::size_t>(size) - 1) /
                static_cast<std::size_t>(size)) {}

  std::size_t count() const { return blocks_.size(); }

  /// Sums the lines [top, bottom).
  void sum(int top, int bottom) {
    std::fill(blocks_.begin(), blocks_.end(), Sums{});
    // 65536 lines of bytes cannot overflow a column's sum of 32 bits.
    constexpr int strip = 1 << 16;
    for (int y = top; y < bottom; y += strip) sumStrip(y, std::min(bottom, y + strip));
    lines_ = bottom - top;
  }

  /// The average of block `number` as an opaque pixel.
  DWORD average(std::size_t number) const {
    const std::uint64_t left = number * static_cast<std::uint64_t>(size_);
    const std::uint64_t pixels = (rightOf(number) - left) * static_cast<std::uint64_t>(lines_);
    const Sums& sums = blocks_[number];
    return 0xFF000000U | static_cast<DWORD>(sums[2] / pixels) << 16 |
           static_cast<DWORD>(sums[1] / pixels) << 8 | static_cast<DWORD>(sums[0] / pixels);
  }

 private:
  using Sums = std::array<std::uint64_t, 3>;

  /// One past the last column of an extended block.
  std::uint64_t rightOf(std::size_t number) const {
    return std::min<std::uint64_t>((number + 1) * static_cast<std::uint64_t>(size_) + 1,
                                   static_cast<std::uint64_t>(source_.width()));
  }

  void sumStrip(int top, int bottom) {
    const std::size_t bytes = columns_.size();
    DWORD* columns = columns_.data();
    std::fill(columns_.begin(), columns_.end(), 0);
    for (int y = top; y < bottom; ++y) {
      const BYTE* row = source_.row(y);
      for (std::size_t i = 0; i < bytes; ++i) columns[i] += row[i];
    }
    for (std::size_t number = 0; number < blocks_.size(); ++number) {
      Sums& sums = blocks_[number];
      for (std::size_t x = number * static_cast<std::size_t>(size_); x < rightOf(number); ++x) {
        for (std::size_t channel = 0; channel < 3; ++channel) sums[channel] += columns[x * 4 + channel];
      }
    }
  }

  ConstView source_;
  int size_;
  int lines_ = 0;
  std::vector<DWORD> columns_;  ///< sums of each byte column over a strip of lines
  std::vector<Sums> blocks_;    ///< blue, green and red
};

/// The sum of the four pixels' colours, divided by 4, as an opaque pixel. Blue and red are added at once:
/// their sums take 10 bits.
constexpr DWORD averageOfFour(DWORD a, DWORD b, DWORD c, DWORD d) {
  constexpr DWORD pair = 0x00FF00FF;
  const DWORD blueAndRed = (a & pair) + (b & pair) + (c & pair) + (d & pair);
  const DWORD green = (a >> 8 & 0xFF) + (b >> 8 & 0xFF) + (c >> 8 & 0xFF) + (d >> 8 & 0xFF);
  return 0xFF000000U | (blueAndRed >> 2 & pair) | (green >> 2 & 0xFF) << 8;
}

/// Blocks of one pixel. At the right and lower edge the missing neighbours count as the edge's own pixels,
/// which gives the average of those that there are.
void averageNeighbours(const ConstView& source, const View& target) {
  const int last = source.width() - 1;
  for (int y = 0; y < source.height(); ++y) {
    const BYTE* row = source.row(y);
    const BYTE* next = source.row(std::min(y + 1, source.height() - 1));
    BYTE* out = target.row(y);
    const auto put = [&](int x, int right) {
      Bgra32::put(out, x,
                  averageOfFour(Bgra32::get(row, x), Bgra32::get(row, right), Bgra32::get(next, x),
                                Bgra32::get(next, right)));
    };
    for (int x = 0; x < last; ++x) put(x, x + 1);
    put(last, last);
  }
}

/// Pixel (x, y) has the colour of block (x / n, y / n). Averages are over (n + 1) x (n + 1) pixels, on
/// purpose: a column and a row of the next blocks count too.
OwnedDib mosaic32(const ConstView& source, int blockSize) {
  const int size = std::min({blockSize, source.width(), source.height()});
  if (!source || size < 1) return nullptr;
  OwnedDib result = createDib(source.width(), source.height(), 32, 0, InitialPixels::unwritten);
  if (!result) return nullptr;
  const View target(result.get());
  if (size == 1) {
    averageNeighbours(source, target);
    return result;
  }
  BlockRow blocks(source, size);
  for (std::int64_t top = 0; top < target.height(); top += size) {
    const int bottom = static_cast<int>(std::min<std::int64_t>(top + size, target.height()));
    blocks.sum(static_cast<int>(top), std::min(bottom + 1, target.height()));
    BYTE* first = target.row(static_cast<int>(top));
    int x = 0;
    for (std::size_t number = 0; number < blocks.count(); ++number) {
      const DWORD pixel = blocks.average(number);
      const int right = static_cast<int>(std::min<std::int64_t>(std::int64_t{x} + size, target.width()));
      for (; x < right; ++x) Bgra32::put(first, x, pixel);
    }
    for (int y = static_cast<int>(top) + 1; y < bottom; ++y) {
      std::memcpy(target.row(y), first, static_cast<std::size_t>(target.stride()));
    }
  }
  return result;
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

BITMAPINFOHEADER* Mosaic32BitsDIB(BITMAPINFOHEADER* image, int blockSize) {
  return catchOutOfMemory([&] { return mosaic32(ConstView(image, 32), blockSize).release(); });
}
