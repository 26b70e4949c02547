// The types of whole vectors, for the sources with vector instructions. Included once for each instruction
// set, so it has the guard that Highway has for such headers.

#if defined(DIBKIT_KERNELS_VECTORS_SIMD_H) == defined(HWY_TARGET_TOGGLE)
#ifdef DIBKIT_KERNELS_VECTORS_SIMD_H
#undef DIBKIT_KERNELS_VECTORS_SIMD_H
#else
#define DIBKIT_KERNELS_VECTORS_SIMD_H
#endif

#include <cstddef>
#include <cstdint>

#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace dibkit::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR

namespace hn = hwy::HWY_NAMESPACE;

/// A whole vector of bytes.
using U8 = hn::ScalableTag<std::uint8_t>;
using U16 = hn::Repartition<std::uint16_t, U8>;
using U32 = hn::Repartition<std::uint32_t, U8>;
using VU8 = hn::Vec<U8>;

/// Bytes of a vector, and its pixels of 32 bits.
HWY_INLINE std::size_t vectorBytes() { return hn::Lanes(U8()); }
HWY_INLINE std::size_t vectorPixels() { return hn::Lanes(U32()); }

#endif

}  // namespace dibkit::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
