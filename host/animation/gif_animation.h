#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <dibkit.h>

#include "host/animation/changes.h"
#include "host/animation/dither.h"
#include "host/animation/frame_source.h"
#include "host/progress.h"

/// \file
/// From rendered frames to a GIF. The frames are rendered twice, first to find the palette, then to be
/// written: memory is that of a few canvases and of the file, however many frames there are.
namespace host {

/// One palette for all frames of an animation.
struct SharedPalette {
  std::vector<RGBQUAD> entries;             ///< the colours, then the transparent one where there is room
  std::optional<std::uint8_t> transparent;  ///< its index; nothing when all 256 entries are colours that show
  Dither dither = Dither::none;             ///< for colours that the palette lacks

  /// Those that show.
  std::vector<RGBQUAD> colours() const;
};

/// The palette of all colours of the frames, if it has room for them, otherwise the best one for them. The
/// same frames always give the same palette. \param share of the progress
SharedPalette sharedPaletteOf(FrameSource& source, Dither dither, Workers& workers, Progress& progress,
                              double share);

/// Calls take(patch, number) for each frame, in order, on this thread. The patch has palette indices of where
/// the frame may differ from the one before; of all of the first one.
void forEachIndexedFrame(FrameSource& source, const SharedPalette& palette, Workers& workers,
                         const std::function<void(const Patch<std::uint8_t>& patch, int number)>& take);

struct GifOptions {
  std::optional<int> loops;  ///< how often the animation repeats, 0 for ever; nothing for once
  std::string comment{};     ///< for people; nothing when empty
  Dither dither = Dither::none;
};

/// A GIF and what it holds.
struct GifFile {
  Bytes bytes;
  Size canvas;
  int frames = 0;
  std::int64_t duration = 0;  ///< in hundredths of a second
  int merged = 0;             ///< further frames, which show what the one before them shows
};

/// What else becomes of the frames of a GIF, as forEachIndexedFrame() gives them.
using IndexedFrameTap = std::function<void(const SharedPalette& palette, const Patch<std::uint8_t>& patch)>;

/// Stores of each frame what it changes; frames that show the same become one. \param tap may be empty
GifFile gifOf(FrameSource& source, const GifOptions& options, Progress& progress,
              const IndexedFrameTap& tap = {});

}  // namespace host
