#include "platform/bands.h"

#include <algorithm>
#include <utility>

namespace dibkit {

std::vector<RECT> BandBuilder::take() {
  closeBand();
  bandAbove_ = openBand_ = 0;
  return std::exchange(rectangles_, {});
}

void BandBuilder::closeBand() {
  const auto above = rectangles_.begin() + static_cast<std::ptrdiff_t>(bandAbove_);
  const auto open = rectangles_.begin() + static_cast<std::ptrdiff_t>(openBand_);
  const bool extends = above != open && open != rectangles_.end() && above->bottom == open->top &&
                       std::equal(above, open, open, rectangles_.end(), [](const RECT& a, const RECT& b) {
                         return a.left == b.left && a.right == b.right;
                       });
  if (extends) {
    const LONG bottom = open->bottom;
    std::for_each(above, open, [bottom](RECT& rect) { rect.bottom = bottom; });
    rectangles_.erase(open, rectangles_.end());
  } else {
    bandAbove_ = openBand_;
  }
  openBand_ = rectangles_.size();
}

}  // namespace dibkit
