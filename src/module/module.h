#pragma once

#include "platform/export.h"

namespace dibkit {

/// The version of the loaded library, which may be newer than the one that the host was built with. May be
/// called on any thread.

/// \return major, minor and patch number as in "1.2.3"; never null, valid as long as the library is loaded
DIBKIT_API const char* Version() noexcept;

}  // namespace dibkit
