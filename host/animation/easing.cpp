#include "host/animation/easing.h"

#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <string_view>

#include "host/errors.h"
#include "host/names.h"

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
  double (*curve)(double);
};

constexpr std::array<NamedEasing, 6> easings{{
    {"linear", [](double t) { return t; }},
    {"ease-in", [](double t) { return t * t; }},
    {"ease-out", [](double t) { return t * (2.0 - t); }},
    {"ease-in-out", [](double t) { return t * t * (3.0 - 2.0 * t); }},
    {"back", backOut},
    {"bounce", bounceOut},
}};

constexpr std::string_view bezierName = "cubic-bezier";

/// One coordinate of the curve at s, 0 to 1, along it: the ends are 0 and 1, its control points a and b.
double bezierAt(double s, double a, double b) {
  const double rest = 1.0 - s;
  return 3.0 * rest * rest * s * a + 3.0 * rest * s * s * b + s * s * s;
}

struct Bezier {
  double x1, y1, x2, y2;

  double operator()(double t) const {
    // Time only grows along the curve, so halving finds the place of t.
    double from = 0.0;
    double to = 1.0;
    for (int i = 0; i < 52; ++i) {
      const double middle = (from + to) / 2.0;
      (bezierAt(middle, x1, x2) < t ? from : to) = middle;
    }
    return bezierAt(to, y1, y2);
  }
};

/// What "cubic-bezier(0.34, 1.56, 0.64, 1)" says, or nothing.
std::optional<Bezier> readBezier(std::string_view text) {
  Bezier bezier{};
  const auto take = [&text](std::string_view wanted) {
    if (!text.starts_with(wanted)) return false;
    text.remove_prefix(wanted.size());
    while (text.starts_with(' ')) text.remove_prefix(1);
    return true;
  };
  std::string_view before = "(";
  if (!take(bezierName)) return std::nullopt;
  for (double* number : {&bezier.x1, &bezier.y1, &bezier.x2, &bezier.y2}) {
    if (!take(before)) return std::nullopt;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), *number);
    if (error != std::errc() || !std::isfinite(*number)) return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    take("");
    before = ",";
  }
  const auto inTime = [](double x) { return x >= 0.0 && x <= 1.0; };
  const bool complete = take(")") && text.empty();
  return complete && inTime(bezier.x1) && inTime(bezier.x2) ? std::optional(bezier) : std::nullopt;
}

}  // namespace

Easing easingNamed(const std::string& name) {
  for (const NamedEasing& easing : easings) {
    if (sameName(easing.name, name)) return easing.curve;
  }
  if (const std::optional<Bezier> bezier = readBezier(name)) return *bezier;
  if (name.starts_with(bezierName)) {
    throw UsageError("'" + name +
                     "' is no curve; write it like cubic-bezier(0.34,1.56,0.64,1), its times x from 0 to 1");
  }
  throw UsageError(unknownName("easing", name, easingNames()));
}

std::vector<std::string> easingNames() {
  std::vector<std::string> names;
  for (const NamedEasing& easing : easings) names.emplace_back(easing.name);
  names.push_back(std::string(bezierName) + "(x1,y1,x2,y2)");
  return names;
}

// The distance from the nearest even number goes up and down between 0 and 1.
double rebounding(double progress) { return std::abs(std::remainder(progress, 2.0)); }

}  // namespace host
