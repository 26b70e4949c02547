#pragma once

#include <atomic>
#include <cstdint>
#include <limits>
#include <vector>

#include "host/animation/blue_noise.h"
#include "host/animation/colour_cube.h"
#include "host/animation/palette_index.h"

namespace host {

/// Shows a colour that the palette lacks as a pattern of two that it has, one on each side, in the share that
/// their distances give. How strong the pattern is thus follows from how close the palette's colours are. The
/// pattern stays where it is from frame to frame. Several threads may use one object at once.
class OrderedDither {
 public:
  /// \param index must outlive this object
  explicit OrderedDither(const PaletteIndex& index);

  std::uint8_t indexOf(const Pixel& pixel, int x, int y) const;

 private:
  /// The way from one colour of the palette to another, in weighted channels.
  struct Way {
    float red, green, blue;
    float threshold;  ///< up to here along the way, the colour at its start alone is better
    float scale;      ///< from weighted products to shares of the colour at the end
    std::uint8_t end;
  };
  /// Two colours of the palette; the light one where the pattern's rank is low enough.
  struct Mix {
    std::uint8_t dark = 0;
    std::uint8_t light = 0;
    std::uint16_t lightBelow = unknown;

    static constexpr std::uint16_t unknown = std::numeric_limits<std::uint16_t>::max();
  };

  std::vector<Way> waysFrom(std::size_t start) const;
  Mix mixFor(const Pixel& pixel) const;

  const PaletteIndex* index_;
  BlueNoise noise_;
  std::vector<std::vector<Way>> ways_;  ///< from each colour to those around it
  std::vector<int> lightness_;
  mutable ColourCube<std::atomic<Mix>> mixes_;  ///< found so far
};

}  // namespace host
