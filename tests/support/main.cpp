// DIBKIT_TEST_INSTRUCTIONS, a sum of Highway's bits, has the tests run on these instruction sets alone; 0 is
// the plain twins. A set that the processor does not have is left out as always.

#include <cstdlib>

#include <gtest/gtest.h>

#include "kernels/dispatch.h"

int main(int count, char** arguments) {
  testing::InitGoogleTest(&count, arguments);
#if defined(DIBKIT_SIMD)
  if (const char* instructions = std::getenv("DIBKIT_TEST_INSTRUCTIONS")) {
    dibkit::allowedInstructions() = std::strtoll(instructions, nullptr, 0);
  }
#endif
  return RUN_ALL_TESTS();
}
