#include "module/module.h"

namespace dibkit {

const char* Version() noexcept { return DIBKIT_VERSION; }

}  // namespace dibkit
