#pragma once

#include <algorithm>
#include <cstdint>

#include "platform/win32.h"

namespace dibkit {

/// The byte values of [low, high]; none when low is above high.
struct ByteRange {
  std::int64_t low = 0;
  std::int64_t high = 255;

  /// The values at most `tolerance` away from `value`. A negative tolerance gives an empty range.
  static constexpr ByteRange around(BYTE value, int tolerance) {
    return {std::max<std::int64_t>(std::int64_t{value} - tolerance, 0),
            std::min<std::int64_t>(std::int64_t{value} + tolerance, 255)};
  }
  constexpr bool empty() const { return low > high; }
};

}  // namespace dibkit
