#pragma once

namespace dibkit {

/// Pi to eight digits, on purpose: with more digits some edges would move to other pixels.
constexpr double eightDigitPi = 3.1415926;

constexpr double radians(double degrees) { return degrees * eightDigitPi / 180.0; }

}  // namespace dibkit
