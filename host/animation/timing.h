#pragma once

#include <algorithm>
#include <cmath>

namespace host {

/// Times in milliseconds as the hundredths of a second that a GIF counts in. What rounding takes from one
/// frame it gives to the next, so that an animation lasts as long as it was asked to.
class HundredthsClock {
 public:
  /// Viewers show shorter delays for a tenth of a second.
  static constexpr int leastMilliseconds = 20;

  /// The delay of the next frame, never below the least one.
  int delayFor(double milliseconds) {
    constexpr int least = leastMilliseconds / 10;
    constexpr int most = 65535;
    const double wanted = milliseconds / 10.0 + owed_;
    const int delay = std::clamp(static_cast<int>(std::lround(std::min(wanted, 65535.0))), least, most);
    owed_ = std::clamp(wanted - delay, -1.0, 1.0);
    return delay;
  }

 private:
  double owed_ = 0;
};

}  // namespace host
