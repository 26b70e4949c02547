#pragma once

#include <cstdint>
#include <vector>

#include <dibkit.h>

#include "host/picture.h"

namespace host {

/// How a frame's part of the canvas is restored before the next frame is drawn.
enum class Disposal {
  keep,
  background,  ///< cleared to transparent
  previous,    ///< as it was before the frame
};

/// How a picture is drawn on a canvas.
enum class Compositing { replace, over };

/// The canvas on which the frames of an animation are drawn one after the other, each on a part of it.
class AnimationCanvas {
 public:
  AnimationCanvas() = default;
  /// Transparent. Throws FormatError for a size that is not usable.
  explicit AnimationCanvas(Size size) : picture_(size) {}

  Size size() const { return picture_.size(); }
  const Picture& picture() const { return picture_; }

  /// Restores the canvas by the disposal of the frame before, and prepares it for the next frame.
  /// \param part where that will draw, inside of the canvas
  /// \return the rectangle that was restored, empty for none
  RECT prepare(const RECT& part, Disposal disposal);
  Picture& drawing() { return picture_; }
  /// Composites a picture onto the prepared part, which has its size.
  void composite(const Picture& picture, Compositing compositing);
  /// The last prepared frame was not drawn: there is nothing to restore.
  void forget() { disposal_ = Disposal::keep; }

 private:
  void restore();
  void save(const RECT& part);

  Picture picture_;
  RECT part_{};
  Disposal disposal_ = Disposal::keep;
  std::vector<Pixel> saved_;  ///< what was in the part, line by line, to be restored
};

/// Pixels of a rectangle.
std::int64_t areaOf(const RECT& rect);

/// The part of a canvas that a rectangle covers; empty when it is outside. \param left,top not negative
RECT clippedTo(Size canvas, int left, int top, Size size);

}  // namespace host
