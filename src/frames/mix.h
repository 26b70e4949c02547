#pragma once

#include <cstddef>

#include "platform/win32.h"

/// \file
/// Mixtures of two rows of bytes at one opacity. `mixed` may be one of the sources.

namespace dibkit {

/// mixed = (top * opacity + backdrop * (255 - opacity)) / 255, truncated
void mixByByteOpacity(const BYTE* top, const BYTE* backdrop, std::size_t bytes, BYTE opacity, BYTE* mixed);

/// mixed = (top * opacity + backdrop * (256 - opacity)) >> 8, modulo 256. An opacity above 256 is not
/// clamped, on purpose.
void mixByWordOpacity(const BYTE* top, const BYTE* backdrop, std::size_t bytes, WORD opacity, BYTE* mixed);

}  // namespace dibkit
