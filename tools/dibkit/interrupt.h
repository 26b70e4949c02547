#pragma once

#include <dibkit.h>

namespace host {

/// From here on Ctrl-C (and being told to end, or losing the terminal) does not end the program at once: it
/// raises a flag that the long loops look at. A second Ctrl-C ends the program.
void catchInterrupts();

bool interrupted();

/// Throws Cancelled when the user pressed Ctrl-C.
void throwIfInterrupted();

/// The library's progress object for one operation: hands Ctrl-C on to it.
class CancelOnInterrupt : public CQorCommonProgress {
 public:
  CancelOnInterrupt() { look(); }
  float SetProgress(float fraction) override {
    look();
    return fraction;
  }

 private:
  void look() { m_bCancel = interrupted() ? 1 : 0; }
};

}  // namespace host
