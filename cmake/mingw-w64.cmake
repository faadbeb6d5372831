# Cross-compilation for 64-bit Windows with Debian's mingw-w64 g++.
set(triple x86_64-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/windows-target.cmake)
set(CMAKE_C_COMPILER ${triple}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triple}-g++-posix)
