#pragma once

#include <vector>

#include "formats/gif_writer.h"

namespace host {

/// A whole frame as palette indices, lines from the top.
struct IndexedFrame {
  Bytes indices;
  int delay = 0;  ///< in hundredths of a second
};

/// Stores of each frame only the rectangle in which it differs from what a viewer shows already, and in it
/// marks unchanged pixels transparent where that makes the file smaller. What a viewer shows stays the same,
/// pixel for pixel and in time; frames that show the same are one. \param transparent the index of
/// transparent pixels, or below 0 when there is none
std::vector<GifImage> storeChanges(Size canvas, std::vector<IndexedFrame> frames, int transparent,
                                   std::size_t paletteSize);

}  // namespace host
