#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/mix_simd.cpp"
#include "hwy/foreach_target.h"  // compiles this file once for each instruction set
#include "hwy/highway.h"
#include "kernels/bgr24_simd.h"
#include "kernels/bgra32_simd.h"
#include "kernels/compiled.h"
#include "kernels/mix.h"

#if HWY_TARGET != HWY_SCALAR
HWY_BEFORE_NAMESPACE();
namespace dibkit::HWY_NAMESPACE {
namespace {

using Byte = std::uint8_t;

/// x / 255, truncated, is the upper half of (x + 1) * 257 for every x below 65535.
HWY_INLINE VU16 bytesOf255ths(VU16 evenPlusOne, VU16 oddPlusOne) {
  const VU16 factor = hn::Set(U16(), 257);
  return hn::Or(hn::MulHigh(evenPlusOne, factor), hn::ShiftLeft<8>(hn::MulHigh(oddPlusOne, factor)));
}

// Rules: each mixes vectors of bytes at a weight.

class Over255 {
 public:
  HWY_INLINE explicit Over255(std::uint16_t weight)
      : weight_(hn::Set(U16(), weight)), rest_(hn::Sub(hn::Set(U16(), 255), weight_)) {}

  HWY_INLINE VU16 operator()(VU16 top, VU16 below) const { return quotients(top, below, 1); }
  /// The same rounded: 127 is added to the sum.
  HWY_INLINE VU16 rounded(VU16 top, VU16 below) const { return quotients(top, below, 128); }

 private:
  HWY_INLINE VU16 quotients(VU16 top, VU16 below, std::uint16_t added) const {
    const auto sums = [&](VU16 t, VU16 b) HWY_ATTR {
      return hn::Add(hn::Add(hn::Mul(t, weight_), hn::Mul(b, rest_)), hn::Set(U16(), added));
    };
    return bytesOf255ths(sums(evenBytes(top), evenBytes(below)), sums(oddBytes(top), oddBytes(below)));
  }

  VU16 weight_;
  VU16 rest_;
};

class Over256 {
 public:
  HWY_INLINE explicit Over256(std::uint16_t weight) : weight_(hn::Set(U16(), weight)) {}

  /// 256 b + (t - b) weight, of which only bits 8 to 15 are used, so that it may wrap in 16 bits.
  HWY_INLINE VU16 operator()(VU16 top, VU16 below) const {
    const VU16 evenDifference = hn::Sub(evenBytes(top), evenBytes(below));
    const VU16 oddDifference = hn::Sub(oddBytes(top), oddBytes(below));
    const VU16 even = hn::Add(hn::ShiftLeft<8>(below), hn::Mul(evenDifference, weight_));
    const VU16 odd = hn::Add(upperBytes(below), hn::Mul(oddDifference, weight_));
    return hn::Or(oddBytes(even), upperBytes(odd));
  }

