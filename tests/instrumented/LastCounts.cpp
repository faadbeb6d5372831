// Lets the build "coverage" count what a module does at its very end. The compiler's runtime writes the
// counters before the static objects are destroyed; here they are written once more behind that.
#include <cstdlib>

extern "C" {
#include <gcov.h>
}

// Around all else, the runtime included.
#pragma GCC diagnostic ignored "-Wprio-ctor-dtor"

namespace {

// What is arranged first of all happens last of all.
[[gnu::constructor(99)]] void WriteAtTheEnd() {
    std::atexit(&__gcov_dump);
}

// Right behind the first writing, so that nothing is counted twice.
[[gnu::destructor(99)]] void CountAnew() {
    __gcov_reset();
}

}  // namespace
