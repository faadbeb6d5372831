// Support for tests that save very often and do not check whether a file survives a power failure.
#pragma once

#include <windows.h>

#include "support/ImportPatch.h"

namespace ZOTDam::Test {

// The replacement for FlushFileBuffers. Otherwise such a test would spend most of its time waiting for the
// disk.
inline BOOL WINAPI DoNotFlush(HANDLE) {
    return TRUE;
}

inline void LeaveFilesUnflushed(HMODULE dll) {
    PatchPermanently(dll, "FlushFileBuffers", &DoNotFlush);
}

}  // namespace ZOTDam::Test
