#include "convert/row_kernels.h"

#include "convert/row_kernels_body.h"

namespace dibkit {

extern const RowKernels plainRowKernels = kernelsOfThisSource;

const RowKernels& rowKernels() {
#if defined(DIBKIT_AVX2)
  static const bool avx2 = __builtin_cpu_supports("avx2");
  if (avx2) return avx2RowKernels;
#endif
  return plainRowKernels;
}

}  // namespace dibkit
