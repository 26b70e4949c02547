#include "host/animation/ordered_dither.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace host {

namespace {

/// The weight of the noise of a pattern of two colours relative to the error of its mean, from 0 to 1/2. The
/// noise of close colours, less than 8 levels apart, is invisible; between colours more than 128 levels
/// apart, as in palettes of few, a wrong mean is worse than any noise. \param length of the way between them,
/// squared
float costOfNoise(float length) {
  constexpr float close = colourDistance(8.0F, 8.0F, 8.0F);
  constexpr float distant = colourDistance(128.0F, 128.0F, 128.0F);
  return 0.5F * length / (length + close) * distant / (length + distant);
}

}  // namespace

OrderedDither::OrderedDither(const PaletteIndex& index) : index_(&index) {
  for (std::size_t i = 0; i < index.colours().size(); ++i) {
    const RGBQUAD& colour = index.colours()[i];
    ways_.push_back(waysFrom(i));
    lightness_.push_back(299 * colour.rgbRed + 587 * colour.rgbGreen + 114 * colour.rgbBlue);
  }
}

std::vector<OrderedDither::Way> OrderedDither::waysFrom(std::size_t start) const {
  constexpr std::size_t maximum = 24;
  const RGBQUAD& from = index_->colours()[start];
  std::vector<std::pair<float, Way>> ways;
  for (std::size_t end = 0; end < index_->colours().size(); ++end) {
    const RGBQUAD& to = index_->colours()[end];
    const auto red = static_cast<float>(to.rgbRed - from.rgbRed);
    const auto green = static_cast<float>(to.rgbGreen - from.rgbGreen);
    const auto blue = static_cast<float>(to.rgbBlue - from.rgbBlue);
    const float length = colourDistance(red, green, blue);
    if (length == 0) continue;
    const float cost = costOfNoise(length);
    ways.push_back({length,
                    {3 * red, 4 * green, 2 * blue, cost * length / 2, 1 / ((1 - cost) * length),
                     static_cast<std::uint8_t>(end)}});
  }
  const auto nearer = [](const auto& a, const auto& b) { return a.first < b.first; };
  std::stable_sort(ways.begin(), ways.end(), nearer);
  std::vector<Way> nearest;
  for (std::size_t i = 0; i < std::min(maximum, ways.size()); ++i) nearest.push_back(ways[i].second);
  return nearest;
}

OrderedDither::Mix OrderedDither::mixFor(const Pixel& pixel) const {
  const std::uint8_t start = index_->indexOf(pixel.red, pixel.green, pixel.blue);
  const RGBQUAD& colour = index_->colours()[start];
  const auto red = static_cast<float>(pixel.red - colour.rgbRed);
  const auto green = static_cast<float>(pixel.green - colour.rgbGreen);
  const auto blue = static_cast<float>(pixel.blue - colour.rgbBlue);
  // With s the share of the colour at the end, D the way and v the pixel's colour as seen from the start, a
  // pattern costs |v - sD|^2 + c s(1 - s)|D|^2: the error of its mean, and its noise. That is least for
  // s = (vD - c|D|^2/2) / ((1 - c)|D|^2), and less than |v|^2 by (1 - c)|D|^2 s^2.
  std::uint8_t end = start;
  float share = 0;
  float maximumGain = 0;
  for (const Way& way : ways_[start]) {
    const float beyond = red * way.red + green * way.green + blue * way.blue - way.threshold;
    const float gained = beyond * beyond * way.scale;
    if (beyond <= 0 || gained <= maximumGain) continue;
    maximumGain = gained;
    share = beyond * way.scale;
    end = way.end;
  }
  const bool endIsLight = lightness_[end] > lightness_[start];
  const int ranks = static_cast<int>(std::lround(std::min(share, 1.0F) * blueNoiseRanks));
  if (endIsLight) return {start, end, static_cast<std::uint16_t>(ranks)};
  return {end, start, static_cast<std::uint16_t>(blueNoiseRanks - ranks)};
}

std::uint8_t OrderedDither::indexOf(const Pixel& pixel, int x, int y) const {
  // Two threads may find the same mix at once.
  std::atomic<Mix>& known = mixes_.at(pixel.red, pixel.green, pixel.blue);
  Mix mix = known.load(std::memory_order_relaxed);
  if (mix.lightBelow == Mix::unknown) {
    mix = mixFor(pixel);
    known.store(mix, std::memory_order_relaxed);
  }
  return noise_.rankAt(x, y) < mix.lightBelow ? mix.light : mix.dark;
}

}  // namespace host
