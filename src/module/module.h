#pragma once

#include "platform/export.h"

namespace dibkit {

/// The version of the library that was loaded, which may be newer than the one that the caller was built
/// with.
/// \return major, minor and patch number as in "1.2.3"; never null, lives as long as the library is loaded
DIBKIT_API const char* Version() noexcept;

}  // namespace dibkit
