#pragma once

#include <dibkit.h>

/// \file
/// Cooperative cancelling of the work of this process: a program raises a flag, and all long loops of host/
/// poll it and throw Cancelled.
namespace host {

/// Cancels the work under way. May be called from a signal handler and from any thread.
void requestCancel() noexcept;

bool cancelRequested() noexcept;

/// Throws Cancelled after requestCancel().
void throwIfCancelled();

/// The library's progress object for one operation: passes a requested cancel on to it.
class CancelProgress : public CQorCommonProgress {
 public:
  CancelProgress() { poll(); }
  float SetProgress(float fraction) override {
    poll();
    return fraction;
  }

 private:
  void poll() { m_bCancel = cancelRequested() ? 1 : 0; }
};

}  // namespace host
