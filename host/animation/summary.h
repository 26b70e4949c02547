#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/bytes.h"
#include "host/formats/diagnostics.h"
#include "host/picture.h"

namespace host {

enum class Transparency {
  none,
  transparent,  ///< some pixels do not show
  translucent,  ///< some pixels show in part
};

/// What is in a picture or an animation, as viewers show it.
struct Summary {
  std::string format;  ///< "PNG", "GIF", ...
  int bitsPerPixel = 0;
  Size size;
  std::size_t paletteEntries = 0;  ///< of the palette for all frames; 0 without one
  std::size_t colours = 0;         ///< distinct colours of pixels that show
  Transparency transparency = Transparency::none;
  int frames = 0;
  // Times are in hundredths of a second.
  int shortestDelay = 0;
  int longestDelay = 0;
  std::int64_t duration = 0;
  std::optional<int> loops;           ///< how often it repeats, 0 for ever; nothing for once
  std::vector<std::string> warnings;  ///< what is wrong with the file
};

/// Looks at the whole of a file. Of a GIF it holds one frame at a time and looks at what that may have
/// changed, so any number of frames will do. Throws FormatError for what is no picture, Cancelled on Ctrl-C.
Summary summaryOf(ByteView bytes, Strictness strictness);

}  // namespace host
