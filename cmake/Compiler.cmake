# What every target of the project is compiled with: all warnings as errors, Unicode Windows headers, and, for
# the compilers that come with a runtime of their own, that runtime linked in.
add_library(zotdam_compiler INTERFACE)
target_compile_definitions(zotdam_compiler INTERFACE
  UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0601)
target_include_directories(zotdam_compiler INTERFACE ${PROJECT_SOURCE_DIR}/include)

if(MSVC)
  target_compile_options(zotdam_compiler INTERFACE /W4 /WX /permissive- /utf-8)
  target_link_options(zotdam_compiler INTERFACE "$<$<CONFIG:Release>:/DEBUG;/OPT:REF;/OPT:ICF>")
  set(CMAKE_MSVC_DEBUG_INFORMATION_FORMAT ProgramDatabase)
  set(CMAKE_MSVC_RUNTIME_LIBRARY "MultiThreaded$<$<CONFIG:Debug>:Debug>")
else()
  set(CMAKE_CXX_FLAGS_RELEASE "-O2 -g -DNDEBUG")
  target_compile_options(zotdam_compiler INTERFACE
    -Wall -Wextra -Wpedantic -Werror -ffunction-sections -fdata-sections)
  target_link_options(zotdam_compiler INTERFACE
    -static -Wl,--gc-sections -Wl,--nxcompat,--dynamicbase,--high-entropy-va)

  # One commit gives the same release, byte for byte, wherever and whenever it is built. The debug information, whose
  # checksum is in the programs, has the paths that /ZOTDam/build/release would see, relative ones as ccache makes them.
  # (Of prefixes that fit, the compiler takes the last.)
  target_compile_options(zotdam_compiler INTERFACE $<$<CONFIG:Release>:
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=../../
    -ffile-prefix-map=${PROJECT_BINARY_DIR}=/ZOTDam/build/release
    -ffile-prefix-map=${PROJECT_BINARY_DIR}/=>)
  target_link_options(zotdam_compiler INTERFACE -Wl,--no-insert-timestamp)
endif()

# Lets the release compile the sources of a target in batches: most of the time goes into the headers of Windows and of
# the standard library, which each batch reads once. All other builds compile each source by itself, so that a header
# that a source forgets is found.
function(compile_in_batches target)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_BUILD_TYPE STREQUAL "Release")
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 10)
  endif()
endfunction()
