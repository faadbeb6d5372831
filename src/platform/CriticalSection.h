#pragma once

#include <windows.h>

#include "platform/ModuleUnload.h"

namespace ZOTDam {

// A critical section of Windows that std::lock_guard can lock. It is not deleted at process shutdown.
class CCriticalSection {
public:
    CCriticalSection() noexcept { InitializeCriticalSection(&section); }
    CCriticalSection(const CCriticalSection&) = delete;
    CCriticalSection& operator=(const CCriticalSection&) = delete;
    ~CCriticalSection() {
        if (!isProcessShuttingDown)
            DeleteCriticalSection(&section);
    }

    // Named as std::lock_guard requires.
    void lock() noexcept { EnterCriticalSection(&section); }
    void unlock() noexcept { LeaveCriticalSection(&section); }

private:
    CRITICAL_SECTION section;
};

}  // namespace ZOTDam
