#pragma once

#include <bit>
#include <cstddef>
#include <vector>

namespace dibkit {

/// The numbers from 0 on, of which any may be taken by its place among those still there, as from a list that
/// closes up after each one. Counts of a binary indexed tree (P. Fenwick, "A New Data Structure for
/// Cumulative Frequency Tables", 1994) find a place in logarithmic time where a list would shift its rest.
class OrderedPool {
 public:
  explicit OrderedPool(int count) : left_(count), counts_(static_cast<std::size_t>(count) + 1) {
    for (std::size_t i = 1; i < counts_.size(); ++i) counts_[i] = static_cast<int>(i & (~i + 1));
  }

  int left() const { return left_; }

  /// Takes the number at `place`, 0 <= place < left().
  int take(int place) {
    std::size_t before = 0;
    for (std::size_t step = std::bit_floor(counts_.size()); step != 0; step /= 2) {
      const std::size_t next = before + step;
      if (next >= counts_.size()) continue;
      // A node that still holds more than `place` numbers holds the one that is looked for.
      if (counts_[next] <= place) {
        place -= counts_[next];
        before = next;
      } else {
        --counts_[next];
      }
    }
    --left_;
    return static_cast<int>(before);
  }

 private:
  int left_;
  std::vector<int> counts_;
};

}  // namespace dibkit
