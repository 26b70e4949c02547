#pragma once

namespace host {

/// From here on Ctrl-C (and being told to end, or losing the terminal) does not end the program at once: it
/// cancels the work under way. A second Ctrl-C ends the program. What the system would end a program for
/// while it writes becomes the failed write's error.
void catchInterrupts();

}  // namespace host
