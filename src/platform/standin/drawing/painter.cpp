#include "platform/standin/drawing/painter.h"

#include <algorithm>

#include "platform/standin/geometry.h"

namespace dibkit::standin {

void Painter::paintRow(std::int64_t y, std::int64_t left, std::int64_t right) {
  if (y < bounds_.top || y >= bounds_.bottom) return;
  const int row = static_cast<int>(y);
  const int begin = static_cast<int>(std::max<std::int64_t>(left, bounds_.left));
  const int end = static_cast<int>(std::min<std::int64_t>(right, bounds_.right));
  if (left >= bounds_.right || right <= bounds_.left || begin >= end) return;
  if (painted_.empty()) {
    store({begin, row, end, row + 1});
    return;
  }
  Span& done = painted_[static_cast<std::size_t>(y - bounds_.top)];
  if (begin > done.right || end < done.left || done.left == done.right) {
    store({begin, row, end, row + 1});
    done = {begin, end};
    return;
  }
  if (begin < done.left) {
    store({begin, row, done.left, row + 1});
    done.left = begin;
  }
  if (end > done.right) {
    store({done.right, row, end, row + 1});
    done.right = end;
  }
}

void Painter::paintRectangle(std::int64_t left, std::int64_t top, std::int64_t right, std::int64_t bottom) {
  const RECT rect = clampedRect(left, top, right, bottom);
  RECT inside;
  if (!IntersectRect(&inside, &rect, &bounds_)) return;
  if (painted_.empty()) {
    store(inside);
    return;
  }
  for (int y = inside.top; y < inside.bottom; ++y) paintRow(y, inside.left, inside.right);
}

void Painter::rememberRows() {
  if (!IsRectEmpty(&bounds_)) painted_.resize(static_cast<std::size_t>(bounds_.bottom - bounds_.top));
}

}  // namespace dibkit::standin
