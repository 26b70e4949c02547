#pragma once

#include "dib/flood.h"
#include "dib/region_spans.h"

namespace dibkit {

/// The pixels that a walk reaches, in whatever order it reaches them, as a region.
class ReachedArea {
 public:
  /// Throws std::bad_alloc when memory runs out.
  ReachedArea(int width, int height) : width_(width), top_(height), reached_(width, height) {}

  void add(int y, int left, int right) {
    setBits(reached_.row(y), left, right);
    top_ = std::min(top_, y);
    bottom_ = std::max(bottom_, y + 1);
  }

  /// The region, or null when the platform fails. Throws std::bad_alloc when memory runs out.
  OwnedRegion region() {
    SpanCollector spans;
    for (int y = top_; y < bottom_; ++y) {
      forEachRun(reached_.row(y), width_, [&](int left, int right) { spans.add(y, left, right); });
    }
    return spans.region();
  }

 private:
  int width_;
  int top_;
  int bottom_ = 0;
  BitGrid reached_;
};

}  // namespace dibkit
