#pragma once

namespace host {

/// Installs the signal handlers. From then on Ctrl-C, SIGTERM and SIGHUP cancel the current work instead of
/// ending the program; a second Ctrl-C ends it. SIGPIPE and SIGXFSZ are ignored: the write that caused them
/// fails with an error number.
void catchInterrupts();

}  // namespace host
