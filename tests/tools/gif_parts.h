#pragma once

#include <string>
#include <vector>

#include "journey.h"

namespace journey {

/// 0xRRGGBB
using Colours = std::vector<std::uint32_t>;

enum Disposal { unspecified, keep, toBackground, toPrevious };

/// A frame of a GIF to be written: everything that writers do.
struct Part {
  int left = 0;
  int top = 0;
  int width = 1;
  int height = 1;
  Bytes indices;
  Colours palette;  ///< empty for the one of the screen
  int transparent = -1;
  int disposal = unspecified;
  int delay = 5;
  bool interlaced = false;
};

/// The order of the lines in the file.
std::vector<int> lineOrder(int height, bool interlaced);

/// Writes a GIF without compressing it, so that there is always something to be gained. Palettes are padded
/// to a power of two with their first colour.
void writeGif(const std::string& path, int width, int height, const Colours& palette,
              const std::vector<Part>& parts);

}  // namespace journey
