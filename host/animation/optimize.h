#pragma once

#include <string>
#include <vector>

#include "host/bytes.h"
#include "host/formats/diagnostics.h"
#include "host/progress.h"

namespace host {

struct OptimizeOptions {
  Strictness strictness = Strictness::lenient;
  bool strip = false;  ///< leave out comments and what applications keep in the file
};

struct OptimizedGif {
  Bytes bytes;
  std::vector<std::string> warnings;  ///< what is wrong with the file; what can be decoded of it is kept
};

/// A GIF as a smaller one that shows the same; the bytes as they are where nothing is to be gained, unless
/// they are damaged. Reads the file twice, and holds a
/// few canvases however many frames it has; the work is that of the rectangles that the frames draw. Throws
/// FormatError for what is no GIF, Cancelled on Ctrl-C.
OptimizedGif optimizedGif(ByteView bytes, const OptimizeOptions& options, Progress& progress);

}  // namespace host
