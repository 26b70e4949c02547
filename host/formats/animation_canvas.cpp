#include "host/formats/animation_canvas.h"

#include <algorithm>

namespace host {

RECT AnimationCanvas::prepare(const RECT& part, Disposal disposal) {
  const RECT changed = disposal_ == Disposal::keep ? RECT{} : part_;
  restore();
  part_ = part;
  disposal_ = disposal;
  if (disposal == Disposal::previous) save(part);
  return changed;
}

void AnimationCanvas::restore() {
  if (disposal_ == Disposal::keep) return;
  const int width = part_.right - part_.left;
  const Pixel* saved = saved_.data();
  for (int y = part_.top; y < part_.bottom; ++y) {
    Pixel* row = picture_.row(y) + part_.left;
    if (disposal_ == Disposal::background) {
      std::fill_n(row, width, Pixel{});
    } else {
      std::copy_n(saved, width, row);
      saved += width;
    }
  }
}

void AnimationCanvas::save(const RECT& part) {
  saved_.clear();
  saved_.reserve(static_cast<std::size_t>(areaOf(part)));
  for (int y = part.top; y < part.bottom; ++y) {
    const Pixel* row = picture_.row(y);
    saved_.insert(saved_.end(), row + part.left, row + part.right);
  }
}

void AnimationCanvas::composite(const Picture& picture, Compositing compositing) {
  const POINT place{part_.left, part_.top};
  const POINT corner{0, 0};
  if (compositing == Compositing::replace) {
    CDIB32::TransformBlock(picture_.dib(), corner, picture.dib(), place);
  } else {
    CDIB32::CombineBlock(picture_.dib(), corner, picture.dib(), place, 0);
  }
}

std::int64_t areaOf(const RECT& rect) {
  return std::int64_t{rect.right - rect.left} * std::int64_t{rect.bottom - rect.top};
}

RECT clippedTo(Size canvas, int left, int top, Size size) {
  return {std::min(left, canvas.width), std::min(top, canvas.height),
          std::min(left + size.width, canvas.width), std::min(top + size.height, canvas.height)};
}

}  // namespace host
