#pragma once

#include <optional>
#include <stdexcept>

#include "animation/canvas_frames.h"
#include "formats/gif_writer.h"

namespace host {

/// A frame changes more than 256 colours at once, so that no palette holds it.
class TooManyColours : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The animation as a GIF that stores of each frame only the rectangle in which it differs from what a viewer
/// shows already, and in it marks unchanged pixels transparent where that makes the file smaller. What a
/// viewer shows stays the same, pixel for pixel and in time; frames that show the same become one. Frames of
/// 24 bits get a palette each; throws TooManyColours for one that no palette can hold.
GifFile gifOf(CanvasAnimation animation, std::optional<int> loops);

}  // namespace host
