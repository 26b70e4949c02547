# What every target of the project is compiled with: dibkit_settings.

add_library(dibkit_settings INTERFACE)
target_compile_features(dibkit_settings INTERFACE cxx_std_20)

if(MSVC)
  target_compile_options(dibkit_settings INTERFACE /W4 /permissive- /utf-8)
  if(DIBKIT_WERROR)
    target_compile_options(dibkit_settings INTERFACE /WX)
  endif()
else()
  target_compile_options(dibkit_settings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
  # Gray values and the perspective of the gate are rounded step by step: a fused multiply-add changes bytes.
  target_compile_options(dibkit_settings INTERFACE -ffp-contract=off)
  # The same for the wide registers of the x87 unit, which compilers for 32-bit x86 use unless told otherwise.
  if(CMAKE_SIZEOF_VOID_P EQUAL 4 AND CMAKE_SYSTEM_PROCESSOR MATCHES "86")
    target_compile_options(dibkit_settings INTERFACE -msse2 -mfpmath=sse)
  endif()
  if(DIBKIT_WERROR)
    target_compile_options(dibkit_settings INTERFACE -Werror)
  endif()
  if(DIBKIT_COVERAGE)
    target_compile_options(dibkit_settings INTERFACE --coverage)
    target_link_options(dibkit_settings INTERFACE --coverage)
  endif()
endif()

if(WIN32)
  target_compile_definitions(dibkit_settings INTERFACE NOMINMAX WIN32_LEAN_AND_MEAN)
endif()
if(MINGW)
  # The compiler's own run-time libraries go into each binary, so that the DLL stands alone.
  target_link_options(dibkit_settings INTERFACE -static)
endif()

if(DIBKIT_SANITIZE)
  target_compile_options(dibkit_settings INTERFACE -fsanitize=${DIBKIT_SANITIZE} -fno-sanitize-recover=all
                                                   -fno-omit-frame-pointer)
  target_link_options(dibkit_settings INTERFACE -fsanitize=${DIBKIT_SANITIZE})
endif()

find_program(DIBKIT_CCACHE ccache)
mark_as_advanced(DIBKIT_CCACHE)
if(DIBKIT_CCACHE AND PROJECT_IS_TOP_LEVEL AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${DIBKIT_CCACHE})
endif()
