#pragma once

#include <algorithm>

namespace dibkit {

/// \file
/// The median of 3 x 3 values from sorted columns, each of which serves three neighbourhoods. (J. L. Smith,
/// "Implementing median filters in XC4000E FPGAs", 1996.) All steps are minima and maxima, so loops over rows
/// vectorise.

/// Values of one column in ascending order.
template <class Value>
struct SortedColumn {
  Value low, middle, high;
};

template <class Value>
constexpr Value medianOfThree(Value a, Value b, Value c) {
  return std::max(std::min(a, b), std::min(std::max(a, b), c));
}

template <class Value>
constexpr SortedColumn<Value> sortColumn(Value a, Value b, Value c) {
  return {std::min(std::min(a, b), c), medianOfThree(a, b, c), std::max(std::max(a, b), c)};
}

/// The median of the largest low, the median middle and the smallest high.
template <class Value>
constexpr Value medianOfNine(const SortedColumn<Value>& a, const SortedColumn<Value>& b,
                             const SortedColumn<Value>& c) {
  return medianOfThree(std::max(std::max(a.low, b.low), c.low), medianOfThree(a.middle, b.middle, c.middle),
                       std::min(std::min(a.high, b.high), c.high));
}

}  // namespace dibkit
