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

std::uint8_t ErrorDiffusion::diffuse(const Pixel& pixel, std::size_t place, int direction,
                                     Lines& lines) const {
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

Bytes ErrorDiffusion::indicesOf(const Picture& picture, const RECT& part, MappedPicture* before) const {
  const Size size = picture.size();
  const int width = part.right - part.left;
  const bool follows = before != nullptr && before->picture && before->picture->size() == size;
  if (before != nullptr && !follows)
    *before = {picture.clone(), Bytes(static_cast<std::size_t>(size.pixels()))};
  Bytes indices(static_cast<std::size_t>(areaOf(part)));
  std::uint8_t* to = indices.data();
  const std::vector<Error> none(static_cast<std::size_t>(width) + 2);
  Lines lines{none, none};
  for (int y = part.top; y < part.bottom; ++y, to += width) {
    const Pixel* pixels = picture.row(y) + part.left;
    Pixel* known = follows ? before->picture->row(y) + part.left : nullptr;
    std::uint8_t* index = to;
    if (before != nullptr) index = before->indices.data() + std::ptrdiff_t{y} * size.width + part.left;
    const bool forwards = y % 2 == 0;
    for (int i = 0; i < width; ++i) {
      const int x = forwards ? i : width - 1 - i;
      if (follows && pixels[x] == known[x]) continue;
      if (follows) known[x] = pixels[x];
      index[x] = pixels[x].alpha < opaqueFrom
                     ? index_->transparent()
                     : diffuse(pixels[x], static_cast<std::size_t>(x) + 1, forwards ? 1 : -1, lines);
    }
    if (before != nullptr) std::copy_n(index, width, to);
    lines.here = std::exchange(lines.below, none);
  }
  return indices;
}

}  // namespace host
