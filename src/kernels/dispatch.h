#pragma once

#include <cstdint>
#include <span>

namespace dibkit {

// A family of row kernels is a struct of pointers to functions. Each family has a plain twin in C++, which
// runs everywhere and says what the others compute, and the same functions in vector instructions, compiled
// once for each instruction set that the target may have.

/// A family compiled for one instruction set.
template <class Family>
struct Compiled {
  std::int64_t instructions;  ///< the instruction set, one of Highway's bits
  const Family* kernels;
};

/// The plain twins; each family defines its own.
template <class Family>
const Family& plainKernels();

/// The family as it is compiled for every instruction set, the fastest first; each family defines its own.
/// Not defined in a library without vector instructions.
template <class Family>
std::span<const Compiled<Family>> compiledKernels();

/// Whether this processor has an instruction set, one of Highway's bits.
bool processorRuns(std::int64_t instructions);

/// The instruction sets that kernels() chooses from: all, unless a test leaves some out before the first
/// choice. \return a reference to the sum of their bits
std::int64_t& allowedInstructions();

/// The fastest kernels of a family that this processor runs; chosen once.
template <class Family>
const Family& kernels() {
#if defined(DIBKIT_SIMD)
  static const Family& fastest = []() -> const Family& {
    for (const Compiled<Family>& compiled : compiledKernels<Family>()) {
      const bool isAllowed = (allowedInstructions() & compiled.instructions) != 0;
      if (isAllowed && processorRuns(compiled.instructions)) return *compiled.kernels;
    }
    return plainKernels<Family>();
  }();
  return fastest;
#else
  return plainKernels<Family>();
#endif
}

}  // namespace dibkit
