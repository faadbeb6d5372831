# Builds that find what the ordinary one forgives or does not tell. Each has a preset of its name.
set(ZOTDAM_INSTRUMENTATION "" CACHE STRING "guarded, sanitized, coverage, or empty for the ordinary build")

# For every program and the DLL.
function(link_instrument source)
  target_sources(zotdam_compiler INTERFACE
    $<$<NOT:$<STREQUAL:$<TARGET_PROPERTY:TYPE>,STATIC_LIBRARY>>:${PROJECT_SOURCE_DIR}/tests/instrumented/${source}>)
endfunction()

if(ZOTDAM_INSTRUMENTATION STREQUAL "guarded")
  # Each block of memory lies against a page without access.
  link_instrument(GuardedHeap.cpp)

elseif(ZOTDAM_INSTRUMENTATION STREQUAL "sanitized")
  # Undefined behaviour, wrong use of the standard library and overrun stack frames end the process. (The target has
  # no runtime that could report undefined behaviour: it traps.)
  add_compile_options(-O1 -fsanitize=undefined -fsanitize-undefined-trap-on-error -fstack-protector-strong)
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
  link_instrument(StackProtector.cpp)

elseif(ZOTDAM_INSTRUMENTATION STREQUAL "coverage")
  # The lines and branches of src/ are counted.
  target_compile_options(zotdam_compiler INTERFACE
    "$<$<STREQUAL:$<TARGET_PROPERTY:SOURCE_DIR>,${PROJECT_SOURCE_DIR}/src>:--coverage;-fprofile-abs-path>")
  target_link_options(zotdam_compiler INTERFACE --coverage)
endif()
