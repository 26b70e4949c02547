#pragma once

#include <cmath>

namespace host {

/// Times of frames in hundredths of a second. What is cut off one is not lost to the next: the animation
/// lasts as long as the file says.
class Timeline {
 public:
  int add(double seconds) {
    // A hair more than was cut off by the arithmetic, so that 0.29 s are 29 hundredths.
    constexpr double hair = 1e-6;
    const double before = std::floor(end_ * 100 + hair);
    end_ += seconds;
    return static_cast<int>(std::floor(end_ * 100 + hair) - before);
  }

 private:
  double end_ = 0;
};

}  // namespace host
