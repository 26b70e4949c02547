#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

#include "platform/win32.h"

namespace dibkit::standin {

/// Coordinates are added in 64 bits and clamped to 32; nothing beyond those is ever visible.
constexpr int clampedToInt(std::int64_t value) {
  return static_cast<int>(
      std::clamp<std::int64_t>(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

constexpr RECT clampedRect(std::int64_t left, std::int64_t top, std::int64_t right, std::int64_t bottom) {
  return {clampedToInt(left), clampedToInt(top), clampedToInt(right), clampedToInt(bottom)};
}

}  // namespace dibkit::standin
