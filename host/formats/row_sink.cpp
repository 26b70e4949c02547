#include "host/formats/row_sink.h"

#include <algorithm>
#include <utility>

#include "host/formats/limits.h"

namespace host {

RowSink::RowSink(Size stored, int factor, Order order)
    : factor_(factor), order_(order), picture_(reduced(stored, factor)) {
  if (factor_ == 1) return;
  const int lines = order_ == Order::any ? picture_.height() : 1;
  boxes_.resize(static_cast<std::size_t>(picture_.width()) * static_cast<std::size_t>(lines));
}

void RowSink::put(int y, std::span<const Pixel> pixels, int first, int step) {
  const int line = y / factor_;
  if (factor_ == 1) {
    Pixel* row = picture_.row(y);
    for (int x = first; const Pixel& pixel : pixels) {
      row[x] = pixel;
      x += step;
    }
    return;
  }
  if (order_ == Order::byLine && line != line_) {
    if (line_ >= 0) finishLine(line_);
    line_ = line;
  }
  Box* boxes = boxes_.data() + (order_ == Order::any ? std::ptrdiff_t{line} * picture_.width() : 0);
  for (int x = first; const Pixel& pixel : pixels) {
    Box& box = boxes[x / factor_];
    box.sum.add(pixel, 1);
    ++box.pixels;
    x += step;
  }
}

/// Turns the boxes of a line into its pixels, and empties them.
void RowSink::finishLine(int y) {
  const auto width = static_cast<std::size_t>(picture_.width());
  const auto boxes =
      std::span(boxes_).subspan(order_ == Order::any ? static_cast<std::size_t>(y) * width : 0, width);
  Pixel* to = picture_.row(y);
  for (Box& box : boxes) {
    *to++ = box.sum.pixel(box.pixels);
    box = {};
  }
}

Picture RowSink::take() && {
  if (factor_ > 1 && order_ == Order::any) {
    for (int y = 0; y < picture_.height(); ++y) finishLine(y);
  } else if (line_ >= 0) {
    finishLine(line_);
  }
  return std::move(picture_);
}

}  // namespace host
