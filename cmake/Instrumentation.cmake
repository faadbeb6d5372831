# Builds that detect faults which the ordinary build does not report. Each has a preset of the same name.
set(ZOTDAM_INSTRUMENTATION "" CACHE STRING "guarded, sanitized, coverage, or empty for the ordinary build")

# Links a source file into the DLL and every program.
function(link_instrument source)
  target_sources(zotdam_compiler INTERFACE
    $<$<NOT:$<STREQUAL:$<TARGET_PROPERTY:TYPE>,STATIC_LIBRARY>>:${PROJECT_SOURCE_DIR}/tests/instrumented/${source}>)
endfunction()

if(ZOTDAM_INSTRUMENTATION STREQUAL "guarded")
  # Each memory block ends at an inaccessible page.
  link_instrument(GuardedHeap.cpp)

elseif(ZOTDAM_INSTRUMENTATION STREQUAL "sanitized")
  # Undefined behaviour, misuse of the standard library and stack buffer overruns end the process. (The target has no
  # runtime that could report undefined behaviour, so the program traps.)
  add_compile_options(-O1 -fsanitize=undefined -fsanitize-undefined-trap-on-error -fstack-protector-strong)
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
  link_instrument(StackProtector.cpp)

elseif(ZOTDAM_INSTRUMENTATION STREQUAL "coverage")
  # The executed lines and branches of src/ are counted.
  target_compile_options(zotdam_compiler INTERFACE
    "$<$<STREQUAL:$<TARGET_PROPERTY:SOURCE_DIR>,${PROJECT_SOURCE_DIR}/src>:--coverage;-fprofile-abs-path>")
  target_link_options(zotdam_compiler INTERFACE --coverage)
endif()
