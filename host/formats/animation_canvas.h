#pragma once

#include <cstdint>
#include <vector>

#include <dibkit.h>

#include "host/picture.h"

namespace host {

/// What becomes of a frame's part of the canvas before the next frame is drawn.
enum class Disposal {
  keep,
  background,  ///< it becomes transparent
  previous,    ///< it becomes what it was before the frame
};

/// How a picture gets onto a canvas.
enum class Compositing { replace, over };

/// The canvas on which the frames of an animation are drawn one after the other, each on a part of it.
class AnimationCanvas {
 public:
  AnimationCanvas() = default;
  /// Transparent. Throws FormatError for a size that is not usable.
  explicit AnimationCanvas(Size size) : picture_(size) {}

  Size size() const { return picture_.size(); }
  const Picture& picture() const { return picture_; }

  /// Takes the frame before away as it wanted, and gives the canvas to draw the next one on.
  /// \param part where that will draw, inside of the canvas
  /// \return where the canvas changed, empty for nowhere
  RECT prepare(const RECT& part, Disposal disposal);
  Picture& drawing() { return picture_; }
  /// Composites a picture onto the prepared part, which has its size.
  void composite(const Picture& picture, Compositing compositing);
  /// The last prepared frame was not drawn: nothing will be taken away.
  void forget() { disposal_ = Disposal::keep; }

 private:
  void takeAway();
  void save(const RECT& part);

  Picture picture_;
  RECT part_{};
  Disposal disposal_ = Disposal::keep;
  std::vector<Pixel> saved_;  ///< what was in the part, line by line, to be restored
};

/// Pixels of a rectangle.
std::int64_t areaOf(const RECT& rect);

/// The part of a canvas that a rectangle at any place not above or left of it covers; empty when it is
/// beside.
RECT clippedTo(Size canvas, int left, int top, Size size);

}  // namespace host
