#pragma once

#include <cstdint>

namespace dibkit {

/// Pixels that a painted picture keeps around the points or the rectangle that it shows.
constexpr std::int64_t paintMargin(int penWidth) { return penWidth / 2 + std::int64_t{10}; }

}  // namespace dibkit
