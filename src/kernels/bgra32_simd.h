// Vectors of 32-bit pixels and their bytes as numbers of 16 bits, for the sources with vector instructions.
// Included once for each instruction set, so it has the guard that Highway has for such headers.

#if defined(DIBKIT_KERNELS_BGRA32_SIMD_H) == defined(HWY_TARGET_TOGGLE)
#ifdef DIBKIT_KERNELS_BGRA32_SIMD_H
#undef DIBKIT_KERNELS_BGRA32_SIMD_H
#else
#define DIBKIT_KERNELS_BGRA32_SIMD_H
#endif

#include <cstddef>
#include <cstdint>

#include "kernels/vectors_simd.h"

HWY_BEFORE_NAMESPACE();
namespace dibkit::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR

using F32 = hn::Repartition<float, U8>;
using VU16 = hn::Vec<U16>;
using VU32 = hn::Vec<U32>;
using VF32 = hn::Vec<F32>;

HWY_INLINE VU32 loadPixels(const std::uint8_t* from) { return hn::BitCast(U32(), hn::LoadU(U8(), from)); }
HWY_INLINE void storePixels(VU32 pixels, std::uint8_t* to) {
  hn::StoreU(hn::BitCast(U8(), pixels), U8(), to);
}

/// Whether writing a vector of `to` changes pixels of `from` that the same vector has read already: `to`
/// begins inside of it. Compared as numbers, since pointers into two different images have no defined order.
HWY_INLINE bool writesAhead(const std::uint8_t* from, const std::uint8_t* to) {
  const std::uintptr_t ahead = reinterpret_cast<std::uintptr_t>(to) - reinterpret_cast<std::uintptr_t>(from);
  return ahead != 0 && ahead < vectorBytes();
}

/// \name The same bits as numbers of 16 bits, two for each pixel, and back
/// @{
HWY_INLINE VU16 words(VU32 pixels) { return hn::BitCast(U16(), pixels); }
HWY_INLINE VU32 pixelsOf(VU16 words) { return hn::BitCast(U32(), words); }
/// @}

/// \name The bytes of pixels as numbers of 16 bits
/// Blue and red are the even bytes, green and alpha the odd ones. No byte crosses a lane, so that this takes
/// no shuffle.
/// @{
HWY_INLINE VU16 evenBytes(VU16 v) { return hn::And(v, hn::Set(U16(), 0xFF)); }
HWY_INLINE VU16 oddBytes(VU16 v) { return hn::ShiftRight<8>(v); }
/// The odd bytes times 256.
HWY_INLINE VU16 upperBytes(VU16 v) { return hn::And(v, hn::Set(U16(), 0xFF00)); }
/// @}

/// Numbers below 2^16, one for each pixel, as those of both words of their pixels.
HWY_INLINE VU16 spread(VU32 v) { return words(hn::Or(v, hn::ShiftLeft<16>(v))); }
/// The alphas of pixels as numbers of 16 bits, for both words of their pixels.
HWY_INLINE VU16 spreadAlphas(VU32 pixels) {
  alignas(16) static constexpr std::uint8_t moves[16] = {3,  0x80, 3,  0x80, 7,  0x80, 7,  0x80,
                                                         11, 0x80, 11, 0x80, 15, 0x80, 15, 0x80};
  return hn::BitCast(U16(), hn::TableLookupBytesOr0(hn::BitCast(U8(), pixels), hn::LoadDup128(U8(), moves)));
}
HWY_INLINE VU32 lowWords(VU32 v) { return hn::And(v, hn::Set(U32(), 0xFFFF)); }

/// x / 255, truncated, for every x
HWY_INLINE VU16 divideBy255(VU16 x) { return hn::ShiftRight<7>(hn::MulHigh(x, hn::Set(U16(), 0x8081))); }

/// Numbers below 2^31.
HWY_INLINE VF32 toFloat(VU32 v) { return hn::ConvertTo(F32(), hn::BitCast(hn::RebindToSigned<U32>(), v)); }
HWY_INLINE VU32 truncated(VF32 v) { return hn::BitCast(U32(), hn::ConvertTo(hn::RebindToSigned<U32>(), v)); }

#endif

}  // namespace dibkit::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
