#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "host/animation/colour_cube.h"
#include "host/picture.h"

namespace host {

/// The squares of two colours' differences, weighted by what the eye sees of each channel.
template <class Number>
constexpr Number colourDistance(Number red, Number green, Number blue) {
  return 3 * red * red + 4 * green * green + 2 * blue * blue;
}

/// Finds the nearest colours of a palette; of equally near ones the first. Colours that are in the palette
/// map to themselves. Keeps a table of what it has found. Several threads may use one object at once.
class PaletteIndex {
 public:
  /// \param colours at most 256; 255 if there are transparent pixels, whose index is the one after them
  explicit PaletteIndex(std::vector<RGBQUAD> colours) : colours_(std::move(colours)) {}

  const std::vector<RGBQUAD>& colours() const { return colours_; }
  /// For a pixel of less than half opacity.
  std::uint8_t transparent() const { return static_cast<std::uint8_t>(colours_.size()); }

  std::uint8_t indexOf(int red, int green, int blue) const {
    return nearest_.at(red, green, blue, [&](Block& block) { findNearest(red, green, blue, block); });
  }
  /// Whether the entry has exactly the pixel's colour.
  bool isExact(std::uint8_t index, const Pixel& pixel) const {
    const RGBQUAD& colour = colours_[index];
    return colour.rgbRed == pixel.red && colour.rgbGreen == pixel.green && colour.rgbBlue == pixel.blue;
  }

 private:
  using Block = ColourCube<std::uint8_t>::Block;

  void findNearest(int red, int green, int blue, Block& block) const;

  std::vector<RGBQUAD> colours_;
  mutable ColourCube<std::uint8_t> nearest_;
};

}  // namespace host
