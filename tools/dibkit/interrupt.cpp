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
  // Reset after the first: the way out for a user whose program does not answer. No restart: a read that
  // waits for standard input returns.
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    // A program in the background of a script, or under nohup, was told to ignore them and goes on to.
    struct sigaction before {};
    if (::sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN)
      ::sigaction(signal, &action, nullptr);
  }
  // A reader that goes away is a failed write like any other.
  std::signal(SIGPIPE, SIG_IGN);
  // So is a file that grows beyond the user's limit.
  std::signal(SIGXFSZ, SIG_IGN);
}

}  // namespace host
