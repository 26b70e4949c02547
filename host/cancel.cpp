#include "host/cancel.h"

#include <atomic>

#include "host/errors.h"

namespace host {

namespace {

std::atomic<bool> requested{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may not wait");

}  // namespace

void requestCancel() noexcept { requested = true; }

bool cancelRequested() noexcept { return requested; }

void throwIfCancelled() {
  if (cancelRequested()) throw Cancelled();
}

}  // namespace host
