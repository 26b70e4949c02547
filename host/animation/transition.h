#pragma once

#include <functional>
#include <string>
#include <vector>

#include <dibkit.h>

#include "host/animation/easing.h"
#include "host/formats/formats.h"

namespace host {

/// A transition of the catalogue, in one of its styles.
struct ChosenEffect {
  const dibkit::Effect* effect = nullptr;
  int style = 0;
};

/// Looks names up in the catalogue, in either case; both may also be numbers, and an empty style is the
/// effect's usual one. Throws UsageError that names what exists.
ChosenEffect chooseEffect(const std::string& effect, const std::string& style);

/// How the animation runs; what is set here is what happens when the user says nothing.
struct TransitionPlan {
  ChosenEffect chosen;
  Easing easing = easingNamed("linear");
  int frames = 20;       ///< steps from one picture to the next; the last one is the picture itself
  double delay = 50;     ///< of a step, in milliseconds
  double hold = 800;     ///< of a picture, in milliseconds
  bool reverse = false;  ///< the outgoing picture leaves as the effect would bring it in
  bool back = false;     ///< ends with a transition to the first picture
};

/// One frame on the way. All pictures have one size; their pixels are opaque or transparent, and so are the
/// frame's.
/// \param progress 0 gives the outgoing picture, 1 exactly the incoming one; beyond them an effect goes on if
///        it can, and else rebounds
Picture transitionFrame(const ChosenEffect& chosen, const Picture& incoming, const Picture& outgoing,
                        double progress);

/// The frames of the transitions from each picture to the next one.
/// \param step called after every frame, from any thread
std::vector<Frame> renderTransitions(const std::vector<Picture>& pictures, const TransitionPlan& plan,
                                     const std::function<void()>& step);
/// How many frames that gives.
int countFrames(std::size_t pictures, const TransitionPlan& plan);

}  // namespace host
