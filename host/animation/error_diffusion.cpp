#include "host/animation/error_diffusion.h"

#include <algorithm>
#include <utility>

#include "host/animation/palette.h"
#include "host/formats/animation_canvas.h"

namespace host {

namespace {

/// Floyd and Steinberg's weights are 7, 3, 5 and 1 of 16. Of 20, they let a fifth of the error go: enough to
/// keep it from adding up to specks.
constexpr int whole = 20;

int corrected(int value, int error) {
  const int half = error < 0 ? -whole / 2 : whole / 2;
  return std::clamp(value + (error + half) / whole, 0, 255);
}

}  // namespace

std::uint8_t ErrorDiffusion::diffuse(const Pixel& pixel, std::size_t place, int direction, Lines& lines) {
  const std::uint8_t exact = index_->indexOf(pixel.red, pixel.green, pixel.blue);
  // A colour that the palette has stays, and the error ends there: flat areas are free of specks.
  if (index_->isExact(exact, pixel)) return exact;
  const Error& error = lines.here[place];
  const int red = corrected(pixel.red, error.red);
  const int green = corrected(pixel.green, error.green);
  const int blue = corrected(pixel.blue, error.blue);
  const std::uint8_t index = index_->indexOf(red, green, blue);
  const RGBQUAD& colour = index_->colours()[index];
  const auto pass = [&](Error& to, int weight) {
    to.red += weight * (red - colour.rgbRed);
    to.green += weight * (green - colour.rgbGreen);
    to.blue += weight * (blue - colour.rgbBlue);
  };
  const std::size_t next = place + static_cast<std::size_t>(direction);
  const std::size_t previous = place - static_cast<std::size_t>(direction);
  pass(lines.here[next], 7);
  pass(lines.below[previous], 3);
  pass(lines.below[place], 5);
  pass(lines.below[next], 1);
  return index;
}

Bytes ErrorDiffusion::indicesOf(const Picture& picture, const RECT& part) {
  const Size size = picture.size();
  const bool follows = before_ && before_->size() == size;
  if (!follows) {
    before_ = picture.clone();
    indicesBefore_.assign(static_cast<std::size_t>(size.pixels()), 0);
  }
  Bytes indices;
  indices.reserve(static_cast<std::size_t>(areaOf(part)));
  const std::vector<Error> none(static_cast<std::size_t>(size.width) + 2);
  Lines lines{none, none};
  for (int y = part.top; y < part.bottom; ++y) {
    const Pixel* row = picture.row(y);
    Pixel* rowBefore = before_->row(y);
    std::uint8_t* index = indicesBefore_.data() + std::ptrdiff_t{y} * size.width;
    const int direction = y % 2 == 0 ? 1 : -1;
    const int last = part.right - 1;
    for (int i = part.left; i <= last; ++i) {
      const int x = direction > 0 ? i : last - (i - part.left);
      if (follows && row[x] == rowBefore[x]) continue;
      rowBefore[x] = row[x];
      index[x] = row[x].alpha < opaqueFrom
                     ? index_->transparent()
                     : diffuse(row[x], static_cast<std::size_t>(x) + 1, direction, lines);
    }
    indices.insert(indices.end(), index + part.left, index + part.right);
    lines.here = std::exchange(lines.below, none);
  }
  return indices;
}

}  // namespace host
