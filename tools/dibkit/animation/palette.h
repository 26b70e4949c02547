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

/// The colours that pictures show, transparent pixels left out.
class ShownColours {
 public:
  ShownColours();
  /// \param before a picture of the same size that was added already, or null; saves a look at equal lines
  void add(const Picture& picture, const Picture* before);

  std::size_t count() const { return count_; }
  /// In order of first appearance; no more than a palette has entries.
  const std::vector<RGBQUAD>& first() const { return first_; }
  bool anyTransparent() const { return anyTransparent_; }
  /// A colour that does not show.
  RGBQUAD unused() const;

 private:
  std::size_t count_ = 0;
  std::vector<RGBQUAD> first_;
  bool anyTransparent_ = false;
  std::vector<bool> shown_;
};

/// The best palette for all frames that the quantising library finds. Frames may have any sizes; each weighs
/// as much as the time that it shows.
std::vector<RGBQUAD> bestPalette(std::span<const Frame> frames, int mostColours);

/// Finds palette indices for pixels. Colours that are in the palette map to themselves. Remembers what it has
/// found, so use one object for many pixels, on one thread.
class PaletteIndex {
 public:
  /// \param colours at most 256; 255 if there are transparent pixels, whose index is the one behind them
  explicit PaletteIndex(std::vector<RGBQUAD> colours);

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
