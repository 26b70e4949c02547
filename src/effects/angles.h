#pragma once

namespace dibkit {

/// Angles have always been converted with this constant, eight digits of pi and not one more; edges land on
/// the same pixels only with the same one.
constexpr double eightDigitPi = 3.1415926;

constexpr double radians(double degrees) { return degrees * eightDigitPi / 180.0; }

}  // namespace dibkit
