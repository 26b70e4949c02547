#include "host/animation/transition.h"

#include <algorithm>
#include <charconv>
#include <new>

#include "host/animation/alpha.h"
#include "host/animation/timing.h"
#include "host/errors.h"
#include "host/names.h"
#include "host/parallel.h"

namespace host {

namespace {

int styleNamed(const dibkit::Effect& effect, const std::string& name) {
  if (name.empty()) return effect.defaultStyle;
  for (std::size_t i = 0; i < effect.styles.size(); ++i) {
    if (sameName(effect.styles[i].name, name)) return static_cast<int>(i);
  }
  const std::string ofEffect = std::string("style of ") + effect.name;
  if (effect.styles.empty()) throw UsageError("'" + std::string(effect.name) + "' has no styles");
  int number = -1;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
  if (error == std::errc() && end == name.data() + name.size()) {
    if (number >= 0 && number < static_cast<int>(effect.styles.size())) return number;
    throw UsageError(ofEffect + ": " + name + " is not between 0 and " +
                     std::to_string(effect.styles.size() - 1));
  }
  std::vector<std::string> names;
  for (const dibkit::EffectStyle& style : effect.styles) names.emplace_back(style.name);
  throw UsageError(unknownName(ofEffect, name, names));
}

/// One frame to make.
struct Task {
  const Picture* outgoing;
  const Picture* incoming;
  double progress;
  double milliseconds;
};

std::vector<Task> tasksFor(const std::vector<Picture>& pictures, const TransitionPlan& plan) {
  const double hold = std::max(plan.hold, plan.delay);
  std::vector<Task> tasks{{&pictures.front(), &pictures.front(), 1.0, hold}};
  const std::size_t transitions = plan.back ? pictures.size() : pictures.size() - 1;
  for (std::size_t i = 0; i < transitions; ++i) {
    const Picture& outgoing = pictures[i];
    const Picture& incoming = pictures[(i + 1) % pictures.size()];
    for (int k = 1; k < plan.frames; ++k) {
      tasks.push_back({&outgoing, &incoming, plan.easing(static_cast<double>(k) / plan.frames), plan.delay});
    }
    // Back at the first picture the animation starts again with it.
    if (i + 1 < pictures.size()) tasks.push_back({&outgoing, &incoming, 1.0, hold});
  }
  return tasks;
}

}  // namespace

ChosenEffect chooseEffect(const std::string& effect, const std::string& style) {
  std::vector<std::string> names;
  for (const dibkit::Effect& known : dibkit::effects()) {
    const bool isNumber = known.number && std::to_string(*known.number) == effect;
    if (isNumber || sameName(known.name, effect)) return {&known, styleNamed(known, style)};
    names.emplace_back(known.name);
  }
  throw UsageError(unknownName("effect", effect, names));
}

Picture transitionFrame(const ChosenEffect& chosen, const Picture& incoming, const Picture& outgoing,
                        double progress) {
  const double reached = chosen.effect->overshoots ? progress : rebounding(progress);
  Picture frame(chosen.effect->frame(incoming.dib(), outgoing.dib(), chosen.style, reached));
  ditherAlpha(frame);
  return frame;
}

int countFrames(std::size_t pictures, const TransitionPlan& plan) {
  const auto steps = static_cast<std::size_t>(plan.frames);
  return static_cast<int>(1 + (pictures - 1) * steps + (plan.back ? steps - 1 : 0));
}

std::vector<Frame> renderTransitions(const std::vector<Picture>& pictures, const TransitionPlan& plan,
                                     const std::function<void()>& step) {
  const std::vector<Task> tasks = tasksFor(pictures, plan);
  std::vector<Frame> frames(tasks.size());
  const auto make = [&](int number) {
    const Task& task = tasks[static_cast<std::size_t>(number)];
    // Backwards, the outgoing picture plays the incoming one whose transition is taken back.
    frames[static_cast<std::size_t>(number)].picture =
        plan.reverse ? transitionFrame(plan.chosen, *task.outgoing, *task.incoming, 1.0 - task.progress)
                     : transitionFrame(plan.chosen, *task.incoming, *task.outgoing, task.progress);
    step();
  };
  const auto count = static_cast<int>(tasks.size());
  // The C library has one random generator: two frames drawn from it at once would disturb each other.
  if (plan.chosen.effect->drawsRandomNumbers) {
    forEachInOrder(count, make);
  } else {
    forEachIndex(count, make);
  }
  HundredthsClock clock;
  for (std::size_t i = 0; i < tasks.size(); ++i) frames[i].delay = clock.delayFor(tasks[i].milliseconds);
  return frames;
}

}  // namespace host
