#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

#include "platform/win32.h"

namespace dibkit {

/// Whether two bands have the same spans; their rows may differ.
inline bool haveEqualSpans(std::span<const RECT> a, std::span<const RECT> b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const RECT& one, const RECT& other) {
    return one.left == other.left && one.right == other.right;
  });
}

/// Combines spans into the canonical rectangles of an area. A band is a run of rows with the same spans; its
/// rectangles share top and bottom, are in order from the left and do not touch. Bands are in order from the
/// top, and bands that touch differ in their spans. An area has only one such list, so equal areas have equal
/// lists. Throws std::bad_alloc when memory runs out.
class BandBuilder {
 public:
  /// Adds [left, right) on the rows [top, bottom). Bands have to come in order from the top and the spans of
  /// a band from the left, both without overlap. Spans that touch are joined, and bands that touch and have
  /// equal spans; empty ones are dropped.
  void add(int top, int bottom, int left, int right) {
    if (left >= right || top >= bottom) return;
    if (openBand_ < rectangles_.size()) {
      RECT& last = rectangles_.back();
      if (last.top != top) {
        closeBand();
      } else if (last.right == left) {
        last.right = right;
        return;
      }
    }
    rectangles_.push_back({left, top, right, bottom});
  }

  /// Makes room for this many rectangles, so that a list of known length takes no more memory than it needs.
  void reserve(std::size_t count) { rectangles_.reserve(count); }
  bool empty() const { return rectangles_.empty(); }
  /// How many rectangles there are; equal bands that touch may still be separate.
  std::size_t size() const { return rectangles_.size(); }

  /// Gives the list and leaves the builder empty.
  std::vector<RECT> take();

 private:
  void closeBand();

  std::vector<RECT> rectangles_;
  std::size_t bandAbove_ = 0;  ///< first rectangle of the finished band that the open one may extend
  std::size_t openBand_ = 0;   ///< first rectangle of the open band
};

}  // namespace dibkit
