#pragma once

#include "dib/view.h"

namespace dibkit {

/// Lines at the edges of a frame mask that are wholly transparent.
struct TransparentEdges {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;

  bool any() const { return left != 0 || top != 0 || right != 0 || bottom != 0; }
};

/// Counts them as CaclOpaqueBoundary does: the mask's width and height twice when it is wholly transparent.
/// Throws std::bad_alloc when memory runs out.
TransparentEdges transparentEdges(const ConstView& mask);

}  // namespace dibkit
