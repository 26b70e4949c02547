# Fails when the README's first example is not examples/transition.cpp from its first include on.

file(READ ${SOURCE}/README.md readme)
file(READ ${SOURCE}/examples/transition.cpp example)
string(FIND "${example}" "#include <dibkit.h>" start)
string(SUBSTRING "${example}" ${start} -1 shown)
string(FIND "${readme}" "```cpp\n${shown}```" found)
if(found EQUAL -1)
  message(FATAL_ERROR "README.md and examples/transition.cpp differ")
endif()
