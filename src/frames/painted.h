#pragma once

#include <cstdint>

#include "platform/win32.h"

namespace dibkit {

constexpr COLORREF black = RGB(0, 0, 0);
constexpr COLORREF white = RGB(255, 255, 255);

/// Margin in pixels of a painted picture around its points or its rectangle.
constexpr std::int64_t paintMargin(int penWidth) { return penWidth / 2 + std::int64_t{10}; }

}  // namespace dibkit
