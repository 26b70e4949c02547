#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "animation/canvas_frames.h"
#include "animation/palette.h"
#include "formats/gif_writer.h"

namespace host {

/// Brings all frames onto one palette, exactly when their colours fit. The same frames always give the same
/// indices. \param frames at least one; pictures are released as they are used up \param step called once for
/// each frame, from any thread
CanvasAnimation indexFrames(std::vector<Frame> frames, Dither dither, const std::function<void()>& step);

/// The animation as a GIF that stores of each frame only what changed. Throws TooManyColours for a frame of
/// 24 bits that no palette can hold.
GifFile gifOf(CanvasAnimation animation, std::optional<int> loops);

}  // namespace host
