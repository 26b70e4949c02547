#pragma once

#include <functional>
#include <optional>
#include <vector>

#include <dibkit.h>

#include "formats/formats.h"

namespace host {

/// One frame of an animation on its whole canvas, with its transparent pixels in a mask of their own. All
/// frames of an animation have one depth: 8 bits on one palette, or 24 bits.
struct CanvasFrame {
  dibkit::OwnedDib image;
  dibkit::OwnedDib mask;  ///< 1 bit, 1 marks a transparent pixel; null when all are opaque
  int delay = 0;          ///< in hundredths of a second
};

/// Frames of one depth, and the colour that stands for transparent in them: no pixel that shows has it.
struct CanvasAnimation {
  Size canvas;
  std::vector<CanvasFrame> frames;
  RGBQUAD transparent{};
  bool hasTransparent = true;  ///< false when all 256 entries of the palette are colours that show
};

/// The animation with every frame on one palette, exactly: colours in order of first appearance, transparent
/// pixels with an entry of their own. Nothing when the colours are too many.
std::optional<CanvasAnimation> onOneExactPalette(const CanvasAnimation& trueColour);

/// A picture as a frame of 24 bits. Pixels below half opacity are transparent, the others opaque.
CanvasFrame trueColourFrame(Picture picture, int delay, RGBQUAD transparent);

/// A colour that none of the pictures shows.
class UnusedColour {
 public:
  UnusedColour();
  /// \param before a picture of the same size whose colours are known already, or null
  void addUsed(const Picture& picture, const Picture* before);
  RGBQUAD find() const;
  std::size_t usedCount() const { return count_; }

 private:
  std::size_t count_ = 0;
  std::vector<bool> used_;
};

/// The entries of an image's palette.
std::vector<RGBQUAD> paletteOf(const BITMAPINFOHEADER* dib);

/// The first entry of that colour, or nothing.
std::optional<int> entryOf(const std::vector<RGBQUAD>& palette, RGBQUAD colour);

}  // namespace host