 private:
  VU16 weight_;
};

HWY_INLINE VU16 loadWords(const Byte* from) { return words(loadPixels(from)); }

template <class Rule, auto twin>
void bytes(const Byte* top, const Byte* below, std::ptrdiff_t count, std::uint16_t weight, Byte* mixed) {
  const Rule rule(weight);
  const auto step = static_cast<std::ptrdiff_t>(vectorBytes());
  const std::ptrdiff_t whole = count / step * step;
  for (std::ptrdiff_t i = 0; i < whole; i += step) {
    storePixels(pixelsOf(rule(loadWords(top + i), loadWords(below + i))), mixed + i);
  }
  (plainKernels<MixKernels>().*twin)(top + whole, below + whole, count - whole, weight, mixed + whole);
}

template <class Rule, auto twin>
void bgra32ToBgr24(const Byte* top, const Byte* below, std::ptrdiff_t count, std::uint16_t weight,
                   Byte* mixed) {
  const Rule rule(weight);
  const Bgr24Storer store;
  const auto step = static_cast<std::ptrdiff_t>(vectorPixels());
  const std::ptrdiff_t whole = inWholeVectors24(count);
  for (std::ptrdiff_t x = 0; x < whole; x += step) {
    store(hn::BitCast(U8(), rule(loadWords(top + 4 * x), loadWords(below + 4 * x))), mixed + 3 * x);
  }
  (plainKernels<MixKernels>().*twin)(top + 4 * whole, below + 4 * whole, count - whole, weight,
                                     mixed + 3 * whole);
}

/// Calls mix(top, below) for whole vectors of pixels of 32 bits; the twin processes the rest.
template <auto twin, class Mix>
HWY_INLINE void forEachVector(const Byte* top, const Byte* below, std::ptrdiff_t count, std::uint16_t weight,
                              Byte* mixed, Mix&& mix) {
  const auto step = static_cast<std::ptrdiff_t>(vectorPixels());
  const std::ptrdiff_t whole = count / step * step;
  for (std::ptrdiff_t x = 0; x < whole; x += step) {
    storePixels(mix(loadPixels(top + 4 * x), loadPixels(below + 4 * x)), mixed + 4 * x);
  }
  (plainKernels<MixKernels>().*twin)(top + 4 * whole, below + 4 * whole, count - whole, weight,
                                     mixed + 4 * whole);
}

void opaqueOver255(const Byte* top, const Byte* below, std::ptrdiff_t count, std::uint16_t weight,
                   Byte* mixed) {
  const Over255 rule(weight);
  forEachVector<&MixKernels::opaqueOver255>(top, below, count, weight, mixed, [&](VU32 t, VU32 b) HWY_ATTR {
    return hn::Or(pixelsOf(rule(words(t), words(b))), hn::Set(U32(), 0xFF000000));
  });
}

/// A vector of MixKernels::fade. Numerators are below 2^24 and quotients below 256, so that the truncated
/// quotient of floats is the exact one.
HWY_NOINLINE VU32 fadeTranslucent(VU32 top, VU32 below, std::uint16_t weight) {
  const U32 d;
  const F32 df;
  const VU32 weightTop = hn::Mul(hn::ShiftRight<24>(top), hn::Set(d, weight));
  const VU32 weightBelow = hn::Mul(hn::ShiftRight<24>(below), hn::Set(d, 255U - weight));
  const VU32 sum = hn::Add(weightTop, weightBelow);
  const VF32 half = toFloat(hn::ShiftRight<1>(sum));
  const VF32 divisor = toFloat(hn::Max(sum, hn::Set(d, 1)));
  const auto channel = [&](VU32 t, VU32 b) HWY_ATTR {
    const auto byte = [&](VU32 v) HWY_ATTR { return toFloat(hn::And(v, hn::Set(d, 0xFF))); };
    const VF32 part = hn::MulAdd(byte(b), toFloat(weightBelow), half);
    return truncated(hn::Div(hn::MulAdd(byte(t), toFloat(weightTop), part), divisor));
  };
  const VU32 blue = channel(top, below);
  const VU32 green = channel(hn::ShiftRight<8>(top), hn::ShiftRight<8>(below));
  const VU32 red = channel(hn::ShiftRight<16>(top), hn::ShiftRight<16>(below));
  const VF32 alphas = hn::Mul(hn::Add(toFloat(sum), hn::Set(df, 127.5F)), hn::Set(df, 1.0F / 255.0F));
  return hn::Or(hn::Or(blue, hn::ShiftLeft<8>(green)),
                hn::Or(hn::ShiftLeft<16>(red), hn::ShiftLeft<24>(truncated(alphas))));
}

void fade(const Byte* top, const Byte* below, std::ptrdiff_t count, std::uint16_t weight, Byte* mixed) {
  const Over255 rule(weight);
  forEachVector<&MixKernels::fade>(top, below, count, weight, mixed, [&](VU32 t, VU32 b) HWY_ATTR {
    // For opaque pixels the formula is that of their bytes, rounded.
    const auto isOpaque = hn::Eq(hn::ShiftRight<24>(hn::And(t, b)), hn::Set(U32(), 255));
    return hn::AllTrue(U32(), isOpaque) ? pixelsOf(rule.rounded(words(t), words(b)))
                                        : fadeTranslucent(t, b, weight);
  });
}

constexpr MixKernels vectorKernels{bytes<Over255, &MixKernels::bytesOver255>,
                                   bytes<Over256, &MixKernels::bytesOver256>,
                                   bgra32ToBgr24<Over255, &MixKernels::bgra32ToBgr24Over255>,
                                   bgra32ToBgr24<Over256, &MixKernels::bgra32ToBgr24Over256>,
                                   opaqueOver255,
                                   fade};

}  // namespace
}  // namespace dibkit::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

template <>
constexpr const dibkit::MixKernels* dibkit::recordedKernels<dibkit::MixKernels, HWY_TARGET> =
    &dibkit::HWY_NAMESPACE::vectorKernels;
#endif

#if HWY_ONCE
namespace dibkit {

template <>
std::span<const Compiled<MixKernels>> compiledKernels() {
  return everyRecorded<MixKernels, HWY_TARGETS>();
}

}  // namespace dibkit
#endif
