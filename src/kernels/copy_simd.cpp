#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/copy_simd.cpp"
#include "hwy/foreach_target.h"  // compiles this file once for each instruction set
#include "hwy/highway.h"
#include "kernels/bgra32_simd.h"
#include "kernels/compiled.h"
#include "kernels/copy.h"

#if HWY_TARGET != HWY_SCALAR
HWY_BEFORE_NAMESPACE();
namespace dibkit::HWY_NAMESPACE {
namespace {

using Byte = std::uint8_t;

/// How many pixels of a row are processed in whole vectors, when the row may overlap its source.
HWY_INLINE std::ptrdiff_t inWholeVectors(const Byte* to, const Byte* from, int count) {
  const auto pixels = static_cast<std::ptrdiff_t>(vectorPixels());
  return writesAhead(from, to) ? 0 : count / pixels * pixels;
}

void lowered(Byte* to, const Byte* from, int count, Byte reduction) {
  const auto pixels = static_cast<std::ptrdiff_t>(vectorPixels());
  const std::ptrdiff_t whole = inWholeVectors(to, from, count);
  const VU8 less = hn::BitCast(U8(), hn::Set(U32(), std::uint32_t{reduction} << 24));
  for (std::ptrdiff_t x = 0; x < whole; x += pixels) {
    hn::StoreU(hn::SaturatedSub(hn::LoadU(U8(), from + 4 * x), less), U8(), to + 4 * x);
  }
  plainKernels<CopyKernels>().lowered(to + 4 * whole, from + 4 * whole, static_cast<int>(count - whole),
                                      reduction);
}

void alphas(Byte* to, const Byte* from, int count) {
  const auto pixels = static_cast<std::ptrdiff_t>(vectorPixels());
  const std::ptrdiff_t whole = inWholeVectors(to, from, count);
  const VU32 alphaBits = hn::Set(U32(), 0xFF000000);
  for (std::ptrdiff_t x = 0; x < whole; x += pixels) {
    const VU32 colours = hn::AndNot(alphaBits, loadPixels(to + 4 * x));
    storePixels(hn::Or(colours, hn::And(alphaBits, loadPixels(from + 4 * x))), to + 4 * x);
  }
  plainKernels<CopyKernels>().alphas(to + 4 * whole, from + 4 * whole, static_cast<int>(count - whole));
}

void doubled(const Byte* from, int count, Byte* to) {
  const U32 d;
  const auto pixels = static_cast<std::ptrdiff_t>(vectorPixels());
  const std::ptrdiff_t whole = count / pixels * pixels;
  for (std::ptrdiff_t x = 0; x < whole; x += pixels) {
    // StoreInterleaved2 puts the pixels of both blocks of 16 bytes in order.
    const VU32 v = loadPixels(from + 4 * x);
    hn::StoreInterleaved2(v, v, d, reinterpret_cast<std::uint32_t*>(to + 8 * x));
  }
  plainKernels<CopyKernels>().doubled(from + 4 * whole, static_cast<int>(count - whole), to + 8 * whole);
}

void everySecond(const Byte* from, int count, Byte* to) {
  const U32 d;
  const auto pixels = static_cast<std::ptrdiff_t>(vectorPixels());
  // A vector reads one pixel more than it uses, which the last one of the row does not have.
  const std::ptrdiff_t whole = count > 0 ? (count - 1) / pixels * pixels : 0;
  for (std::ptrdiff_t x = 0; x < whole; x += pixels) {
    const VU32 low = loadPixels(from + 8 * x);
    const VU32 high = loadPixels(from + 8 * x + 4 * pixels);
    storePixels(hn::ConcatEven(d, high, low), to + 4 * x);
  }
  plainKernels<CopyKernels>().everySecond(from + 8 * whole, static_cast<int>(count - whole), to + 4 * whole);
}

std::uint32_t commonBits(const Byte* pixels, int count) {
  const U32 d;
  const auto step = static_cast<std::ptrdiff_t>(vectorPixels());
  const std::ptrdiff_t whole = count / (2 * step) * (2 * step);
  VU32 first = hn::Set(d, ~std::uint32_t{0});
  VU32 second = first;
  for (std::ptrdiff_t x = 0; x < whole; x += 2 * step) {
    first = hn::And(first, loadPixels(pixels + 4 * x));
    second = hn::And(second, loadPixels(pixels + 4 * (x + step)));
  }
  Byte lanes[HWY_MAX_BYTES];
  storePixels(hn::And(first, second), lanes);
  const auto& twin = plainKernels<CopyKernels>();
  return twin.commonBits(lanes, static_cast<int>(step)) &
         twin.commonBits(pixels + 4 * whole, static_cast<int>(count - whole));
}

constexpr CopyKernels vectorKernels{lowered, alphas, doubled, everySecond, commonBits};

}  // namespace
}  // namespace dibkit::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

template <>
constexpr const dibkit::CopyKernels* dibkit::recordedKernels<dibkit::CopyKernels, HWY_TARGET> =
    &dibkit::HWY_NAMESPACE::vectorKernels;
#endif

#if HWY_ONCE
namespace dibkit {

template <>
std::span<const Compiled<CopyKernels>> compiledKernels() {
  return everyRecorded<CopyKernels, HWY_TARGETS>();
}

}  // namespace dibkit
#endif
