#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "animation/palette.h"
#include "formats/gif_writer.h"

namespace host {

/// The frames as a GIF: one palette for all of them, exact when their colours fit, and of each frame only
/// what changed. The same frames always give the same bytes. \param frames at least one; pictures are
/// released as they are used up \param step called once for each frame, from any thread
GifFile gifOfFrames(std::vector<Frame> frames, std::optional<int> loops, Dither dither,
                    const std::function<void()>& step);

}  // namespace host
