#pragma once

#include <bit>
#include <cstddef>
#include <vector>

namespace dibkit {

/// The numbers 0, 1, 2 and so on in ascending order, from which the one at any index is removed as from a
/// list. A binary indexed tree (P. Fenwick, "A New Data Structure for Cumulative Frequency Tables", 1994)
/// finds it in logarithmic time.
class OrderedPool {
 public:
  explicit OrderedPool(int count) : left_(count), counts_(static_cast<std::size_t>(count) + 1) {
    for (std::size_t i = 1; i < counts_.size(); ++i) counts_[i] = static_cast<int>(i & (~i + 1));
  }

  int left() const { return left_; }

  /// Removes the number at `index`, 0 <= index < left(). \return the number
  int take(int index) {
    std::size_t before = 0;
    for (std::size_t step = std::bit_floor(counts_.size()); step != 0; step /= 2) {
      const std::size_t next = before + step;
      if (next >= counts_.size()) continue;
      // A node with more than `index` numbers contains the one to remove.
      if (counts_[next] <= index) {
        index -= counts_[next];
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
