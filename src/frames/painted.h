#pragma once

#include <cstdint>

namespace dibkit {

/// Margin in pixels of a painted picture around its points or its rectangle.
constexpr std::int64_t paintMargin(int penWidth) { return penWidth / 2 + std::int64_t{10}; }

}  // namespace dibkit
