#pragma once

#include <functional>

#include <dibkit.h>

#include "host/parallel.h"
#include "host/picture.h"

namespace host {

/// A frame of an animation, on the whole canvas.
struct RenderedFrame {
  Picture picture;
  const Picture* backdrop = nullptr;  ///< what it shows outside of `changed`; null for nothing that is known
  RECT changed{};
};

/// Renders the frames of an animation, as often as they are needed: rendering a frame again takes less than
/// keeping all of them. All frames have one size, and rendering them again gives the same.
class FrameSource {
 public:
  virtual ~FrameSource() = default;

  virtual Size size() const = 0;
  /// At least 1.
  virtual int count() const = 0;
  /// How long a frame shows, in hundredths of a second.
  virtual int delay(int frame) const = 0;

  /// Whether frames have to be rendered one after the other from the first to the last.
  virtual bool needsOrder() const = 0;
  /// \param frame 0 to count() - 1; unless needsOrder(), several threads may each render one
  virtual RenderedFrame render(int frame) = 0;
};

/// Renders all frames and calls take(frame, number, changed) in order, on this thread, while other threads
/// render the next ones. `changed` is the rectangle in which the frame may differ from the one before; all of
/// the first one. Holds no more frames than there are threads to render them. Throws Cancelled on Ctrl-C.
void forEachFrame(FrameSource& source, Workers& workers,
                  const std::function<void(RenderedFrame&& frame, int number, const RECT& changed)>& take);

}  // namespace host
