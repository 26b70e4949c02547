#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "animation/changes.h"
#include "animation/palette.h"
#include "formats/gif_writer.h"

namespace host {

/// An animation whose frames are palette indices, one palette for all.
struct IndexedAnimation {
  Size canvas;
  std::vector<RGBQUAD> palette;    ///< with an entry for the transparent index
  std::optional<int> transparent;  ///< the index of transparent pixels; nothing when all 256 are colours
  std::vector<IndexedFrame> frames;
};

/// Finds one palette for all frames, exact when their colours fit. The same frames always give the same
/// indices. \param frames at least one; pictures are released as they are used up \param step called once for
/// each frame, from any thread
IndexedAnimation indexFrames(std::vector<Frame> frames, Dither dither, const std::function<void()>& step);

/// The animation as a GIF that stores of each frame only what changed.
GifFile gifOf(const IndexedAnimation& animation, std::optional<int> loops);

}  // namespace host
