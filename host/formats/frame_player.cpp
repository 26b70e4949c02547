#include "host/formats/frame_player.h"

#include <algorithm>
#include <utility>

#include "host/cancel.h"
#include "host/errors.h"

namespace host {

void FramePlayer::show(const PlacedFrame& frame, const FramePixels& pixels) {
  throwIfCancelled();
  requireUsableAnimation(canvas_.size(), static_cast<std::int64_t>(++number_));
  if (!pixels.complete) {
    const std::string name = frameName(number_);
    diagnostics_.report(frame.cut ? truncated("within " + name)
                                  : format_ + ": the data of " + name + " are damaged");
  }
  const int delay = timeline_.add(frame.seconds);
  if (!pixels.picture && (frame.cut || frames_.empty())) return;
  canvas_.prepare(clippedTo(canvas_.size(), frame.left, frame.top, frame.size), frame.disposal);
  // The missing part of a frame does not clear the canvas.
  const Compositing compositing = pixels.complete ? frame.compositing : Compositing::over;
  if (pixels.picture) canvas_.composite(*pixels.picture, compositing);
  frames_.push_back({canvas_.picture().clone(), delay});
}

std::vector<Frame> FramePlayer::takeFrames() && {
  if (frames_.empty()) {
    const std::vector<std::string>& faults = diagnostics_.warnings();
    throw FormatError(faults.empty() ? format_ + ": there is no picture in it" : faults.front());
  }
  return std::move(frames_);
}

std::optional<int> loopsFromPlays(std::size_t plays) {
  constexpr std::size_t maximum = 65535;
  if (plays == 1) return std::nullopt;
  return plays == 0 ? 0 : static_cast<int>(std::min(plays - 1, maximum));
}

}  // namespace host
