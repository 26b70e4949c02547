#pragma once

#include <memory>

#include "host/animation/frame_source.h"

namespace host {

/// How water moves over a picture, with the defaults.
struct RipplePlan {
  int frames = 40;    ///< stages of the water
  double delay = 60;  ///< of each, in milliseconds
  int drops = 8;      ///< at random places; 0 for one every 100 pixels
  unsigned seed = 1;  ///< of the random places
};

/// The frames of a picture on which drops fall as if it were water: the still picture, then the stages of the
/// water. It is as good as level after a second or two, so that the animation has no seam.
class RippleFrames : public FrameSource {
 public:
  /// \param picture its pixels are opaque or transparent, and so are the frames'; must outlive this object
  RippleFrames(const Picture& picture, const RipplePlan& plan);
  ~RippleFrames() override;

  Size size() const override { return picture_->size(); }
  int count() const override { return plan_.frames + 1; }
  int delay(int frame) const override { return delays_[static_cast<std::size_t>(frame)]; }
  /// Each stage of the water follows from the one before; rendering the first frame starts again.
  bool needsOrder() const override { return true; }
  RenderedFrame render(int frame) override;

 private:
  class Water;

  const Picture* picture_;
  RipplePlan plan_;
  std::vector<int> delays_;
  std::unique_ptr<Water> water_;
};

}  // namespace host
