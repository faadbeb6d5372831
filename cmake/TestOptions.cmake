# The compiler options of the tests in the release build. They compile and link fastest: no debug information and few
# sections, because the linker of Debian 12 takes a time that grows with the square of the sections of an object. For g++
# also -Og: the objects have a third of the size of those with -O0.
string(REGEX REPLACE " -g| -ffunction-sections| -fdata-sections" "" CMAKE_CXX_FLAGS_RELEASE
  "${CMAKE_CXX_FLAGS_RELEASE}")
string(REPLACE "-Wl,--gc-sections" "" CMAKE_EXE_LINKER_FLAGS_RELEASE "${CMAKE_EXE_LINKER_FLAGS_RELEASE}")
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  string(REPLACE "-Os" "-Og" CMAKE_CXX_FLAGS_RELEASE "${CMAKE_CXX_FLAGS_RELEASE}")
endif()
