# Cross-compilation with Debian's mingw-w64 g++ for the Universal C Runtime (UCRT), which is part of Windows 10 and
# later. All other builds use msvcrt.dll.
set(triple x86_64-w64-mingw32ucrt)
include(${CMAKE_CURRENT_LIST_DIR}/windows-target.cmake)
set(CMAKE_C_COMPILER ${triple}-gcc)
set(CMAKE_CXX_COMPILER ${triple}-g++)
