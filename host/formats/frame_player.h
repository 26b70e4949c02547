#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/formats/animation_canvas.h"
#include "host/formats/diagnostics.h"
#include "host/formats/formats.h"
#include "host/formats/timeline.h"

namespace host {

/// Where a frame is drawn, when, and how.
struct PlacedFrame {
  int left = 0;
  int top = 0;
  Size size;
  double seconds = 0;
  Disposal disposal = Disposal::keep;
  Compositing compositing = Compositing::replace;
  bool cut = false;  ///< the file ends in it
};

/// What can be decoded of a frame.
struct FramePixels {
  std::optional<Picture> picture;  ///< of the frame's size; nothing when there is not one line
  bool complete = false;
};

/// Plays animations whose frames are pictures: composites one after the other and keeps what is shown.
class FramePlayer {
 public:
  /// \param format for messages
  FramePlayer(std::string format, Size canvas, Diagnostics& diagnostics)
      : format_(std::move(format)), canvas_(canvas), diagnostics_(diagnostics) {}

  /// Frames without pixels keep their time; they are left out at the end of a truncated file and before the
  /// first frame with pixels. Throws FormatError for too many frames.
  void show(const PlacedFrame& frame, const FramePixels& pixels);

  /// Whether nothing has been shown yet.
  bool empty() const { return frames_.empty(); }

  /// Throws FormatError when there is none.
  std::vector<Frame> takeFrames() &&;

 private:
  std::string format_;
  AnimationCanvas canvas_;
  Diagnostics& diagnostics_;
  Timeline timeline_;
  std::size_t number_ = 0;
  std::vector<Frame> frames_;
};

/// Files count how often an animation plays, 0 for ever; once is no repetition.
std::optional<int> loopsFromPlays(std::size_t plays);

}  // namespace host
