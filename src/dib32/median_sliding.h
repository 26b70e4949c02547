#pragma once

#include <algorithm>

#include "dib/view.h"

namespace dibkit {

/// How far a window extends from its pixel. With an even n it extends one pixel more to the left and the top.
struct Reach {
  int before, after;
  /// Limited by the size of the image, outside which there are no pixels.
  Reach(int n, int size) : before(std::min(n / 2, size - 1)), after(std::min(n - n / 2 - 1, size - 1)) {}

  int total() const { return before + after + 1; }
};

/// Up to this side of the neighbourhood filterSliding() is the faster filter.
constexpr int largestSliding = 12;

/// The luminance median from a histogram that slides along the row: a step removes one column and adds one,
/// so that the cost of a pixel grows with n. Throws std::bad_alloc before it changes anything.
void filterSliding(const View& image, int n);

}  // namespace dibkit
