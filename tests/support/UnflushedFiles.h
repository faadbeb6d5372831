// For tests that save very often and do not ask whether a file survives the end of the power.
#pragma once

#include <windows.h>

#include "support/ImportPatch.h"

namespace ZOTDam::Test {

// In the place of FlushFileBuffers. The disk would take most of the time of such a test.
inline BOOL WINAPI DoNotFlush(HANDLE) {
    return TRUE;
}

inline void LeaveFilesUnflushed(HMODULE dll) {
    PatchForGood(dll, "FlushFileBuffers", &DoNotFlush);
}

}  // namespace ZOTDam::Test
