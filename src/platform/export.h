#pragma once

/// DIBKIT_API marks what the shared library exports; all other symbols are hidden. A static build defines
/// DIBKIT_STATIC for itself and for its users, and the mark is then empty.
#if defined(DIBKIT_STATIC)
#define DIBKIT_API
#elif defined(_WIN32)
#if defined(DIBKIT_BUILDING)
#define DIBKIT_API __declspec(dllexport)
#else
#define DIBKIT_API __declspec(dllimport)
#endif
#else
#define DIBKIT_API __attribute__((visibility("default")))
#endif
