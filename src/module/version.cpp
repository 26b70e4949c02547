#include "module/module.h"

const char* dibkit::Version() noexcept { return DIBKIT_VERSION; }
