#pragma once

#include <functional>
#include <string>
#include <vector>

namespace host {

/// How a transition moves: maps the elapsed share of the time to the progress of the effect. Both go from 0
/// to 1; in between some curves overshoot and return.
using Easing = std::function<double(double)>;

/// A named curve, or "cubic-bezier(x1, y1, x2, y2)": the one from (0, 0) to (1, 1) with these control points.
/// Throws UsageError for a name that does not exist, and for control points outside of the time.
Easing easingNamed(const std::string& name);
std::vector<std::string> easingNames();

/// Progress for effects that cannot overshoot: mirrored at 0 and 1, so that it rebounds and returns in time.
double rebounding(double progress);

}  // namespace host
