#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/blend_simd.cpp"
#include "hwy/foreach_target.h"  // compiles this file once for each instruction set
#include "hwy/highway.h"
#include "kernels/bgra32_simd.h"
#include "kernels/blend.h"
#include "kernels/compiled.h"

#if HWY_TARGET != HWY_SCALAR
HWY_BEFORE_NAMESPACE();
namespace dibkit::HWY_NAMESPACE {
namespace {

using Byte = std::uint8_t;

/// The source alphas of a vector of pixels, scaled by the layer's opacity and the mask, for every byte of
/// their pixels.
class LayerAlphas {
 public:
  HWY_INLINE LayerAlphas(LayerOpacity opacity, const Byte* mask)
      : opacity_(opacity),
        mask_(mask),
        scales_(opacity.reduction != 0 || opacity.scale != 255 || mask != nullptr) {}

  /// \param x where in the row the vector begins
  HWY_INLINE VU16 operator()(VU32 pixels, std::ptrdiff_t x) const {
    const VU16 alphas = spreadAlphas(pixels);
    return scales_ ? scaled(alphas, x) : alphas;
  }

 private:
  HWY_INLINE VU16 scaled(VU16 alphas, std::ptrdiff_t x) const {
    const U16 d;
    const VU16 left = hn::SaturatedSub(alphas, hn::Set(d, opacity_.reduction));
    const VU16 layer = divideBy255(hn::Mul(left, hn::Set(d, opacity_.scale)));
    if (mask_ == nullptr) return layer;
    const hn::Rebind<Byte, U32> quarter;
    const VU16 mask = spread(hn::PromoteTo(U32(), hn::LoadU(quarter, mask_ + x)));
    return divideBy255(hn::Mul(layer, mask));
  }

  LayerOpacity opacity_;
  const Byte* mask_;
  bool scales_;
};

HWY_INLINE bool allEqual(VU16 words, std::uint16_t value) {
  return hn::AllTrue(U16(), hn::Eq(words, hn::Set(U16(), value)));
}
HWY_INLINE VU16 selectEqual(VU16 words, std::uint16_t value, VU16 yes, VU16 no) {
  return hn::IfThenElse(hn::Eq(words, hn::Set(U16(), value)), yes, no);
}

// Rules. Each computes a vector by its formula, from the bytes of the destination, those of the source, and
// the source's alphas for every byte.

struct LinearMix {
  static HWY_INLINE VU16 mix(VU16 below, VU16 above, VU16 alphas) {
    // 255 has to copy the source, which a weight of 256 does.
    const U16 d;
    return mixByWeight(below, above, hn::Sub(alphas, hn::VecFromMask(d, hn::Eq(alphas, hn::Set(d, 255)))));
  }

  /// (256 d + (s - d) weight) / 256, modulo 2^16
  static HWY_INLINE VU16 mixByWeight(VU16 below, VU16 above, VU16 weight) {
    const VU16 evenDifference = hn::Sub(evenBytes(above), evenBytes(below));
    const VU16 oddDifference = hn::Sub(oddBytes(above), oddBytes(below));
    const VU16 even = hn::Add(hn::ShiftLeft<8>(below), hn::Mul(evenDifference, weight));
    const VU16 odd = hn::Add(upperBytes(below), hn::Mul(oddDifference, weight));
    return hn::Or(oddBytes(even), upperBytes(odd));
  }
};

struct EvenMix {
  static HWY_INLINE VU16 mix(VU16 below, VU16 above, VU16 alphas) {
    const U16 d;
    // f = 32768 a / 255 = 256 a 32896 / 65536 for a below 255
    const VU16 f = hn::MulHigh(hn::ShiftLeft<8>(alphas), hn::Set(d, 32896));
    const VU16 rest = hn::Sub(hn::Set(d, 32768), f);
    const auto half = [&](VU16 under, VU16 over)
                          HWY_ATTR { return hn::Add(hn::MulHigh(under, rest), hn::MulHigh(over, f)); };
    const VU16 even = half(evenBytes(below), evenBytes(above));
    const VU16 odd = half(oddBytes(below), oddBytes(above));
    const VU16 mixed = hn::Or(hn::Add(even, even), hn::ShiftLeft<9>(odd));
    return selectEqual(alphas, 0, below, selectEqual(alphas, 255, above, mixed));
  }
};

struct ExactOver {
  static HWY_INLINE VU16 mix(VU16 below, VU16 above, VU16 alphas) {
    const VU16 belowAlphas = spreadAlphas(pixelsOf(below));
    return allEqual(belowAlphas, 255) ? ontoOpaque(below, above, alphas)
                                      : ontoAny(below, belowAlphas, above, alphas);
  }

