#include "animation/easing.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "errors.h"
#include "options.h"

namespace host {

namespace {

double bounceOut(double t) {
  // Four parabolas of a ball that falls to 1 and jumps a quarter of its time the next time.
  constexpr double steepness = 7.5625;
  constexpr double part = 2.75;
  struct Jump {
    double until, middle, floor;
  };
  for (const Jump jump : {Jump{1.0 / part, 0.0, 0.0}, Jump{2.0 / part, 1.5 / part, 0.75},
                          Jump{2.5 / part, 2.25 / part, 0.9375}}) {
    if (t < jump.until) return steepness * (t - jump.middle) * (t - jump.middle) + jump.floor;
  }
  const double rest = t - 2.625 / part;
  return steepness * rest * rest + 0.984375;
}

double backOut(double t) {
  constexpr double overshoot = 1.70158;  // a tenth beyond the end
  const double rest = t - 1.0;
  return 1.0 + (overshoot + 1.0) * rest * rest * rest + overshoot * rest * rest;
}

struct NamedEasing {
  std::string_view name;
  Easing curve;
};

constexpr std::array<NamedEasing, 6> easings{{
    {"linear", [](double t) { return t; }},
    {"ease-in", [](double t) { return t * t; }},
    {"ease-out", [](double t) { return t * (2.0 - t); }},
    {"ease-in-out", [](double t) { return t * t * (3.0 - 2.0 * t); }},
    {"back", [](double t) { return std::clamp(backOut(t), 0.0, 1.0); }},
    {"bounce", [](double t) { return std::clamp(bounceOut(t), 0.0, 1.0); }},
}};

}  // namespace

Easing easingNamed(const std::string& name) {
  for (const NamedEasing& easing : easings) {
    if (easing.name == name) return easing.curve;
  }
  throw UsageError(unknownName("easing", name, easingNames()));
}

std::vector<std::string> easingNames() {
  std::vector<std::string> names;
  for (const NamedEasing& easing : easings) names.emplace_back(easing.name);
  return names;
}

}  // namespace host
