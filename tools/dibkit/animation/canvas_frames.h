#pragma once

#include <functional>
#include <optional>
#include <vector>

#include <dibkit.h>

#include "animation/palette.h"
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

/// Brings all frames onto one palette, exactly when their colours fit. The same frames always give the same
/// indices. \param frames at least one; pictures are released as they are used up \param step called once for
/// each frame, from any thread
CanvasAnimation indexFrames(std::vector<Frame> frames, Dither dither, const std::function<void()>& step);

/// Keeps every colour: frames of 8 bits when one palette holds them all, frames of 24 bits otherwise.
/// \param frames at least one; pictures are released as they are used up
CanvasAnimation keepColours(std::vector<Frame> frames);

/// The entries of an image's palette.
std::vector<RGBQUAD> paletteOf(const BITMAPINFOHEADER* dib);

/// The first entry of that colour, or nothing.
std::optional<int> entryOf(const std::vector<RGBQUAD>& palette, RGBQUAD colour);

}  // namespace host
