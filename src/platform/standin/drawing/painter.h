#pragma once

#include <cstdint>
#include <vector>

#include "platform/win32.h"

namespace dibkit::standin {

/// Paints rows and rectangles, as far as they are inside its bounds.
class Painter {
 public:
  virtual ~Painter() = default;
  Painter(const Painter&) = delete;
  Painter& operator=(const Painter&) = delete;

  const RECT& bounds() const { return bounds_; }

  /// Paints [left, right) on row y.
  void paintRow(std::int64_t y, std::int64_t left, std::int64_t right);
  void paintRectangle(std::int64_t left, std::int64_t top, std::int64_t right, std::int64_t bottom);

  /// From now on remembers for each row one span that has been painted, and paints no pixel of it again: for
  /// strokes that overlap most of what was painted just before.
  void rememberRows();

 protected:
  explicit Painter(const RECT& bounds) : bounds_(bounds) {}

 private:
  struct Span {
    int left = 0;
    int right = 0;
  };
  /// Stores a part that is inside the bounds and not empty.
  virtual void store(const RECT& rect) = 0;

  RECT bounds_;
  std::vector<Span> painted_;  ///< of each row in the bounds; none unless rows are remembered
};

}  // namespace dibkit::standin
