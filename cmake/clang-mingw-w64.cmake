# Cross-compilation with clang, using the headers and the runtime of mingw-w64's g++.
set(triple x86_64-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/windows-target.cmake)

execute_process(COMMAND ${triple}-g++-posix -print-libgcc-file-name
  OUTPUT_VARIABLE libgcc OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
cmake_path(GET libgcc PARENT_PATH gcc_folder)

set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER_TARGET ${triple})
set(CMAKE_CXX_COMPILER_TARGET ${triple})
set(CMAKE_CXX_FLAGS_INIT "-isystem ${gcc_folder}/include/c++ -isystem ${gcc_folder}/include/c++/${triple}")
# These folders come last, so that a target can name folders that are searched first.
set(CMAKE_C_STANDARD_LIBRARIES "-L${gcc_folder}")
set(CMAKE_CXX_STANDARD_LIBRARIES "-L${gcc_folder} -lstdc++ -lgcc_eh -lpthread")
