#include <algorithm>
#include <numeric>
#include <vector>

#include "dib/view.h"
#include "dib32/bgra.h"
#include "dib32/dib32.h"
#include "kernels/brush.h"
#include "platform/guard.h"
#include "raster/placement.h"
#include "raster/region_spans.h"

namespace dibkit {
namespace {

/// How many bytes of a brush are not 0 in the box around each of its pixels, row by row from the bottom. The
/// box has n x n pixels, starts n / 2 to the left of and above its pixel (so it is off centre when n is even)
/// and ends at the brush's edges. Running sums make the cost of a pixel independent of n.
class BoxCounts {
 public:
  /// \param n 1 to the lesser side of the brush
  BoxCounts(const ConstView& brush, int n)
      : brush_(brush),
        n_(n),
        columns_(static_cast<std::size_t>(brush.width()) + static_cast<std::size_t>(n)),
        outside_(static_cast<std::size_t>(brush.width())) {
    for (int y = brush.height() - 1 + n / 2; y >= brush.height(); --y) move(y);
  }

  /// Proceeds to the next row, whose number is y.
  /// \return for each of its pixels the first of n counts of columns, which its box has; n more follow the
  /// last
  const std::uint16_t* next(int y) {
    move(y);
    return columns_.data();
  }

 private:
  const BYTE* row(int y) const { return y >= 0 && y < brush_.height() ? brush_.row(y) : outside_.data(); }
  /// The columns' counts from those of row y + 1 to those of row y.
  void move(int y) {
    const int top = y - n_ / 2;
    moveCounts_(row(top), row(top + n_), brush_.width(), columns_.data() + n_ / 2);
  }

  ConstView brush_;
  int n_;
  std::vector<std::uint16_t> columns_;  ///< sums of n rows, with room for the box on both sides of the brush
  std::vector<BYTE> outside_;           ///< a row above or below the brush
  decltype(BrushKernels::moveCounts) moveCounts_ = kernels<BrushKernels>().moveCounts;
};

/// The brush's strengths, amount count / (n n), for amounts of a byte and boxes of usual sizes.
struct ByteStrengths {
  using Value = BYTE;
  int n, amount;

  static bool suits(int n, std::int32_t amount) {
    return n <= BrushKernels::largestBox && amount >= 0 && amount <= 255;
  }
  void row(const std::uint16_t* columns, int width, BYTE* values) const {
    kernels<BrushKernels>().strengths(columns, n, amount, width, values);
  }
};

/// The same for any amount and any box. The product wraps in 32 bits, which takes amounts beyond a byte or
/// boxes of some thousand pixels a side; the quotient is truncated towards zero.
struct WrappingStrengths {
  using Value = std::int32_t;
  int n;
  std::vector<std::int32_t> table;  ///< for each count; the brush has as many pixels but one, or more

  WrappingStrengths(int side, std::int32_t amount)
      : n(side), table(static_cast<std::size_t>(n) * static_cast<std::size_t>(n) + 1) {
    std::uint32_t product = 0;
    for (std::int32_t& strength : table) {
      strength = static_cast<std::int32_t>(product) / (n * n);
      product += static_cast<std::uint32_t>(amount);
    }
  }
  void row(const std::uint16_t* columns, int width, std::int32_t* values) const {
    std::int32_t count = std::accumulate(columns, columns + n, std::int32_t{0});
    for (int x = 0; x < width; ++x) {
      values[x] = table[static_cast<std::size_t>(count)];
      count += columns[x + n] - columns[x];
    }
  }
};

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
  static constexpr auto kernel = &BrushKernels::lowerAlphas;
};

/// The fill adds the share of 255 - amount, so that 0 is the strongest, up to 255. Where that is negative
/// alpha may fall below 0, and the byte wraps.
struct SoftFill {
  static std::int32_t share(int amount) { return subtractWrapping(255, amount); }
  static std::int32_t apply(std::int32_t alpha, std::int32_t strength) {
    return std::min(addWrapping(alpha, strength), 255);
  }
  static constexpr auto kernel = &BrushKernels::raiseAlphas;
};

template <class Rule>
void applyStrengths(const std::int32_t* strengths, int count, BYTE* pixels) {
  for (int i = 0; i < count; ++i) {
    const DWORD pixel = Bgra32::get(pixels, i);
    const auto alpha = static_cast<DWORD>(Rule::apply(static_cast<std::int32_t>(pixel >> 24), strengths[i]));
    Bgra32::put(pixels, i, (pixel & colourBits) | alpha << 24);
  }
}
template <class Rule>
void applyStrengths(const BYTE* strengths, int count, BYTE* pixels) {
  (kernels<BrushKernels>().*Rule::kernel)(strengths, count, pixels);
}

/// strengths[i] = 0 where the reference is transparent
template <class Strength>
void keepWhereVisible(const BYTE* reference, int count, Strength* strengths) {
  for (int i = 0; i < count; ++i) {
    strengths[i] = Bgra32::get(reference, i) > colourBits ? strengths[i] : Strength{0};
  }
}

/// Where a brush touches an image.
struct Touch {
  View destination;
  ConstView brush;
  const View* reference;  ///< where its pixels are transparent nothing changes; null for none
  Box brushBox;
  Box area;
  int n;
};

template <class Rule, class Strengths>
void applyBrush(const Touch& touch, const Strengths& rule, const RegionSpans* clip) {
  using Strength = typename Strengths::Value;
  BoxCounts counts(touch.brush, touch.n);
  std::vector<Strength> strengths(static_cast<std::size_t>(touch.brush.width()));
  // The sums continue from row to row, so they begin with the brush even where it is below the destination.
  // Upwards, since that is the order of memory, the faster one.
  for (std::int64_t y = touch.brushBox.bottom - 1; y >= touch.area.top; --y) {
    const std::uint16_t* columns = counts.next(static_cast<int>(y - touch.brushBox.top));
    if (y >= touch.area.bottom) continue;
    rule.row(columns, touch.brush.width(), strengths.data());
    const int line = static_cast<int>(y);
    const int left = static_cast<int>(touch.area.left);
    const int right = static_cast<int>(touch.area.right);
    const auto paint = [&](int from, int end) {
      Strength* const first = strengths.data() + (from - touch.brushBox.left);
      const std::ptrdiff_t offset = std::ptrdiff_t{from} * 4;
      if (touch.reference != nullptr) {
        keepWhereVisible(touch.reference->row(line) + offset, end - from, first);
      }
      applyStrengths<Rule>(first, end - from, touch.destination.row(line) + offset);
    };
    if (clip == nullptr) {
      paint(left, right);
    } else {
      clip->splitRow(line, left, right, paint, [](int, int) {});
    }
  }
}

/// One touch of a soft brush.
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
  const RegionSpans spans(clipRegion);
  if (area.empty() || n < 1 || (clipRegion != nullptr && !spans.valid())) return;

  const Touch touch{destination, brush, reference, brushBox, area, n};
  const RegionSpans* const clip = clipRegion != nullptr ? &spans : nullptr;
  const std::int32_t share = Rule::share(amount);
  if (ByteStrengths::suits(n, share)) {
    applyBrush<Rule>(touch, ByteStrengths{n, share}, clip);
  } else {
    applyBrush<Rule>(touch, WrappingStrengths(n, share), clip);
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