  /// For alphas of 0 and 255 alone.
  static HWY_INLINE VU16 select(VU16 below, VU16 above, VU16 alphas) {
    const VU16 belowAlphas = spreadAlphas(pixelsOf(below));
    const VU16 kept = hn::IfThenZeroElse(hn::Eq(belowAlphas, hn::Zero(U16())), below);
    return selectEqual(alphas, 255, above, kept);
  }

 private:
  /// With ad = 255 the formula is (d (255 - a) + s a) / 255, and alpha remains 255.
  static HWY_INLINE VU16 ontoOpaque(VU16 below, VU16 above, VU16 alphas) {
    const VU16 rest = hn::Sub(hn::Set(U16(), 255), alphas);
    const auto channels = [&](VU16 under, VU16 over) HWY_ATTR {
      return divideBy255(hn::Add(hn::Mul(under, rest), hn::Mul(over, alphas)));
    };
    const VU16 even = channels(evenBytes(below), evenBytes(above));
    const VU16 odd = channels(oddBytes(below), oddBytes(above));
    return hn::Or(hn::Or(even, hn::ShiftLeft<8>(odd)), words(hn::Set(U32(), 0xFF000000)));
  }

  static HWY_INLINE VU16 ontoAny(VU16 below, VU16 belowAlphas, VU16 above, VU16 alphas) {
    const U16 d;
    const F32 df;
    // With k = ad (255 - a) = 255 h + l the sum d k / 255 + s a is d h + d l / 255 + s a, which stays in 16
    // bits, and the resulting alpha is a + k / 255, rounded up.
    const VU16 k = hn::Mul(belowAlphas, hn::Sub(hn::Set(d, 255), alphas));
    const VU16 h = divideBy255(k);
    const VU16 l = hn::Add(hn::Sub(k, hn::ShiftLeft<8>(h)), h);
    const VU16 roundedUp = hn::Add(h, hn::Min(l, hn::Set(d, 1)));
    const VU32 outAlphas = lowWords(pixelsOf(hn::Add(alphas, roundedUp)));
    const auto sumsOf = [&](VU16 under, VU16 over) HWY_ATTR {
      const VU16 underSum = hn::Add(hn::Mul(under, h), divideBy255(hn::Mul(under, l)));
      return pixelsOf(hn::Add(underSum, hn::Mul(over, alphas)));
    };
    // (sum + 1/2) / outAlpha + 512, whose bits 14 to 21 are the truncated quotient. The half prevents exact
    // quotients from being rounded below their whole number; tested for every sum up to 65025 and every
    // alpha. Where the resulting alpha is 0 all sums are 0 too, so any finite divisor will do.
    const VF32 reciprocals = hn::Div(hn::Set(df, 1.0F), toFloat(hn::Max(outAlphas, hn::Set(U32(), 1))));
    const VF32 offsets = hn::MulAdd(reciprocals, hn::Set(df, 0.5F), hn::Set(df, 512.0F));
    const auto quotients = [&](VU32 sums) HWY_ATTR {
      return hn::BitCast(U32(), hn::MulAdd(toFloat(sums), reciprocals, offsets));
    };
    const VU32 even = sumsOf(evenBytes(below), evenBytes(above));
    const VU32 odd = sumsOf(oddBytes(below), oddBytes(above));
    const auto bits = [](VU32 v, std::uint32_t mask) HWY_ATTR { return hn::And(v, hn::Set(U32(), mask)); };
    const VU32 blue = bits(hn::ShiftRight<14>(quotients(lowWords(even))), 0xFF);
    const VU32 green = bits(hn::ShiftRight<6>(quotients(lowWords(odd))), 0xFF00);
    const VU32 red = bits(hn::ShiftLeft<2>(quotients(hn::ShiftRight<16>(even))), 0xFF0000);
    return words(hn::Or(hn::Or(blue, green), hn::Or(red, hn::ShiftLeft<24>(outAlphas))));
  }
};

struct PlainOver {
  static HWY_INLINE VU16 mix(VU16 below, VU16 above, VU16 alphas) {
    const U16 d;
    const F32 df;
    const VU16 belowAlphas = spreadAlphas(pixelsOf(below));
    // 256 (ad + a) - ad a, modulo 2^16, is at most 65535.
    const VU16 sums = hn::Sub(hn::ShiftLeft<8>(hn::Add(belowAlphas, alphas)), hn::Mul(belowAlphas, alphas));
    // A divisor of 0 occurs with a = 0 alone, where the pixel is unchanged.
    const VF32 divisors = toFloat(lowWords(pixelsOf(hn::Max(sums, hn::Set(d, 1)))));
    const VF32 rests = toFloat(lowWords(pixelsOf(hn::Sub(hn::Set(d, 256), alphas))));
    // d ad (256 - a) + 256 s a. All floats are whole numbers of at most 24 bits, for which the sum is exact
    // and so is the truncated quotient; a multiplication by the reciprocal would not be.
    const auto quotients = [&](VU32 under, VU32 over) HWY_ATTR {
      const VF32 weighted = hn::Mul(toFloat(over), hn::Set(df, 256.0F));
      return truncated(hn::Div(hn::MulAdd(toFloat(under), rests, weighted), divisors));
    };
    const VU32 evenUnder = pixelsOf(hn::Mul(evenBytes(below), belowAlphas));
    const VU32 evenOver = pixelsOf(hn::Mul(evenBytes(above), alphas));
    const VU32 oddUnder = pixelsOf(hn::Mul(oddBytes(below), belowAlphas));
    const VU32 oddOver = pixelsOf(hn::Mul(oddBytes(above), alphas));
    const VU32 blue = quotients(lowWords(evenUnder), lowWords(evenOver));
    const VU32 green = quotients(lowWords(oddUnder), lowWords(oddOver));
    const VU32 red = quotients(hn::ShiftRight<16>(evenUnder), hn::ShiftRight<16>(evenOver));
    const VU32 alpha = hn::And(pixelsOf(hn::ShiftRight<8>(sums)), hn::Set(U32(), 0xFF));
    const VU32 blended = hn::Or(hn::Or(blue, hn::ShiftLeft<8>(green)),
                                hn::Or(hn::ShiftLeft<16>(red), hn::ShiftLeft<24>(alpha)));
    return selectEqual(alphas, 0, below, words(blended));
  }
};

HWY_INLINE const Byte* at(const Byte* mask, std::ptrdiff_t x) { return mask != nullptr ? mask + x : nullptr; }

/// Calls step(below, above, alphas) for whole vectors of the row, from the left; the twin processes the rest.
template <auto twin, class Step>
HWY_INLINE void forEachVector(Byte* to, const Byte* from, int count, LayerOpacity opacity, const Byte* mask,
                              Step&& step) {
  const auto pixels = static_cast<std::ptrdiff_t>(vectorPixels());
  const std::ptrdiff_t whole = writesAhead(from, to) ? 0 : count / pixels * pixels;
  const LayerAlphas alphasAt(opacity, mask);
  for (std::ptrdiff_t x = 0; x < whole; x += pixels) {
    const VU32 above = loadPixels(from + 4 * x);
    step(to + 4 * x, words(above), alphasAt(above, x));
  }
  (plainKernels<BlendKernels>().*twin)(to + 4 * whole, from + 4 * whole, static_cast<int>(count - whole),
                                       opacity, at(mask, whole));
}

template <class Rule, auto twin>
void mix(Byte* to, const Byte* from, int count, LayerOpacity opacity, const Byte* mask) {
  forEachVector<twin>(to, from, count, opacity, mask, [](Byte* at, VU16 above, VU16 alphas) HWY_ATTR {
    storePixels(pixelsOf(Rule::mix(words(loadPixels(at)), above, alphas)), at);
  });
}

void over(Byte* to, const Byte* from, int count, LayerOpacity opacity, const Byte* mask) {
  forEachVector<&BlendKernels::over>(
      to, from, count, opacity, mask, [](Byte* at, VU16 above, VU16 alphas) HWY_ATTR {
        const U16 d;
        const VU16 below = words(loadPixels(at));
        // (alpha + 1) has bits 1 to 7 clear only for the alphas 0 and 255.
        const VU16 translucent = hn::And(hn::Add(alphas, hn::Set(d, 1)), hn::Set(d, 0xFE));
        const bool isHard = allEqual(translucent, 0);
        storePixels(
            pixelsOf(isHard ? ExactOver::select(below, above, alphas) : ExactOver::mix(below, above, alphas)),
            at);
      });
}

void plainOver(Byte* to, const Byte* from, int count, LayerOpacity opacity, const Byte* mask) {
  forEachVector<&BlendKernels::plainOver>(
      to, from, count, opacity, mask, [](Byte* at, VU16 above, VU16 alphas) HWY_ATTR {
        if (allEqual(alphas, 0)) return;
        storePixels(pixelsOf(PlainOver::mix(words(loadPixels(at)), above, alphas)), at);
      });
}

void copyOrShade(Byte* to, Byte* from, int count, LayerOpacity opacity, const Byte* mask) {
  const U16 d;
  const auto pixels = static_cast<std::ptrdiff_t>(vectorPixels());
  const bool overlap = writesAhead(from, to) || writesAhead(to, from);
  const std::ptrdiff_t whole = overlap ? 0 : count / pixels * pixels;
  const LayerAlphas alphasAt(opacity, mask);
  for (std::ptrdiff_t x = 0; x < whole; x += pixels) {
    const VU32 source = loadPixels(from + 4 * x);
    const VU16 above = words(source);
    const VU16 alphas = alphasAt(source, x);
    const VU16 below = words(loadPixels(to + 4 * x));
    const auto copied = hn::Eq(alphas, hn::Set(d, 255));
    storePixels(pixelsOf(hn::IfThenElse(copied, above, below)), to + 4 * x);
    const VU16 weights = hn::IfThenZeroElse(copied, alphas);
    if (allEqual(weights, 0)) continue;
    // 256 a / 255 is a for a below 255, and (256 s + (d - s) a) / 256 the linear mix with the layers
    // exchanged.
    const VU32 shaded = pixelsOf(LinearMix::mixByWeight(above, below, weights));
    const VU32 alphaBits = hn::Set(U32(), 0xFF000000);
    storePixels(hn::Or(hn::And(source, alphaBits), hn::AndNot(alphaBits, shaded)), from + 4 * x);
  }
  plainKernels<BlendKernels>().copyOrShade(to + 4 * whole, from + 4 * whole, static_cast<int>(count - whole),
                                           opacity, at(mask, whole));
}

constexpr BlendKernels vectorKernels{over, plainOver, mix<LinearMix, &BlendKernels::linearMix>,
                                     mix<EvenMix, &BlendKernels::evenMix>, copyOrShade};

}  // namespace
}  // namespace dibkit::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

template <>
constexpr const dibkit::BlendKernels* dibkit::recordedKernels<dibkit::BlendKernels, HWY_TARGET> =
    &dibkit::HWY_NAMESPACE::vectorKernels;
#endif

#if HWY_ONCE
namespace dibkit {

template <>
std::span<const Compiled<BlendKernels>> compiledKernels() {
  return everyRecorded<BlendKernels, HWY_TARGETS>();
}

}  // namespace dibkit
#endif
