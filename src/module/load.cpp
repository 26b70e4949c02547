#include "platform/win32.h"

/// Called when the library is loaded or unloaded and when a thread starts or ends. It does nothing, on
/// purpose: the loader's lock is held during the call, and the library has no state to set up. The calls for
/// threads are not disabled, because a statically linked C runtime needs them.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID) { return TRUE; }
