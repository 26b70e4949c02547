#include <algorithm>
#include <cstddef>
#include <numeric>

#include "kernels/brush.h"

namespace dibkit {
namespace {

void moveCounts(const std::uint8_t* entering, const std::uint8_t* leaving, int count, std::uint16_t* counts) {
  for (int i = 0; i < count; ++i) {
    counts[i] = static_cast<std::uint16_t>(counts[i] + (entering[i] != 0) - (leaving[i] != 0));
  }
}

void strengths(const std::uint16_t* counts, int n, int amount, int count, std::uint8_t* values) {
  int sum = std::accumulate(counts, counts + n, 0);
  for (int i = 0; i < count; ++i) {
    values[i] = static_cast<std::uint8_t>(amount * sum / (n * n));
    sum += counts[i + n] - counts[i];
  }
}

void lowerAlphas(const std::uint8_t* amounts, int count, std::uint8_t* pixels) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    std::uint8_t& alpha = pixels[4 * i + 3];
    alpha = static_cast<std::uint8_t>(std::max(alpha - amounts[i], 0));
  }
}

void raiseAlphas(const std::uint8_t* amounts, int count, std::uint8_t* pixels) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    std::uint8_t& alpha = pixels[4 * i + 3];
    alpha = static_cast<std::uint8_t>(std::min(alpha + amounts[i], 255));
  }
}

}  // namespace

template <>
const BrushKernels& plainKernels() {
  static constexpr BrushKernels plain{moveCounts, strengths, lowerAlphas, raiseAlphas};
  return plain;
}

}  // namespace dibkit
