#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <dibkit.h>

#include "host/animation/dither.h"
#include "host/animation/palette.h"
#include "host/formats/formats.h"

namespace host {

/// One frame of an animation on its whole canvas, in palette indices, lines from the top.
struct CanvasFrame {
  Bytes indices;
  int delay = 0;  ///< in hundredths of a second
};

/// Frames on one palette.
struct CanvasAnimation {
  Size canvas;
  std::vector<RGBQUAD> palette;
  std::optional<std::uint8_t> transparent;  ///< its entry; nothing when all 256 are colours that show
  std::vector<CanvasFrame> frames;
};

/// A GIF and what it holds.
struct GifFile {
  Bytes bytes;
  Size canvas;
  int frames = 0;
  std::int64_t duration = 0;  ///< in hundredths of a second
  int merged = 0;             ///< further frames, which show what the one before them shows
};

/// Brings all frames onto one palette, exactly when their colours fit. The same frames always give the same
/// indices. \param frames at least one; pictures are released as they are used up \param step called once for
/// each frame, from any thread
CanvasAnimation indexFrames(std::vector<Frame> frames, Dither dither, const std::function<void()>& step);

/// \param loops 0 for ever; nothing for once \param comment for people; nothing when empty
GifFile gifOf(const CanvasAnimation& animation, std::optional<int> loops, const std::string& comment = {});

/// The entries of an image's palette.
std::vector<RGBQUAD> paletteOf(const BITMAPINFOHEADER* dib);

/// The first entry of that colour, or nothing.
std::optional<int> entryOf(const std::vector<RGBQUAD>& palette, RGBQUAD colour);

}  // namespace host
