#pragma once

#include <span>
#include <string>
#include <vector>

#include <dibkit.h>

#include "host/animation/easing.h"
#include "host/animation/frame_source.h"

namespace host {

/// A transition of the catalogue, in one of its styles.
struct ChosenEffect {
  const dibkit::Effect* effect = nullptr;
  int style = 0;
};

/// Looks up names of the catalogue, in upper or lower case. Both may also be numbers; an empty style is the
/// effect's default. Throws UsageError with the names that exist.
ChosenEffect chooseEffect(const std::string& effect, const std::string& style);

/// How the animation runs, with the defaults.
struct TransitionPlan {
  ChosenEffect chosen;
  Easing easing = easingNamed("linear");
  int frames = 20;       ///< steps from one picture to the next; the last one is the picture itself
  double delay = 50;     ///< of a step, in milliseconds
  double hold = 800;     ///< of a picture, in milliseconds
  bool reverse = false;  ///< the outgoing picture leaves as the effect would bring it in
  bool back = false;     ///< ends with a transition to the first picture
};

/// The frames of the transitions from each picture to the next one, the pictures themselves among them.
class TransitionFrames : public FrameSource {
 public:
  /// \param pictures at least two, of one size, their pixels opaque or transparent, and so are the frames';
  ///        must outlive this object
  TransitionFrames(std::span<const Picture> pictures, const TransitionPlan& plan);

  Size size() const override { return pictures_.front().size(); }
  int count() const override { return static_cast<int>(stages_.size()); }
  int delay(int frame) const override { return stages_[static_cast<std::size_t>(frame)].delay; }
  /// The C library has one random generator: two effects that draw from it at once would disturb each other.
  bool needsOrder() const override { return chosen_.effect->drawsRandomNumbers; }
  RenderedFrame render(int frame) override;

 private:
  /// What a frame shows: a stage of a transition or, without an outgoing picture, the incoming picture
  /// itself.
  struct Stage {
    const Picture* incoming = nullptr;
    const Picture* outgoing = nullptr;
    double progress = 0;
    int delay = 0;
  };

  std::span<const Picture> pictures_;
  ChosenEffect chosen_;
  std::vector<Stage> stages_;
};

/// How many frames that gives.
int countFrames(std::size_t pictures, const TransitionPlan& plan);

}  // namespace host
