#pragma once

#include <span>
#include <vector>

#include "formats/formats.h"

namespace host {

enum class Dither {
  none,
  ordered,  ///< a fixed pattern that stays where it is from frame to frame
};

/// Half of a pixel's opacity decides what a GIF can show of it: all or nothing.
constexpr BYTE opaqueFrom = 128;

/// The colours of one animation: at most 256 together with the index that means transparent, if there is one.
struct Palette {
  std::vector<RGBQUAD> colours;  ///< without the transparent one
  bool exact = false;            ///< every colour of the frames is in it

  static constexpr int most = 256;
  /// The index for transparent pixels, behind the colours; below 0 when the colours leave no room for it.
  int transparentIndex() const {
    return static_cast<int>(colours.size()) < most ? static_cast<int>(colours.size()) : -1;
  }
};

/// One palette for all frames: their colours in order of first appearance if they fit, and otherwise the best
/// ones that the quantising library finds, each frame weighing as much as the time that it shows.
Palette paletteFor(std::span<const Frame> frames);

/// The best palette for all frames that the quantising library finds, of any sizes.
std::vector<RGBQUAD> bestPalette(std::span<const Frame> frames, int mostColours);

/// The colours of a picture in order of first appearance, up to 257 of them; transparent pixels have none.
std::vector<RGBQUAD> coloursOf(const Picture& picture);

/// Finds palette indices for pixels. Colours that are in the palette map to themselves. Remembers what it has
/// found, so use one object for many pixels, on one thread.
class PaletteIndex {
 public:
  explicit PaletteIndex(const Palette& palette);

  /// The whole picture, lines from the top.
  Bytes indicesOf(const Picture& picture, Dither dither);

 private:
  struct Entry {
    int blue, green, red, index;
  };
  struct Remembered {
    std::uint32_t key = 0;  ///< 0 is free
    std::uint32_t index = 0;
  };

  int indexOf(int red, int green, int blue);
  int nearest(int red, int green, int blue) const;
  int ditheredIndexOf(const Pixel& pixel, int x, int y);

  std::vector<RGBQUAD> colours_;
  std::vector<Entry> byGreen_;
  std::vector<Remembered> memory_;
  int transparent_;
};

}  // namespace host
