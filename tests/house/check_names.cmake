# Fails when a source that Windows compiles has an identifier that <windows.h> takes as a macro.

set(taken "(^|[^A-Za-z0-9_])(far|interface|near)($|[^A-Za-z0-9_])")
file(GLOB_RECURSE files RELATIVE ${SOURCE} ${SOURCE}/src/*.h ${SOURCE}/src/*.cpp ${SOURCE}/tests/*.h
     ${SOURCE}/tests/*.cpp)
list(FILTER files EXCLUDE REGEX "^tests/tools/")
foreach(file IN LISTS files)
  file(STRINGS ${SOURCE}/${file} lines REGEX "${taken}")
  foreach(line IN LISTS lines)
    string(REGEX REPLACE "\"[^\"]*\"" "" code "${line}")
    string(REGEX REPLACE "//.*" "" code "${code}")
    if(code MATCHES "${taken}" AND NOT code MATCHES "#include")
      string(STRIP "${line}" line)
      message(SEND_ERROR "${file}: a macro of <windows.h> as a name: ${line}")
    endif()
  endforeach()
endforeach()
