#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/median_simd.cpp"
#include "hwy/foreach_target.h"  // compiles this file once for each instruction set
#include "hwy/highway.h"
#include "kernels/compiled.h"
#include "kernels/median.h"

#if HWY_TARGET != HWY_SCALAR
HWY_BEFORE_NAMESPACE();
namespace dibkit::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

using U8 = hn::ScalableTag<std::uint8_t>;
using U16 = hn::Repartition<std::uint16_t, U8>;
using I32 = hn::Repartition<std::int32_t, U8>;
using VU8 = hn::Vec<U8>;
using VU16 = hn::Vec<U16>;
using Bytes = std::uint8_t* HWY_RESTRICT;
using ConstBytes = const std::uint8_t* HWY_RESTRICT;
using Row = MedianKernels::Row;

/// Calls at(x) for every vector of `step` elements of a row that has at least one. The last vector may
/// overlap the one before it.
template <class At>
HWY_INLINE void forEachVector(std::ptrdiff_t step, std::ptrdiff_t count, At&& at) {
  std::ptrdiff_t x = 0;
  for (; x + step <= count; x += step) at(x);
  if (x < count) at(count - step);
}

template <class V>
HWY_INLINE V medianOfThree(V a, V b, V c) {
  return hn::Max(hn::Min(a, b), hn::Min(hn::Max(a, b), c));
}

/// Three values of a column in ascending order, for each element of vectors.
template <class V>
struct SortedColumn {
  V low, middle, high;
};

template <class V>
HWY_INLINE SortedColumn<V> sortColumn(V a, V b, V c) {
  const V less = hn::Min(a, b);
  const V more = hn::Max(a, b);
  return {hn::Min(less, c), hn::Max(less, hn::Min(more, c)), hn::Max(more, c)};
}

/// The median of the largest low, the median middle and the smallest high.
template <class V>
HWY_INLINE V medianOfNine(const SortedColumn<V>& a, const SortedColumn<V>& b, const SortedColumn<V>& c) {
  return medianOfThree(hn::Max(hn::Max(a.low, b.low), c.low), medianOfThree(a.middle, b.middle, c.middle),
                       hn::Min(hn::Min(a.high, b.high), c.high));
}

void ofBytes(ConstBytes above, ConstBytes row, ConstBytes below, int count, Bytes out) {
  const U8 d;
  const auto step = static_cast<std::ptrdiff_t>(hn::Lanes(d));
  if (count < step) return plainKernels<MedianKernels>().ofBytes(above, row, below, count, out);
  const auto columnAt = [&](std::ptrdiff_t i) HWY_ATTR {
    return sortColumn(hn::LoadU(d, above + i), hn::LoadU(d, row + i), hn::LoadU(d, below + i));
  };
  forEachVector(step, count, [&](std::ptrdiff_t i) HWY_ATTR {
    hn::StoreU(medianOfNine(columnAt(i - 3), columnAt(i), columnAt(i + 3)), d, out + i);
  });
}

/// 117 b + 601 g + 306 r = 256 (2 g + r) + rest, with a rest below 2^16.
HWY_INLINE VU16 lumaOfWords(VU16 blue, VU16 green, VU16 red) {
  const U16 d;
  const VU16 rest = hn::Add(hn::Add(hn::Mul(blue, hn::Set(d, 117)), hn::Mul(green, hn::Set(d, 89))),
                            hn::Mul(red, hn::Set(d, 50)));
  const VU16 sum = hn::Add(hn::Add(hn::Add(green, green), red), hn::ShiftRight<8>(rest));
  return hn::ShiftRight<2>(sum);
}

/// The elements of a vector of bytes with an even number, and those with an odd one, in 16 bits.
HWY_INLINE VU16 evenBytes(VU8 v) { return hn::And(hn::BitCast(U16(), v), hn::Set(U16(), 0xFF)); }
HWY_INLINE VU16 oddBytes(VU8 v) { return hn::ShiftRight<8>(hn::BitCast(U16(), v)); }
HWY_INLINE VU8 fromEvenAndOdd(VU16 even, VU16 odd) {
  return hn::BitCast(U8(), hn::Or(even, hn::ShiftLeft<8>(odd)));
}

