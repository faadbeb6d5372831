#pragma once

#include <windows.h>

#include "platform/AtUnload.h"

namespace ZOTDam {

class CCriticalSection {
public:
    CCriticalSection() noexcept { InitializeCriticalSection(&section); }
    CCriticalSection(const CCriticalSection&) = delete;
    CCriticalSection& operator=(const CCriticalSection&) = delete;
    ~CCriticalSection() {
        if (!processIsEnding)
            DeleteCriticalSection(&section);
    }

    // The names that std::lock_guard asks for.
    void lock() noexcept { EnterCriticalSection(&section); }
    void unlock() noexcept { LeaveCriticalSection(&section); }

private:
    CRITICAL_SECTION section;
};

}  // namespace ZOTDam
