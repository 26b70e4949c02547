#include "host/animation/transition.h"

#include <algorithm>
#include <charconv>

#include "host/animation/alpha.h"
#include "host/animation/timing.h"
#include "host/errors.h"
#include "host/names.h"

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

TransitionFrames::TransitionFrames(std::span<const Picture> pictures, const TransitionPlan& plan)
    : pictures_(pictures), chosen_(plan.chosen) {
  HundredthsClock clock;
  const auto hold = [&](const Picture& picture) {
    stages_.push_back({&picture, nullptr, 1.0, clock.delayFor(std::max(plan.hold, plan.delay))});
  };
  hold(pictures.front());
  const std::size_t transitions = plan.back ? pictures.size() : pictures.size() - 1;
  for (std::size_t i = 0; i < transitions; ++i) {
    const Picture* outgoing = &pictures[i];
    const Picture* incoming = &pictures[(i + 1) % pictures.size()];
    for (int k = 1; k < plan.frames; ++k) {
      const double progress = plan.easing(static_cast<double>(k) / plan.frames);
      const int delay = clock.delayFor(plan.delay);
      // In reverse, the outgoing picture is brought in, and time runs backwards.
      stages_.push_back(plan.reverse ? Stage{outgoing, incoming, 1.0 - progress, delay}
                                     : Stage{incoming, outgoing, progress, delay});
    }
    // A transition back to the first picture ends where the animation starts again.
    if (i + 1 < pictures.size()) hold(*incoming);
  }
}

RenderedFrame TransitionFrames::render(int frame) {
  const Stage& stage = stages_[static_cast<std::size_t>(frame)];
  if (stage.outgoing == nullptr) return {stage.incoming->clone(), stage.incoming, {}};
  const dibkit::Effect& effect = *chosen_.effect;
  const double progress = effect.overshoots ? stage.progress : rebounding(stage.progress);
  RenderedFrame rendered{{}, stage.outgoing, {}};
  rendered.picture = Picture(
      effect.frame(stage.incoming->dib(), stage.outgoing->dib(), chosen_.style, progress, &rendered.changed));
  ditherAlpha(rendered.picture);
  return rendered;
}

int countFrames(std::size_t pictures, const TransitionPlan& plan) {
  const auto steps = static_cast<std::size_t>(plan.frames);
  return static_cast<int>(1 + (pictures - 1) * steps + (plan.back ? steps - 1 : 0));
}

}  // namespace host
