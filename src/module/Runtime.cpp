// Parts of the C++ runtime that g++ links in, made anew for a small library that must survive when memory
// runs out and leave nothing behind when it is unloaded. Other compilers' runtimes are the system's.
#ifdef __GNUC__

#include <cxxabi.h>
#include <cstdlib>

#include "platform/AtUnload.h"

// NOLINTBEGIN(bugprone-reserved-identifier): the names of the runtime

// The runtime's handler for unhandled exceptions would bring a demangler and a printf of its own, a quarter
// of the DLL, to print a message that nobody sees.
namespace __gnu_cxx {

void __verbose_terminate_handler() {
    std::abort();
}

}  // namespace __gnu_cxx

// The runtime holds memory in reserve for exceptions, and forgets it when a library is unloaded. Made first,
// this object goes last.
namespace __gnu_cxx {

void __freeres();

}  // namespace __gnu_cxx

namespace ZOTDam {

namespace {

struct CExceptionReserve {
    ~CExceptionReserve() {
        if (!processIsEnding)
            __gnu_cxx::__freeres();
    }
};

__attribute__((init_priority(101))) CExceptionReserve exceptionReserve;

}  // namespace

}  // namespace ZOTDam

// The runtime allocates a thread's exception state when the thread first throws, and ends the process when it
// cannot, which is just when std::bad_alloc is thrown. Here the loader provides it, with the thread's other
// storage.
namespace __cxxabiv1 {

struct __cxa_eh_globals {
    void* caughtExceptions;
    unsigned int uncaughtExceptions;
};

}  // namespace __cxxabiv1

extern "C" {

extern unsigned int _tls_index;
extern char _tls_start;

// Where this stands in the template of the thread's storage, its copies stand in the storage.
__attribute__((section(".tls$"))) abi::__cxa_eh_globals exceptionState = {};

abi::__cxa_eh_globals* __cxa_get_globals() noexcept {
    char** storages = nullptr;  // of the running thread, one of each module
    asm("movq %%gs:0x58, %0" : "=r"(storages));
    const auto place = reinterpret_cast<char*>(&exceptionState) - &_tls_start;
    return reinterpret_cast<abi::__cxa_eh_globals*>(storages[_tls_index] + place);
}

abi::__cxa_eh_globals* __cxa_get_globals_fast() noexcept {
    return __cxa_get_globals();
}

}  // extern "C"

// NOLINTEND(bugprone-reserved-identifier)

#endif
