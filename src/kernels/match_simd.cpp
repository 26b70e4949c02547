#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/match_simd.cpp"
#include "hwy/foreach_target.h"  // compiles this file once for each instruction set
#include "hwy/highway.h"
#include "kernels/compiled.h"
#include "kernels/match.h"
#include "kernels/vectors_simd.h"

#if HWY_TARGET != HWY_SCALAR
HWY_BEFORE_NAMESPACE();
namespace dibkit::HWY_NAMESPACE {
namespace {

using ConstBytes = const std::uint8_t* HWY_RESTRICT;
using Bytes = std::uint8_t* HWY_RESTRICT;
using Box = MatchKernels::Box;

/// All bits where low <= v <= high; nowhere when low is above high.
HWY_INLINE VU8 within(VU8 v, VU8 low, VU8 high) {
  return hn::VecFromMask(U8(), hn::And(hn::Eq(hn::Max(v, low), v), hn::Eq(hn::Min(v, high), v)));
}

void inside24(ConstBytes pixels, int count, const Box& box, Bytes flags) {
  const U8 d;
  const auto step = static_cast<std::ptrdiff_t>(vectorBytes());
  std::ptrdiff_t i = 0;
  for (; i + step <= count; i += step) {
    VU8 blue, green, red;
    hn::LoadInterleaved3(d, pixels + 3 * i, blue, green, red);
    const auto limited = [&](VU8 v, std::size_t byte) HWY_ATTR {
      return within(v, hn::Set(d, box.low[byte]), hn::Set(d, box.high[byte]));
    };
    const VU8 matching = hn::And(hn::And(limited(blue, 0), limited(green, 1)), limited(red, 2));
    hn::StoreU(hn::And(matching, hn::Set(d, 1)), d, flags + i);
  }
  plainKernels<MatchKernels>().inside24(pixels + 3 * i, static_cast<int>(count - i), box, flags + i);
}

void inside32(ConstBytes pixels, int count, const Box& box, Bytes flags) {
  const U8 d;
  const U32 d32;
  const hn::Rebind<std::uint8_t, U32> quarter;
  const auto each = [&](const std::array<std::uint8_t, 4>& bytes) HWY_ATTR {
    std::uint32_t pixel = 0;
    for (std::size_t byte = 0; byte < 4; ++byte) pixel |= std::uint32_t{bytes[byte]} << 8 * byte;
    return hn::BitCast(d, hn::Set(d32, pixel));
  };
  const VU8 low = each(box.low), high = each(box.high);
  const auto step = static_cast<std::ptrdiff_t>(vectorPixels());
  std::ptrdiff_t i = 0;
  for (; i + step <= count; i += step) {
    const auto bytes = hn::BitCast(d32, within(hn::LoadU(d, pixels + 4 * i), low, high));
    const auto whole = hn::VecFromMask(d32, hn::Eq(bytes, hn::Set(d32, 0xFFFFFFFF)));
    hn::StoreU(hn::U8FromU32(hn::ShiftRight<31>(whole)), quarter, flags + i);
  }
  plainKernels<MatchKernels>().inside32(pixels + 4 * i, static_cast<int>(count - i), box, flags + i);
}

void atLeast(ConstBytes bytes, int count, std::uint8_t level, Bytes bits) {
  const U8 d;
  // The first of eight bytes becomes the last one: masks begin with the least significant bit.
  alignas(16) static constexpr std::uint8_t reversed[16] = {7,  6,  5,  4,  3,  2,  1, 0,
                                                            15, 14, 13, 12, 11, 10, 9, 8};
  const VU8 order = hn::LoadDup128(d, reversed);
  const VU8 levels = hn::Set(d, level);
  const auto step = static_cast<std::ptrdiff_t>(vectorBytes());
  std::ptrdiff_t i = 0;
  for (; i + step <= count; i += step) {
    const VU8 v = hn::TableLookupBytes(hn::LoadU(d, bytes + i), order);
    hn::StoreMaskBits(d, hn::Eq(hn::Max(v, levels), v), bits + i / 8);
  }
  plainKernels<MatchKernels>().atLeast(bytes + i, static_cast<int>(count - i), level, bits + i / 8);
}

constexpr MatchKernels vectorKernels{inside24, inside32, atLeast};

}  // namespace
}  // namespace dibkit::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

template <>
constexpr const dibkit::MatchKernels* dibkit::recordedKernels<dibkit::MatchKernels, HWY_TARGET> =
    &dibkit::HWY_NAMESPACE::vectorKernels;
#endif

#if HWY_ONCE
namespace dibkit {

template <>
std::span<const Compiled<MatchKernels>> compiledKernels() {
  return everyRecorded<MatchKernels, HWY_TARGETS>();
}

}  // namespace dibkit
#endif
