#include <cstddef>

#include "kernels/match.h"

namespace dibkit {
namespace {

template <std::size_t bytes>
void inside(const std::uint8_t* pixels, int count, const MatchKernels::Box& box, std::uint8_t* flags) {
  for (int i = 0; i < count; ++i, pixels += bytes) {
    bool in = true;
    for (std::size_t byte = 0; byte < bytes; ++byte) {
      in &= pixels[byte] >= box.low[byte] && pixels[byte] <= box.high[byte];
    }
    flags[i] = in;
  }
}

void atLeast(const std::uint8_t* bytes, int count, std::uint8_t level, std::uint8_t* bits) {
  for (int i = 0; i < count; i += 8) {
    unsigned eight = 0;
    for (int bit = 0; bit < 8; ++bit) eight = eight << 1 | (bytes[i + bit] >= level);
    bits[i / 8] = static_cast<std::uint8_t>(eight);
  }
}

}  // namespace

template <>
const MatchKernels& plainKernels() {
  static constexpr MatchKernels plain{inside<3>, inside<4>, atLeast};
  return plain;
}

}  // namespace dibkit
