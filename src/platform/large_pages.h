#pragma once

#include <cstddef>

namespace dibkit {

/// Requests large pages for the whole ones inside a block that has not been touched yet: its first use then
/// costs a fraction of the page faults. No effect on small blocks, and where the system has no such request.
void preferLargePages(void* block, std::size_t bytes);

}  // namespace dibkit
