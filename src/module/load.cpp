#include "platform/win32.h"

/// Called when the library is loaded and unloaded, and when threads come and go. Nothing is done here on
/// purpose: the loader holds its lock, and the library keeps no state that would need setting up. Calls for
/// threads are not turned off either, as a C runtime that is linked statically needs them.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID) { return TRUE; }
