// Lets a process behave as if it ran in a logon session of its own, as a service does. It does not see the
// busy markers of other processes.
#pragma once

#include <windows.h>

#include <string>

#include "support/ImportPatch.h"

namespace ZOTDam::Test {

inline std::wstring InThisSession(const wchar_t* name) {
    return name + (L"-session-" + std::to_wstring(GetCurrentProcessId()));
}

// Lasts until the DLL is unloaded.
inline void EnterOwnSession(HMODULE dll) {
    PatchPermanently(dll, "OpenMutexW", [](DWORD access, BOOL inherit, LPCWSTR name) -> HANDLE {
        return OpenMutexW(access, inherit, InThisSession(name).c_str());
    });
    PatchPermanently(dll, "CreateMutexW",
                     [](LPSECURITY_ATTRIBUTES security, BOOL owned, LPCWSTR name) -> HANDLE {
                         return CreateMutexW(security, owned, InThisSession(name).c_str());
                     });
}

}  // namespace ZOTDam::Test
