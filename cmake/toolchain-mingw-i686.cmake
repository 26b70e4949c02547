# 32-bit Windows, built on Debian with MinGW-w64.
set(CMAKE_SYSTEM_PROCESSOR i686)
include(${CMAKE_CURRENT_LIST_DIR}/toolchain-mingw.cmake)
