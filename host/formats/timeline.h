#pragma once

#include <cmath>

namespace host {

/// Times of frames in hundredths of a second. What rounding takes from one frame the next one gets: the
/// animation lasts as long as the file says.
class Timeline {
 public:
  int add(double seconds) {
    // Makes up for inexact sums, so that 0.29 s are 29 hundredths.
    constexpr double hair = 1e-6;
    const double before = std::floor(end_ * 100 + hair);
    end_ += seconds;
    return static_cast<int>(std::floor(end_ * 100 + hair) - before);
  }

 private:
  double end_ = 0;
};

}  // namespace host
