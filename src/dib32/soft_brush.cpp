#include <algorithm>
#include <cmath>
#include <vector>

#include "dib/view.h"
#include "dib32/bgra.h"
#include "dib32/dib32.h"
#include "platform/guard.h"
#include "raster/placement.h"
#include "raster/region_spans.h"

namespace dibkit {
namespace {

/// How many bytes of a brush are not 0 in the box around each of its pixels, row by row from the top. The box
/// has n x n pixels, starts n / 2 to the left of and above its pixel (so it is off centre when n is even) and
/// ends at the brush's edges. Running sums make the cost of a pixel independent of n.
class BoxCounts {
 public:
  /// \param n 1 to the lesser side of the brush
  BoxCounts(const ConstView& brush, int n)
      : brush_(brush),
        n_(n),
        columns_(static_cast<std::size_t>(brush.width()) + static_cast<std::size_t>(n)),
        counts_(static_cast<std::size_t>(brush.width())) {
    for (int y = 0; y < ahead(); ++y) addRow<1>(y);
  }

  /// The counts of the next row, whose number is y.
  std::int32_t* next(int y) {
    if (y + ahead() < brush_.height()) addRow<1>(y + ahead());
    if (y - n_ / 2 > 0) addRow<-1>(y - n_ / 2 - 1);
    std::int32_t count = 0;
    const std::uint16_t* column = columns_.data();
    for (int x = 0; x < n_; ++x) count += column[x];
    for (std::int32_t& result : counts_) {
      result = count;
      count += column[n_] - column[0];
      ++column;
    }
    return counts_.data();
  }

 private:
  /// Rows below a pixel's own in its box.
  int ahead() const { return n_ - n_ / 2 - 1; }

  template <int Step>
  void addRow(int y) {
    const BYTE* row = brush_.row(y);
    std::uint16_t* const columns = columns_.data() + n_ / 2;
    for (int x = 0; x < brush_.width(); ++x) {
      columns[x] = static_cast<std::uint16_t>(columns[x] + (row[x] != 0 ? Step : 0));
    }
  }

