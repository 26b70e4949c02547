#pragma once

#include <functional>
#include <string>
#include <vector>

namespace host {

/// How a transition moves: from the share of its time that is over to the share of its way that is done. Both
/// go from 0 to 1; in between some curves go beyond their end and come back.
using Easing = std::function<double(double)>;

/// A named curve, or "cubic-bezier(x1, y1, x2, y2)": the one from (0, 0) to (1, 1) with these control points.
/// Throws UsageError for a name that does not exist, and for control points outside of the time.
Easing easingNamed(const std::string& name);
std::vector<std::string> easingNames();

/// The curve for what cannot go beyond its ends: it rebounds from them, and is back at the same time.
double rebounding(double progress);

}  // namespace host
