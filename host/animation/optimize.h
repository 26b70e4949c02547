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

/// A GIF as a smaller one that shows the same; the same bytes when that is not smaller and they are not
/// damaged.
///
/// Reads the file twice. Memory is that of a few canvases for any number of frames, time that of the
/// rectangles that the frames draw. Throws FormatError for what is no GIF, Cancelled on Ctrl-C.
OptimizedGif optimizedGif(ByteView bytes, const OptimizeOptions& options, Progress& progress);

}  // namespace host
