#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "kernels/dispatch.h"
#include "support/images.h"

namespace test {

/// Calls check(kernels) for a family as it is compiled for each instruction set that this processor has.
/// Without vector instructions the plain twins are all there is.
template <class Family, class Check>
void forEachCompiled(Check&& check) {
#if defined(DIBKIT_SIMD)
  for (const dibkit::Compiled<Family>& compiled : dibkit::compiledKernels<Family>()) {
    if (!dibkit::processorRuns(compiled.instructions)) continue;
    SCOPED_TRACE("instruction set " + std::to_string(compiled.instructions));
    check(*compiled.kernels);
  }
#endif
  check(dibkit::kernels<Family>());
}

}  // namespace test
