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
  if(DIBKIT_WERROR)
    target_compile_options(dibkit_settings INTERFACE -Werror)
  endif()
  if(DIBKIT_COVERAGE)
    target_compile_options(dibkit_settings INTERFACE --coverage)
    target_link_options(dibkit_settings INTERFACE --coverage)
  endif()
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
