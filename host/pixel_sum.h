#pragma once

#include <algorithm>

#include "host/picture.h"

namespace host {

/// A weighted sum of pixels: colours count by their alpha, so that what is transparent lends none. The shares
/// of the pixels are to be 1 together, or the sum is divided by their total.
struct PixelSum {
  float blue = 0;
  float green = 0;
  float red = 0;
  float alpha = 0;

  void add(const Pixel& pixel, float share) {
    const float weight = share * static_cast<float>(pixel.alpha) / 255.0F;
    blue += weight * static_cast<float>(pixel.blue);
    green += weight * static_cast<float>(pixel.green);
    red += weight * static_cast<float>(pixel.red);
    alpha += weight;
  }
  void add(const PixelSum& other, float share) {
    blue += share * other.blue;
    green += share * other.green;
    red += share * other.red;
    alpha += share * other.alpha;
  }
  /// \param total of all shares
  Pixel pixel(float total = 1) const {
    if (alpha <= 0.0F) return {};
    const auto byte = [](float value) { return static_cast<BYTE>(std::clamp(value + 0.5F, 0.0F, 255.0F)); };
    return {byte(blue / alpha), byte(green / alpha), byte(red / alpha), byte(alpha / total * 255.0F)};
  }
};

}  // namespace host