  ConstView brush_;
  int n_;
  std::vector<std::uint16_t> columns_;  ///< sums of n rows, with room for the box on both sides of the brush
  std::vector<std::int32_t> counts_;
};

/// values[i] = amount values[i] / area. The product wraps in 32 bits, which takes amounts beyond a byte or
/// boxes of some thousand pixels a side; the quotient is truncated towards zero.
void scaleCounts(std::int32_t amount, std::int32_t area, std::int32_t* values, int count) {
  // Exact: the half outweighs the error of a double and is too small to reach the next whole quotient.
  const double reciprocal = 1.0 / area;
  for (int i = 0; i < count; ++i) {
    const auto product =
        static_cast<std::int32_t>(static_cast<std::uint32_t>(amount) * static_cast<std::uint32_t>(values[i]));
    const double dividend = product;
    values[i] = static_cast<std::int32_t>((dividend + std::copysign(0.5, dividend)) * reciprocal);
  }
}

constexpr std::int32_t addWrapping(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
constexpr std::int32_t subtractWrapping(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

/// The eraser subtracts the amount's share, down to 0. Where that is negative alpha may pass 255, and the
/// byte wraps.
struct SoftErase {
  static std::int32_t share(int amount) { return amount; }
  static std::int32_t apply(std::int32_t alpha, std::int32_t strength) {
    return std::max(subtractWrapping(alpha, strength), 0);
  }
};

/// The fill adds the share of 255 - amount, so that 0 is the strongest, up to 255. Where that is negative
/// alpha may fall below 0, and the byte wraps.
struct SoftFill {
  static std::int32_t share(int amount) { return subtractWrapping(255, amount); }
  static std::int32_t apply(std::int32_t alpha, std::int32_t strength) {
    return std::min(addWrapping(alpha, strength), 255);
  }
};

template <class Rule>
void applyStrengths(const std::int32_t* strengths, int count, BYTE* pixels) {
  for (int i = 0; i < count; ++i) {
    const DWORD pixel = Bgra32::get(pixels, i);
    const auto alpha = static_cast<DWORD>(Rule::apply(static_cast<std::int32_t>(pixel >> 24), strengths[i]));
    Bgra32::put(pixels, i, (pixel & colourBits) | alpha << 24);
  }
}

/// strengths[i] = 0 where the reference is transparent
void keepWhereVisible(const BYTE* reference, int count, std::int32_t* strengths) {
  for (int i = 0; i < count; ++i) strengths[i] = Bgra32::get(reference, i) > colourBits ? strengths[i] : 0;
}

/// One touch of a soft brush.
/// \param reference where its pixels are transparent nothing changes; null for none
template <class Rule>
void brushAlpha(BITMAPINFOHEADER* destinationDib, const BITMAPINFOHEADER* brushDib, const POINT& position,
                int amount, int size, HRGN clipRegion, const View* reference = nullptr) {
  const View destination = viewOfDepth(destinationDib, 32);
  const ConstView brush = viewOfDepth(brushDib, 8);
  if (reference != nullptr && reference->width() != destination.width()) return;
  const Box brushBox = placedBox(brush.width(), brush.height(), position);
  Box area = intersection(brushBox, {0, 0, destination.width(), destination.height()});
  if (reference != nullptr) area.bottom = std::min<std::int64_t>(area.bottom, reference->height());
  // n * n fits: a brush of n x n bytes is a block of less than 2^31.
  const int n = std::min({size, brush.width(), brush.height()});
  const RegionSpans clip(clipRegion);
  if (area.empty() || n < 1 || (clipRegion != nullptr && !clip.valid())) return;

  BoxCounts counts(brush, n);
  const auto paint = [&](int y, int left, int right, std::int32_t* strengths) {
    const std::ptrdiff_t offset = std::ptrdiff_t{left} * 4;
    scaleCounts(Rule::share(amount), n * n, strengths, right - left);
    if (reference != nullptr) keepWhereVisible(reference->row(y) + offset, right - left, strengths);
    applyStrengths<Rule>(strengths, right - left, destination.row(y) + offset);
  };
  // The sums continue from row to row, so they begin with the brush even where it is above the destination.
  for (std::int64_t y = brushBox.top; y < area.bottom; ++y) {
    std::int32_t* const rowCounts = counts.next(static_cast<int>(y - brushBox.top));
    if (y < area.top) continue;
    const int line = static_cast<int>(y);
    const int left = static_cast<int>(area.left);
    const int right = static_cast<int>(area.right);
    const auto span = [&](int from, int end) { paint(line, from, end, rowCounts + (from - brushBox.left)); };
    if (clipRegion == nullptr) {
      span(left, right);
    } else {
      clip.splitRow(line, left, right, span, [](int, int) {});
    }
  }
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

void CDIB32::SmoothBlock(BITMAPINFOHEADER* destination, BITMAPINFOHEADER* brush, const POINT& position,
                         int amount, int size, HRGN clip) {
  catchOutOfMemory([&] { brushAlpha<SoftErase>(destination, brush, position, amount, size, clip); });
}

void CDIB32::SmoothFillBlock(BITMAPINFOHEADER* destination, BITMAPINFOHEADER* brush, const POINT& position,
                             int amount, int size, HRGN clip) {
  catchOutOfMemory([&] { brushAlpha<SoftFill>(destination, brush, position, amount, size, clip); });
}

void CDIB32::SmoothFillBlock(BITMAPINFOHEADER* destination, BITMAPINFOHEADER* brush,
                             BITMAPINFOHEADER* reference, const POINT& position, int amount, int size,
                             HRGN clip) {
  const View visible = viewOfDepth(reference, 32);
  catchOutOfMemory([&] { brushAlpha<SoftFill>(destination, brush, position, amount, size, clip, &visible); });
}
