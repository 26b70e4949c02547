#pragma once

namespace dibkit {

/// Kernels are one source that is compiled for several instruction sets. Each compilation gives a table of
/// its functions: `plain` runs everywhere, `avx2` is defined where DIBKIT_AVX2 is.
/// \return the fastest table that this processor runs; chosen once
template <class Kernels>
const Kernels& fastestKernels() {
#if defined(DIBKIT_AVX2)
  static const bool hasAvx2 = __builtin_cpu_supports("avx2");
  if (hasAvx2) return Kernels::avx2;
#endif
  return Kernels::plain;
}

}  // namespace dibkit
