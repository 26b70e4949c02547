#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/conversion_simd.cpp"
#include "hwy/foreach_target.h"  // compiles this file once for each instruction set
#include "hwy/highway.h"
#include "kernels/bgr24_simd.h"
#include "kernels/compiled.h"
#include "kernels/conversion.h"

#if HWY_TARGET != HWY_SCALAR
HWY_BEFORE_NAMESPACE();
namespace dibkit::HWY_NAMESPACE {
namespace {

using Bytes = std::uint8_t* HWY_RESTRICT;
using ConstBytes = const std::uint8_t* HWY_RESTRICT;

/// The rest of a row, of which `x` pixels are done, by the plain twin.
HWY_INLINE void finish(ConversionKernels::Row twin, ConstBytes from, int bytesFrom, int width,
                       std::ptrdiff_t x, Bytes to, int bytesTo) {
  twin(from + x * bytesFrom, static_cast<int>(width - x), to + x * bytesTo);
}

/// Where the last vectors of a row begin, of which `whole` pixels are done: two cover what is left.
HWY_INLINE std::array<std::ptrdiff_t, 2> lastVectors(std::ptrdiff_t whole, std::ptrdiff_t width) {
  const std::ptrdiff_t last = width - static_cast<std::ptrdiff_t>(vectorPixels());
  return {whole < last ? whole : last, last};
}

constexpr Moves inOrder = movesFrom24({0, 1, 2, 0x80});
constexpr Moves reversed = movesFrom24({0x80, 2, 1, 0});

void bgra32ToBgr24(ConstBytes from, int width, Bytes to) {
  const Bgr24Storer store;
  const auto step = static_cast<std::ptrdiff_t>(vectorPixels());
  const std::ptrdiff_t whole = inWholeVectors24(width);
  for (std::ptrdiff_t x = 0; x < whole; x += step) store(hn::LoadU(U8(), from + 4 * x), to + 3 * x);
  finish(plainKernels<ConversionKernels>().bgra32ToBgr24, from, 4, width, whole, to, 3);
}

void rgb555ToBgr24(ConstBytes from, int width, Bytes to) {
  const U32 d;
  const hn::Rebind<std::uint16_t, U32> half;
  const Bgr24Storer store;
  const auto step = static_cast<std::ptrdiff_t>(vectorPixels());
  const std::ptrdiff_t whole = inWholeVectors24(width);
  for (std::ptrdiff_t x = 0; x < whole; x += step) {
    const auto words = hn::LoadU(hn::Repartition<std::uint8_t, decltype(half)>(), from + 2 * x);
    const auto pixel = hn::PromoteTo(d, hn::BitCast(half, words));
    const auto blue = hn::And(hn::ShiftLeft<3>(pixel), hn::Set(d, 0xF8));
    const auto green = hn::And(hn::ShiftLeft<6>(pixel), hn::Set(d, 0xF800));
    const auto red = hn::And(hn::ShiftLeft<9>(pixel), hn::Set(d, 0xF80000));
    store(hn::BitCast(U8(), hn::Or(hn::Or(blue, green), red)), to + 3 * x);
  }
  finish(plainKernels<ConversionKernels>().rgb555ToBgr24, from, 2, width, whole, to, 3);
}

/// Pixels of 32 bits, whose fourth byte does not matter, as words of 16 bits.
HWY_INLINE void storeRgb555(VU8 pixels, Bytes to) {
  const U32 d;
  const hn::Rebind<std::uint16_t, U32> half;
  const auto pixel = hn::BitCast(d, pixels);
  const auto red = hn::And(hn::ShiftRight<9>(pixel), hn::Set(d, 0x7C00));
  const auto green = hn::And(hn::ShiftRight<6>(pixel), hn::Set(d, 0x03E0));
  const auto blue = hn::And(hn::ShiftRight<3>(pixel), hn::Set(d, 0x001F));
  const auto words =
      hn::DemoteTo(half, hn::BitCast(hn::RebindToSigned<U32>(), hn::Or(hn::Or(red, green), blue)));
  const hn::Repartition<std::uint8_t, decltype(half)> bytes;
  hn::StoreU(hn::BitCast(bytes, words), bytes, to);
}

void bgr24ToRgb555(ConstBytes from, int width, Bytes to) {
  const Bgr24Loader<inOrder> load;
  const auto step = static_cast<std::ptrdiff_t>(vectorPixels());
  const std::ptrdiff_t whole = inWholeVectors24(width);
  for (std::ptrdiff_t x = 0; x < whole; x += step) storeRgb555(load(from + 3 * x), to + 2 * x);
  if (whole != 0) {
    for (const std::ptrdiff_t x : lastVectors(whole, width)) storeRgb555(load.last(from + 3 * x), to + 2 * x);
    return;
  }
  finish(plainKernels<ConversionKernels>().bgr24ToRgb555, from, 3, width, whole, to, 2);
}

void bgra32ToRgb555(ConstBytes from, int width, Bytes to) {
  const auto step = static_cast<std::ptrdiff_t>(vectorPixels());
  const std::ptrdiff_t whole = width / step * step;
  for (std::ptrdiff_t x = 0; x < whole; x += step) storeRgb555(hn::LoadU(U8(), from + 4 * x), to + 2 * x);
  finish(plainKernels<ConversionKernels>().bgra32ToRgb555, from, 4, width, whole, to, 2);
}

/// Spreads as many pixels of 24 bits as whole vectors take, and sets bits of each.
/// \return how many pixels are done: none or all
template <const Moves& moves>
HWY_INLINE std::ptrdiff_t spread24(ConstBytes from, std::ptrdiff_t width, std::uint32_t bits, Bytes to) {
  const Bgr24Loader<moves> load;
  const auto added = hn::BitCast(U8(), hn::Set(U32(), bits));
  const auto step = static_cast<std::ptrdiff_t>(vectorPixels());
  const std::ptrdiff_t whole = inWholeVectors24(width);
  if (whole == 0) return 0;
  for (std::ptrdiff_t x = 0; x < whole; x += step) {
    hn::StoreU(hn::Or(load(from + 3 * x), added), U8(), to + 4 * x);
  }
  for (const std::ptrdiff_t x : lastVectors(whole, width)) {
    hn::StoreU(hn::Or(load.last(from + 3 * x), added), U8(), to + 4 * x);
  }
  return width;
}

void bgr24ToBgra32(ConstBytes from, int width, std::uint8_t alpha, Bytes to) {
  if (spread24<inOrder>(from, width, std::uint32_t{alpha} << 24, to) != 0) return;
  plainKernels<ConversionKernels>().bgr24ToBgra32(from, width, alpha, to);
}

void bgr24ToReversed32(ConstBytes from, int width, Bytes to) {
  if (spread24<reversed>(from, width, 0, to) != 0) return;
  plainKernels<ConversionKernels>().bgr24ToReversed32(from, width, to);
}

/// A bit for each gray value v, eight in a byte: set where 0.299 v + 0.587 v + 0.114 v is below v in doubles.
struct RoundedDown {
  HWY_ALIGN std::uint8_t bits[32] = {};
  RoundedDown() {
    for (int v = 0; v < 256; ++v) {
      const auto value = static_cast<std::uint8_t>(v);
      const std::uint8_t pixel[3] = {value, value, value};
      if (grayInDoubles(pixel) != value) bits[v / 8] = static_cast<std::uint8_t>(bits[v / 8] | 1 << v % 8);
    }
  }
};

/// With n = 299 red + 587 green + 114 blue the gray is n / 1000. Only where 1000 divides n may the doubles
/// round to just below a whole number. In 16 bits: with n = 8 m + rest, n / 1000 = m 33555 / 2^22, truncated,
/// for every n here, and the remainder is small enough to be compared modulo 2^16.
template <class V>
HWY_INLINE V grayOfWords(V blue, V green, V red, hn::Mask<U16>& wholeNumber) {
  const U16 d;
  const auto times = [d](V v, std::uint16_t factor) HWY_ATTR { return hn::Mul(v, hn::Set(d, factor)); };
  const V eighths = hn::Add(hn::Add(times(red, 37), times(green, 73)), times(blue, 14));
  const V rest = hn::Add(times(hn::Add(red, green), 3), hn::Add(blue, blue));
  const V eighth = hn::Add(eighths, hn::ShiftRight<3>(rest));
  const V gray = hn::ShiftRight<6>(hn::MulHigh(eighth, hn::Set(d, 33555)));
  wholeNumber = hn::Eq(times(gray, 1000), hn::Add(hn::ShiftLeft<3>(eighths), rest));
  return gray;
}

/// Corrects the grays of a vector of pixels, some of which have a whole number. Pixels that are gray already
/// follow a table, and the others are computed in doubles.
HWY_NOINLINE void correctWholeNumbers(VU8 blue, VU8 green, VU8 red, VU8 whole, ConstBytes from, Bytes to) {
  static const RoundedDown roundedDown;
  alignas(16) static constexpr std::uint8_t bitOf[16] = {1, 2, 4, 8, 16, 32, 64, 128,
                                                         1, 2, 4, 8, 16, 32, 64, 128};
  const U8 d;
  const auto isGray = hn::And(hn::Eq(blue, green), hn::Eq(green, red));
  const auto half = [&](int at) HWY_ATTR { return hn::LoadDup128(d, roundedDown.bits + at); };
  const VU8 at = hn::And(hn::ShiftRight<3>(blue), hn::Set(d, 15));
  const VU8 bits = hn::IfThenElse(hn::Lt(blue, hn::Set(d, 128)), hn::TableLookupBytes(half(0), at),
                                  hn::TableLookupBytes(half(16), at));
  const VU8 bit = hn::TableLookupBytes(hn::LoadDup128(d, bitOf), hn::And(blue, hn::Set(d, 7)));
  const auto isBelow = hn::And(isGray, hn::TestBit(bits, bit));
  hn::StoreU(hn::Sub(hn::LoadU(d, to), hn::IfThenElseZero(isBelow, hn::Set(d, 1))), d, to);
  const auto others = hn::AndNot(isGray, hn::Ne(whole, hn::Zero(d)));
  if (hn::AllFalse(d, others)) return;
  alignas(HWY_MAX_BYTES) std::uint8_t isOther[HWY_MAX_BYTES];
  hn::Store(hn::VecFromMask(d, others), d, isOther);
  for (std::size_t i = 0; i < hn::Lanes(d); ++i) {
    if (isOther[i] != 0) to[i] = grayInDoubles(from + 3 * i);
  }
}

void bgr24ToGray(ConstBytes from, int width, Bytes to) {
  const U8 d;
  const U16 wide;
  const auto step = static_cast<std::ptrdiff_t>(vectorBytes());
  // The even bytes and the odd ones as numbers of 16 bits: no byte crosses a lane.
  const auto even = [&](VU8 v) HWY_ATTR { return hn::And(hn::BitCast(wide, v), hn::Set(wide, 0xFF)); };
  const auto odd = [&](VU8 v) HWY_ATTR { return hn::ShiftRight<8>(hn::BitCast(wide, v)); };
  const auto pack = [&](auto evens, auto odds)
                        HWY_ATTR { return hn::BitCast(d, hn::Or(evens, hn::ShiftLeft<8>(odds))); };
  std::ptrdiff_t x = 0;
  for (; x + step <= width; x += step) {
    VU8 blue, green, red;
    hn::LoadInterleaved3(d, from + 3 * x, blue, green, red);
    hn::Mask<U16> wholeEven, wholeOdd;
    const auto grayEven = grayOfWords(even(blue), even(green), even(red), wholeEven);
    const auto grayOdd = grayOfWords(odd(blue), odd(green), odd(red), wholeOdd);
    hn::StoreU(pack(grayEven, grayOdd), d, to + x);
    if (hn::AllFalse(wide, hn::Or(wholeEven, wholeOdd))) continue;
    const auto one = hn::Set(wide, 1);
    const VU8 whole = pack(hn::IfThenElseZero(wholeEven, one), hn::IfThenElseZero(wholeOdd, one));
    correctWholeNumbers(blue, green, red, whole, from + 3 * x, to + x);
  }
  finish(plainKernels<ConversionKernels>().bgr24ToGray, from, 3, width, x, to, 1);
}

constexpr ConversionKernels vectorKernels{bgra32ToBgr24, rgb555ToBgr24,     bgr24ToRgb555, bgra32ToRgb555,
                                          bgr24ToBgra32, bgr24ToReversed32, bgr24ToGray};

}  // namespace
}  // namespace dibkit::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

template <>
constexpr const dibkit::ConversionKernels* dibkit::recordedKernels<dibkit::ConversionKernels, HWY_TARGET> =
    &dibkit::HWY_NAMESPACE::vectorKernels;
#endif

#if HWY_ONCE
namespace dibkit {

template <>
std::span<const Compiled<ConversionKernels>> compiledKernels() {
  return everyRecorded<ConversionKernels, HWY_TARGETS>();
}

}  // namespace dibkit
#endif
