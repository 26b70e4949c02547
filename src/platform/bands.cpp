#include "platform/bands.h"

#include <utility>

namespace dibkit {

std::vector<RECT> BandBuilder::take() {
  closeBand();
  bandAbove_ = openBand_ = 0;
  return std::exchange(rectangles_, {});
}

void BandBuilder::closeBand() {
  const std::span<RECT> all(rectangles_);
  const std::span<RECT> above = all.subspan(bandAbove_, openBand_ - bandAbove_);
  const std::span<RECT> open = all.subspan(openBand_);
  if (!above.empty() && !open.empty() && above[0].bottom == open[0].top && haveEqualSpans(above, open)) {
    for (RECT& rect : above) rect.bottom = open[0].bottom;
    rectangles_.resize(openBand_);
  } else {
    bandAbove_ = openBand_;
  }
  openBand_ = rectangles_.size();
}

}  // namespace dibkit
