#pragma once

#include <algorithm>
#include <cmath>

namespace host {

/// Times in milliseconds as the hundredths of a second that a GIF counts in. What rounding takes from one
/// frame it gives to the next, so that the animation as a whole has its exact length.
class HundredthsClock {
 public:
  /// Viewers show shorter delays for a tenth of a second.
  static constexpr int minimumMilliseconds = 20;

  /// The delay of the next frame, never below the minimum.
  int delayFor(double milliseconds) {
    constexpr int minimum = minimumMilliseconds / 10;
    constexpr int maximum = 65535;
    const double wanted = milliseconds / 10.0 + owed_;
    const int delay = std::clamp(static_cast<int>(std::lround(std::min(wanted, 65535.0))), minimum, maximum);
    owed_ = std::clamp(wanted - delay, -1.0, 1.0);
    return delay;
  }

 private:
  double owed_ = 0;
};

}  // namespace host
