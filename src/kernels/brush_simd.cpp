#include <bit>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/brush_simd.cpp"
#include "hwy/foreach_target.h"  // compiles this file once for each instruction set
#include "hwy/highway.h"
#include "kernels/brush.h"
#include "kernels/compiled.h"
#include "kernels/vectors_simd.h"

#if HWY_TARGET != HWY_SCALAR
HWY_BEFORE_NAMESPACE();
namespace dibkit::HWY_NAMESPACE {
namespace {

using ConstBytes = const std::uint8_t* HWY_RESTRICT;
using Bytes = std::uint8_t* HWY_RESTRICT;

void moveCounts(ConstBytes entering, ConstBytes leaving, int count, std::uint16_t* HWY_RESTRICT counts) {
  const U16 d;
  const hn::Rebind<std::int16_t, U16> words;
  const hn::Rebind<std::int8_t, U16> bytes;
  const auto step = static_cast<std::ptrdiff_t>(hn::Lanes(d));
  // 0, or -1 where the byte is not 0.
  const auto covered = [&](ConstBytes from) HWY_ATTR {
    const hn::Rebind<std::uint8_t, U16> half;
    const auto mask = hn::VecFromMask(half, hn::Ne(hn::LoadU(half, from), hn::Zero(half)));
    return hn::BitCast(bytes, mask);
  };
  std::ptrdiff_t i = 0;
  for (; i + step <= count; i += step) {
    const auto change = hn::PromoteTo(words, hn::Sub(covered(leaving + i), covered(entering + i)));
    hn::StoreU(hn::Add(hn::LoadU(d, counts + i), hn::BitCast(d, change)), d, counts + i);
  }
  plainKernels<BrushKernels>().moveCounts(entering + i, leaving + i, static_cast<int>(count - i), counts + i);
}

/// Eight numbers of 16 bits. The lanes of wider vectors would have to be added up across their blocks.
using Eight = hn::FixedTag<std::uint16_t, 8>;
using VEight = hn::Vec<Eight>;

/// Division by a number of up to 2^16, exact for every dividend. (T. Granlund, P. L. Montgomery, "Division by
/// invariant integers using multiplication", 1994.)
class Divisor {
 public:
  HWY_INLINE explicit Divisor(unsigned divisor) {
    const int bits = static_cast<int>(std::bit_width(divisor - 1));
    factor_ = hn::Set(Eight(), static_cast<std::uint16_t>((((1U << bits) - divisor) << 16) / divisor + 1));
    before_ = bits < 1 ? 0 : 1;
    after_ = bits < 1 ? 0 : bits - 1;
  }
  HWY_INLINE VEight divide(VEight dividend) const {
    const VEight high = hn::MulHigh(dividend, factor_);
    const VEight half = hn::ShiftRightSame(hn::Sub(dividend, high), before_);
    return hn::ShiftRightSame(hn::Add(high, half), after_);
  }

 private:
  VEight factor_;
  int before_, after_;
};

/// The sum of n counts at i + 1 is the one at i, plus the count that enters, less the one that leaves; eight
/// such changes are added up in three steps.
void strengths(const std::uint16_t* HWY_RESTRICT counts, int n, int amount, int count, Bytes values) {
  const Eight d;
  const hn::FixedTag<std::uint8_t, 8> bytes;
  const Divisor area(static_cast<unsigned>(n * n));
  const VEight factor = hn::Set(d, static_cast<std::uint16_t>(amount));
  std::uint16_t first = 0;
  for (int i = 0; i < n; ++i) first = static_cast<std::uint16_t>(first + counts[i]);
  VEight sum = hn::Set(d, first);
  std::ptrdiff_t i = 0;
  for (; i + 8 <= count; i += 8) {
    const VEight change = hn::Sub(hn::LoadU(d, counts + i + n), hn::LoadU(d, counts + i));
    const VEight pairs = hn::Add(change, hn::ShiftLeftLanes<1>(d, change));
    const VEight fours = hn::Add(pairs, hn::ShiftLeftLanes<2>(d, pairs));
    const VEight next = hn::Add(sum, hn::Add(fours, hn::ShiftLeftLanes<4>(d, fours)));
    const VEight quotients = area.divide(hn::Mul(hn::Sub(next, change), factor));
    hn::StoreU(hn::DemoteTo(bytes, hn::BitCast(hn::RebindToSigned<Eight>(), quotients)), bytes, values + i);
    sum = hn::Broadcast<7>(next);
  }
  plainKernels<BrushKernels>().strengths(counts + i, n, amount, static_cast<int>(count - i), values + i);
}

/// \param change what becomes of the bytes of pixels and the amounts, which are 0 for the colours
template <class Change>
HWY_INLINE std::ptrdiff_t changeAlphas(ConstBytes amounts, int count, Bytes pixels, Change change) {
  const U8 d;
  const U32 d32;
  const hn::Rebind<std::uint8_t, U32> quarter;
  const auto step = static_cast<std::ptrdiff_t>(vectorPixels());
  std::ptrdiff_t i = 0;
  for (; i + step <= count; i += step) {
    const auto alphas = hn::ShiftLeft<24>(hn::PromoteTo(d32, hn::LoadU(quarter, amounts + i)));
    hn::StoreU(change(hn::LoadU(d, pixels + 4 * i), hn::BitCast(d, alphas)), d, pixels + 4 * i);
  }
  return i;
}

void lowerAlphas(ConstBytes amounts, int count, Bytes pixels) {
  const auto lower = [](VU8 bytes, VU8 alphas) HWY_ATTR { return hn::SaturatedSub(bytes, alphas); };
  const std::ptrdiff_t i = changeAlphas(amounts, count, pixels, lower);
  plainKernels<BrushKernels>().lowerAlphas(amounts + i, static_cast<int>(count - i), pixels + 4 * i);
}

void raiseAlphas(ConstBytes amounts, int count, Bytes pixels) {
  const auto raise = [](VU8 bytes, VU8 alphas) HWY_ATTR { return hn::SaturatedAdd(bytes, alphas); };
  const std::ptrdiff_t i = changeAlphas(amounts, count, pixels, raise);
  plainKernels<BrushKernels>().raiseAlphas(amounts + i, static_cast<int>(count - i), pixels + 4 * i);
}

constexpr BrushKernels vectorKernels{moveCounts, strengths, lowerAlphas, raiseAlphas};

}  // namespace
}  // namespace dibkit::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

template <>
constexpr const dibkit::BrushKernels* dibkit::recordedKernels<dibkit::BrushKernels, HWY_TARGET> =
    &dibkit::HWY_NAMESPACE::vectorKernels;
#endif

#if HWY_ONCE
namespace dibkit {

template <>
std::span<const Compiled<BrushKernels>> compiledKernels() {
  return everyRecorded<BrushKernels, HWY_TARGETS>();
}

}  // namespace dibkit
#endif
