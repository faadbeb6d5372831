// Counts the resources of this process that a library can leak.
#pragma once

#include <windows.h>

#include <psapi.h>

#include <vector>

namespace ZOTDam::Test {

// Counts the open handles by testing the first thousand possible handle values, because not every system can
// count handles. A new handle has the lowest free value, so a leak fills these values.
inline int OpenHandles() {
    int count = 0;
    for (UINT_PTR value = 4; value < 0x1000; value += 4) {
        DWORD flags = 0;
        count += GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags);
    }
    return count;
}

inline int FreeThreadSlots() {
    std::vector<DWORD> slots;
    for (DWORD slot = TlsAlloc(); slot != TLS_OUT_OF_INDEXES; slot = TlsAlloc())
        slots.push_back(slot);
    for (const DWORD slot : slots)
        TlsFree(slot);
    return static_cast<int>(slots.size());
}

inline int LoadedModules() {
    DWORD size = 0;
    HMODULE none = nullptr;
    EnumProcessModules(GetCurrentProcess(), &none, 0, &size);
    return static_cast<int>(size / sizeof(HMODULE));
}

// Returns the size of the private memory that is committed by this process, whether it is used or not.
inline int CommittedKilobytes() {
    std::size_t bytes = 0;
    MEMORY_BASIC_INFORMATION region = {};
    for (const BYTE* page = nullptr; VirtualQuery(page, &region, sizeof region) != 0;
         page = static_cast<const BYTE*>(region.BaseAddress) + region.RegionSize)
        bytes += region.State == MEM_COMMIT && region.Type == MEM_PRIVATE ? region.RegionSize : 0;
    return static_cast<int>(bytes / 1024);
}

struct ProcessResources {
    int openHandles = OpenHandles();
    int freeThreadSlots = FreeThreadSlots();
    int loadedModules = LoadedModules();
    int committedKilobytes = CommittedKilobytes();
};

}  // namespace ZOTDam::Test
