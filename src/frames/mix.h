#pragma once

#include <cstddef>

#include "platform/win32.h"

/// \file
/// Mixtures of two rows of bytes at one opacity. All bytes of a row go alike, so the kernels run in vectors;
/// the result may lie over either source.

namespace dibkit {

/// mixed = (top opacity + under (255 - opacity)) / 255, truncated. 255 gives `top`, 0 gives `under`.
void mixByByteOpacity(const BYTE* top, const BYTE* under, std::size_t bytes, BYTE opacity, BYTE* mixed);

/// mixed = (under 256 + (top - under) opacity) >> 8. 256 gives `top`, 0 gives `under`. An opacity above 256
/// is not clamped, on purpose: the low byte of the shifted value stands.
void mixByWordOpacity(const BYTE* top, const BYTE* under, std::size_t bytes, WORD opacity, BYTE* mixed);

}  // namespace dibkit
