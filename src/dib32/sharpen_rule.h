#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/win32.h"

namespace dibkit {

/// The arithmetic of sharpening. With L = 8 centre - neighbours, the kernel's sum is k centre + L, and
/// divided by k it is centre + L / k; for k below 1 nothing is divided. That k + 8 stays in the middle there
/// is deliberate: it makes the filter find edges. Both are
///
///     weight centre + floor(L / divisor), limited to a byte.
///
/// The quotient is to be truncated towards zero, but where that differs from the floor it is negative and
/// ends as 0 either way. L is in [-2040, 2040], so everything fits 16 bits, and a multiplication does the
/// division.
struct SharpenRule {
  explicit SharpenRule(int k);

  std::int16_t weight;
  std::int16_t offset;  ///< lifts the quotient, so that nothing negative is divided
  std::int16_t bias;    ///< lifts the dividend: offset x divisor
  /// x / divisor, for dividends x up to 6120, is (8 x factor / 65536) scale / 65536: two steps, so that the
  /// results stay below 2^15.
  std::uint16_t factor;
  std::int16_t scale;
};

/// out[i] = the rule for centre[i] with the column sums sums[i], sums[i + 4] and sums[i + 8], which are those
/// of its pixel's left neighbour, its own, and those of the right neighbour.
void sharpenRow(const SharpenRule& rule, const BYTE* centre, const std::uint16_t* sums, std::size_t count,
                BYTE* out);

}  // namespace dibkit
