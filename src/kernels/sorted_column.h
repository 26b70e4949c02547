#pragma once

#include <algorithm>

namespace dibkit {

/// Three values of a column in ascending order. The median of 3 x 3 values is found from three of them by
/// minima and maxima alone, without a branch. (J. L. Smith, "Implementing median filters in XC4000E FPGAs",
/// 1996.)
template <class Value>
struct SortedColumn {
  Value low, middle, high;

  constexpr SortedColumn(Value a, Value b, Value c)
      : low(std::min({a, b, c})), middle(medianOfThree(a, b, c)), high(std::max({a, b, c})) {}

  static constexpr Value medianOfThree(Value a, Value b, Value c) {
    return std::max(std::min(a, b), std::min(std::max(a, b), c));
  }
  /// The median of the largest low, the median middle and the smallest high.
  static constexpr Value medianOfNine(const SortedColumn& a, const SortedColumn& b, const SortedColumn& c) {
    return medianOfThree(std::max({a.low, b.low, c.low}), medianOfThree(a.middle, b.middle, c.middle),
                         std::min({a.high, b.high, c.high}));
  }
};

}  // namespace dibkit
