// Replacements for parts of the g++ runtime of mingw-w64 on x86-64: this small library must survive
// allocation failures and leave no memory allocated at module unload. They depend on the internals of the
// runtime and are tested with those of g++ 12 and 14; clang 14 links that of g++ 12. Other runtimes are used
// unchanged.
#include <cstdlib>

#if defined(__MINGW64_VERSION_MAJOR) && defined(__GLIBCXX__) && defined(__x86_64__)

#include <cxxabi.h>

#ifdef _UCRT
#include <pthread.h>
#include <windows.h>
#endif

#include "platform/ModuleUnload.h"

// NOLINTBEGIN(bugprone-reserved-identifier): the names of the runtime

// The runtime's handler for unhandled exceptions would add a demangler and a printf, a quarter of the DLL,
// only to print a message that is never displayed.
namespace __gnu_cxx {

void __verbose_terminate_handler() {
    std::abort();
}

}  // namespace __gnu_cxx

// The runtime keeps a memory reserve for exceptions and does not free it at module unload. Constructed first,
// this object is destroyed last.
namespace __gnu_cxx {

void __freeres();

}  // namespace __gnu_cxx

namespace ZOTDam {

namespace {

struct CExceptionReserve {
    ~CExceptionReserve() {
        if (!isProcessShuttingDown)
            __gnu_cxx::__freeres();
    }
};

__attribute__((init_priority(101))) CExceptionReserve exceptionReserve;

}  // namespace

}  // namespace ZOTDam

// The runtime allocates a thread's exception state on the thread's first throw and terminates the process
// when the allocation fails. That is most likely when std::bad_alloc is thrown. Here the loader allocates the
// state as part of the thread-local storage.
namespace __cxxabiv1 {

struct __cxa_eh_globals {
    void* caughtExceptions;
    unsigned int uncaughtExceptions;
};

}  // namespace __cxxabiv1

extern "C" {

extern unsigned int _tls_index;
extern char _tls_start;

// An object in the template of the thread-local storage. Each thread's copy has the same offset in the
// storage of that thread.
__attribute__((section(".tls$"))) abi::__cxa_eh_globals exceptionState = {};

abi::__cxa_eh_globals* __cxa_get_globals() noexcept {
    char** storages = nullptr;  // the thread-local storage of the current thread, one block per module
    asm("movq %%gs:0x58, %0" : "=r"(storages));
    const auto place = reinterpret_cast<char*>(&exceptionState) - &_tls_start;
    return reinterpret_cast<abi::__cxa_eh_globals*>(storages[_tls_index] + place);
}

abi::__cxa_eh_globals* __cxa_get_globals_fast() noexcept {
    return __cxa_get_globals();
}

}  // extern "C"

// NOLINTEND(bugprone-reserved-identifier)

// The compiler for the UCRT has only the posix thread model. A mutex of this model allocates memory when it
// is first locked, and the process terminates when the allocation fails. These functions use the mutex as a
// lock of the system, which has the same size. The linker reports an error if the runtime needs others.
#ifdef _UCRT

static_assert(sizeof(pthread_mutex_t) == sizeof(SRWLOCK));

extern "C" {

int pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* /*attributes*/) {
    InitializeSRWLock(reinterpret_cast<SRWLOCK*>(mutex));
    return 0;
}

int pthread_mutex_lock(pthread_mutex_t* mutex) {
    AcquireSRWLockExclusive(reinterpret_cast<SRWLOCK*>(mutex));
    return 0;
}

int pthread_mutex_unlock(pthread_mutex_t* mutex) {
    ReleaseSRWLockExclusive(reinterpret_cast<SRWLOCK*>(mutex));
    return 0;
}

int pthread_mutex_destroy(pthread_mutex_t* /*mutex*/) {
    return 0;
}

}  // extern "C"

#endif

#endif
