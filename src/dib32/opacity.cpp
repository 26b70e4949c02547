#include "dib32/opacity.h"

namespace dibkit {

void overRow(Bgra* result, const Bgra* below, BYTE belowReduction, const Bgra* above, BYTE aboveReduction,
             int count) {
  for (int i = 0; i < count; ++i) {
    const Bgra lower{below[i].blue, below[i].green, below[i].red, reduced(below[i].alpha, belowReduction)};
    const Bgra upper{above[i].blue, above[i].green, above[i].red, reduced(above[i].alpha, aboveReduction)};
    result[i] = over(lower, upper);
  }
}

}  // namespace dibkit
