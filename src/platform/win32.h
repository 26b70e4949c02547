#pragma once

/// The Win32 types and calls that the library stands on, and the only place that knows whether they are the
/// real ones. Include this, never <windows.h>.
#if defined(_WIN32)
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#else
#include "platform/standin/calls.h"
#include "platform/standin/types.h"
#endif
