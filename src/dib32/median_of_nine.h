#pragma once

#include "dib/view.h"

namespace dibkit {

/// The luminance median of 3 x 3 pixels, without a histogram. Throws std::bad_alloc before it changes
/// anything.
void filterByNine(const View& image);

}  // namespace dibkit
