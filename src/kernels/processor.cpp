#include <hwy/detect_targets.h>

#include "kernels/dispatch.h"

namespace dibkit {

bool processorRuns(std::int64_t instructions) {
  if ((instructions & HWY_STATIC_TARGET) != 0) return true;  // the compiler uses it everywhere
#if HWY_ARCH_X86
  const auto has = [instructions](std::int64_t set) { return (instructions & set) != 0; };
  if (has(HWY_SSE4)) return __builtin_cpu_supports("sse4.2");
  const bool avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") &&
                    __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2");
  if (has(HWY_AVX2)) return avx2;
  if (has(HWY_AVX3)) {
    return avx2 && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512cd") &&
           __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512dq") &&
           __builtin_cpu_supports("avx512bw");
  }
#endif
  return false;
}

std::int64_t& allowedInstructions() {
  static std::int64_t allowed = -1;
  return allowed;
}

}  // namespace dibkit
