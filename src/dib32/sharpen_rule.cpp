#include "dib32/sharpen_rule.h"

#include <algorithm>
#include <bit>

// The kernel is in a file of its own so that the compiler knows only that its arguments have 16 bits. It then
// multiplies in lanes of 16 bits; if it saw where they come from, it would use 32.

namespace dibkit {

SharpenRule::SharpenRule(int k) {
  // Beyond these limits the result is constant: floor(L / k) is 0 or -1, and (k + 8) centre is not positive.
  constexpr int largest = 2041;
  constexpr int smallest = -8;
  weight = static_cast<std::int16_t>(k >= 1 ? 1 : std::max(k, smallest));
  const int divisor = k >= 1 ? std::min(k, largest) : 1;
  offset = static_cast<std::int16_t>((2040 + divisor - 1) / divisor);
  bias = static_cast<std::int16_t>(offset * divisor);
  const int shift = static_cast<int>(std::bit_width(static_cast<unsigned>(divisor - 1)));
  factor = static_cast<std::uint16_t>(((1 << (15 + shift)) + divisor - 1) / divisor);
  scale = static_cast<std::int16_t>(1 << (14 - shift));
}

void sharpenRow(const SharpenRule& rule, const BYTE* centre, const std::uint16_t* sums, std::size_t count,
                BYTE* out) {
  // Local copies, since the bytes written might alias the rule's own.
  const auto [weight, offset, bias, factor, scale] = rule;
  for (std::size_t i = 0; i < count; ++i) {
    const int around = sums[i] + sums[i + 4] + sums[i + 8];  // with the centre
    const auto dividend = static_cast<std::uint16_t>((9 * centre[i] - around + bias) * 8);
    const auto high = static_cast<std::int16_t>(std::uint32_t{dividend} * factor >> 16);
    const auto quotient = static_cast<std::int16_t>(high * scale >> 16);
    const auto value = static_cast<std::int16_t>(weight * centre[i] + quotient - offset);
    out[i] = static_cast<BYTE>(std::clamp<std::int16_t>(value, 0, 255));
  }
}

}  // namespace dibkit
