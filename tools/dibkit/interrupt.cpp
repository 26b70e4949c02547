#include "interrupt.h"

#include <csignal>

#include "host/cancel.h"

namespace host {

namespace {

extern "C" void onInterrupt(int) { requestCancel(); }

}  // namespace

void catchInterrupts() {
  struct sigaction action {};
  action.sa_handler = onInterrupt;
  // The handler is removed after the first signal, so that a second one ends a program that does not respond.
  // System calls are not restarted, so that a read that waits for standard input returns.
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    // A program started by nohup, or in the background of a script, ignores these signals and has to go on.
    struct sigaction before {};
    if (::sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN)
      ::sigaction(signal, &action, nullptr);
  }
  // A write to a pipe that nobody reads any more fails with EPIPE instead.
  std::signal(SIGPIPE, SIG_IGN);
  // A write beyond the user's limit on file sizes fails with EFBIG instead.
  std::signal(SIGXFSZ, SIG_IGN);
}

}  // namespace host
