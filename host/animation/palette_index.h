#pragma once

#include <cstdint>
#include <vector>

#include "host/picture.h"

namespace host {

/// A cache of what was found for a colour: a hash table in which a new colour replaces the old one of its
/// slot.
template <class Found>
class ColourMemory {
 public:
  ColourMemory() : places_(std::size_t{1} << 16) {}

  /// What `find()` gives for the colour, or gave for it before.
  template <class Find>
  const Found& at(int red, int green, int blue, Find find) {
    const std::uint32_t key = static_cast<std::uint32_t>(red << 16 | green << 8 | blue) + 1;
    Place& place = places_[key * 2654435761U >> 16];
    if (place.key != key) place = {key, find()};
    return place.found;
  }

 private:
  struct Place {
    std::uint32_t key = 0;  ///< 0 is free
    Found found{};
  };
  std::vector<Place> places_;
};

/// The squares of two colours' differences, weighted by what the eye sees of each channel.
template <class Number>
constexpr Number colourDistance(Number red, Number green, Number blue) {
  return 3 * red * red + 4 * green * green + 2 * blue * blue;
}

/// Finds the nearest colours of a palette. Colours that are in it map to themselves. Remembers what it has
/// found, so use one object for many pixels, on one thread.
class PaletteIndex {
 public:
  /// \param colours at most 256; 255 if there are transparent pixels, whose index is the one after them
  explicit PaletteIndex(std::vector<RGBQUAD> colours);

  const std::vector<RGBQUAD>& colours() const { return colours_; }
  /// For a pixel of less than half opacity.
  std::uint8_t transparent() const { return static_cast<std::uint8_t>(colours_.size()); }

  std::uint8_t indexOf(int red, int green, int blue) {
    return memory_.at(red, green, blue, [&] { return nearest(red, green, blue); });
  }
  /// Whether the entry has exactly the pixel's colour.
  bool isExact(std::uint8_t index, const Pixel& pixel) const {
    const RGBQUAD& colour = colours_[index];
    return colour.rgbRed == pixel.red && colour.rgbGreen == pixel.green && colour.rgbBlue == pixel.blue;
  }

 private:
  struct Entry {
    int blue, green, red, index;
  };

  std::uint8_t nearest(int red, int green, int blue) const;

  std::vector<RGBQUAD> colours_;
  std::vector<Entry> byGreen_;
  ColourMemory<std::uint8_t> memory_;
};

}  // namespace host