void luminances(ConstBytes pixels, int count, Bytes lumas) {
  const U8 d;
  const auto step = static_cast<std::ptrdiff_t>(hn::Lanes(d));
  if (count < step) return plainKernels<MedianKernels>().luminances(pixels, count, lumas);
  forEachVector(step, count, [&](std::ptrdiff_t x) HWY_ATTR {
    VU8 blue, green, red, alpha;
    hn::LoadInterleaved4(d, pixels + 4 * x, blue, green, red, alpha);
    const VU16 even = lumaOfWords(evenBytes(blue), evenBytes(green), evenBytes(red));
    const VU16 odd = lumaOfWords(oddBytes(blue), oddBytes(green), oddBytes(red));
    hn::StoreU(fromEvenAndOdd(even, odd), d, lumas + x);
  });
}

/// For each byte of the vector the place of a pixel with the median of the nine luminances from x on,
/// [0000RRCC].
HWY_INLINE VU8 placesOfMedians(const Row (&rows)[3], std::ptrdiff_t x) {
  const U8 d;
  VU8 lumas[3][3];
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      lumas[row][column] = hn::LoadU(d, rows[row].lumas + x + column);
    }
  }
  const auto columnAt = [&](int column) HWY_ATTR {
    return sortColumn(lumas[0][column], lumas[1][column], lumas[2][column]);
  };
  const VU8 median = medianOfNine(columnAt(0), columnAt(1), columnAt(2));
  VU8 places = hn::Zero(d);
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      const VU8 place = hn::Set(d, static_cast<std::uint8_t>(row << 2 | column));
      places = hn::IfThenElse(hn::Eq(lumas[row][column], median), place, places);
    }
  }
  return places;
}

/// The pixels at their places, for a vector of pixels from x on.
HWY_INLINE hn::Vec<I32> pixelsAt(const Row (&rows)[3], std::ptrdiff_t x, const std::uint8_t* places) {
  const U8 d;
  const I32 d32;
  const hn::Rebind<std::uint8_t, I32> bytes;
  const auto place = hn::PromoteTo(d32, hn::LoadU(bytes, places));
  const auto column1 = hn::ShiftLeft<31>(place);
  const auto column2 = hn::ShiftLeft<30>(place);
  const auto inRow = [&](const Row& row) HWY_ATTR {
    const auto at = [&](int column)
                        HWY_ATTR { return hn::BitCast(d32, hn::LoadU(d, row.pixels + (x + column) * 4)); };
    return hn::IfNegativeThenElse(column2, at(2), hn::IfNegativeThenElse(column1, at(1), at(0)));
  };
  const auto row1 = hn::ShiftLeft<29>(place);
  const auto row2 = hn::ShiftLeft<28>(place);
  return hn::IfNegativeThenElse(row2, inRow(rows[2]),
                                hn::IfNegativeThenElse(row1, inRow(rows[1]), inRow(rows[0])));
}

void ofPixels(const Row& top, const Row& centre, const Row& bottom, int count, Bytes out) {
  const U8 d;
  const auto step = static_cast<std::ptrdiff_t>(hn::Lanes(d));
  if (count < step) return plainKernels<MedianKernels>().ofPixels(top, centre, bottom, count, out);
  const Row rows[3] = {top, centre, bottom};
  forEachVector(step, count, [&](std::ptrdiff_t x) HWY_ATTR {
    HWY_ALIGN std::uint8_t places[HWY_MAX_BYTES];
    hn::Store(placesOfMedians(rows, x), d, places);
    for (std::ptrdiff_t i = 0; i < step; i += step / 4) {
      hn::StoreU(hn::BitCast(d, pixelsAt(rows, x + i, places + i)), d, out + (x + i) * 4);
    }
  });
}

constexpr MedianKernels vectorKernels{ofBytes, luminances, ofPixels};

}  // namespace
}  // namespace dibkit::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

template <>
constexpr const dibkit::MedianKernels* dibkit::recordedKernels<dibkit::MedianKernels, HWY_TARGET> =
    &dibkit::HWY_NAMESPACE::vectorKernels;
#endif

#if HWY_ONCE
namespace dibkit {

template <>
std::span<const Compiled<MedianKernels>> compiledKernels() {
  return everyRecorded<MedianKernels, HWY_TARGETS>();
}

}  // namespace dibkit
#endif
