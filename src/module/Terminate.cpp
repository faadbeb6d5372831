// With the runtime of g++ linked in, its handler for unhandled exceptions would bring a demangler and a
// printf of its own: a quarter of the whole DLL, to print a message that nobody sees.
#ifdef __GNUC__

#include <cstdlib>

namespace __gnu_cxx {  // NOLINT(bugprone-reserved-identifier): the runtime's name, which this definition
                       // replaces

void __verbose_terminate_handler() {  // NOLINT(bugprone-reserved-identifier)
    std::abort();
}

}  // namespace __gnu_cxx

#endif
