#pragma once

/// The Win32 types and calls that the library uses: on Windows those of <windows.h>, elsewhere a stand-in
/// with the same names and results. Include this header instead of <windows.h>.
#if defined(_WIN32)
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#else
#include "platform/standin/calls.h"
#include "platform/standin/types.h"
#endif
