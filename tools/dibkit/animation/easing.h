#pragma once

#include <string>
#include <vector>

namespace host {

/// How fast a transition moves: from the share of its time that is over to the share of its way that is done.
/// Both are 0 to 1; curves that overshoot are cut off there, since an effect has nothing beyond its ends.
using Easing = double (*)(double);

/// Throws UsageError for a name that does not exist.
Easing easingNamed(const std::string& name);
std::vector<std::string> easingNames();

}  // namespace host
