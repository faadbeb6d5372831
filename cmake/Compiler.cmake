# The compiler options of every target of the project: all warnings as errors, Unicode Windows headers, and a static
# runtime for the compilers that have their own runtime.
add_library(zotdam_compiler INTERFACE)
target_compile_definitions(zotdam_compiler INTERFACE
  UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0601)
target_include_directories(zotdam_compiler INTERFACE ${PROJECT_SOURCE_DIR}/include)

if(MSVC)
  # 4458 reports constructor parameters with the names of the members that they initialize. 4204 and 4221 report
  # initializers in C that are standard since C99. Functions such as getenv are standard as well.
  target_compile_options(zotdam_compiler INTERFACE /W4 /WX /permissive- /utf-8 /wd4458 /wd4204 /wd4221)
  target_compile_definitions(zotdam_compiler INTERFACE _CRT_SECURE_NO_WARNINGS)
  # An exception of a client's OnItem passes through the exports. With /EHsc, the compiler would assume that functions
  # with C linkage throw none.
  string(REPLACE "/EHsc" "/EHs" CMAKE_CXX_FLAGS "${CMAKE_CXX_FLAGS}")
  target_link_options(zotdam_compiler INTERFACE "$<$<CONFIG:Release>:/DEBUG;/OPT:REF;/OPT:ICF>")
  set(CMAKE_MSVC_DEBUG_INFORMATION_FORMAT ProgramDatabase)
  # The programs contain the runtime of the compiler, but import the C runtime, which is part of Windows 10 and later.
  # Tests replace its functions in the imports of the DLL.
  set(CMAKE_MSVC_RUNTIME_LIBRARY "MultiThreaded$<$<CONFIG:Debug>:Debug>")
  target_link_options(zotdam_compiler INTERFACE
    /NODEFAULTLIB:libucrt$<$<CONFIG:Debug>:d>.lib /DEFAULTLIB:ucrt$<$<CONFIG:Debug>:d>.lib)
else()
  # The DLL and the client spend their time in the DOM and in the system. Optimizing for size saves a sixth of the DLL.
  # The linker removes unused functions and data.
  set(CMAKE_CXX_FLAGS_RELEASE "-Os -g -DNDEBUG -ffunction-sections -fdata-sections")
  set(CMAKE_EXE_LINKER_FLAGS_RELEASE -Wl,--gc-sections)
  set(CMAKE_SHARED_LINKER_FLAGS_RELEASE -Wl,--gc-sections)
  target_compile_options(zotdam_compiler INTERFACE -Wall -Wextra -Wpedantic -Werror)
  target_link_options(zotdam_compiler INTERFACE -static -Wl,--nxcompat,--dynamicbase,--high-entropy-va)

  # A commit always produces the same release, byte for byte, independent of the folder and time of the build. The
  # checksum of the debug information is part of the programs, so its paths are mapped to those of a build in
  # /ZOTDam/build/release. Paths of sources are relative, as ccache makes them. (If several prefixes match, the compiler
  # uses the last one.)
  target_compile_options(zotdam_compiler INTERFACE $<$<CONFIG:Release>:
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=../../
    -ffile-prefix-map=${PROJECT_BINARY_DIR}=/ZOTDam/build/release
    -ffile-prefix-map=${PROJECT_BINARY_DIR}/=>)
  target_link_options(zotdam_compiler INTERFACE -Wl,--no-insert-timestamp)

  # clang can also write types and lines in the format of Windows, which only its own linker puts into PDB files.
  option(ZOTDAM_CODEVIEW "Write types and lines for the debuggers of Windows (clang and lld)" OFF)
  if(ZOTDAM_CODEVIEW)
    target_compile_options(zotdam_compiler INTERFACE -gdwarf -gcodeview)
  endif()
endif()

# Compiles the sources of a target in batches in the release build. Most of the time goes into the headers of Windows
# and of the standard library, which each batch reads once, and into their templates. All other builds compile each
# source separately, so that missing includes are detected.
function(compile_in_batches target size)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_BUILD_TYPE STREQUAL "Release")
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE ${size})
    # In a batch, the compiler takes the sources for headers. This warning is about headers only.
    target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-Wno-subobject-linkage>)
  endif()
endfunction()
