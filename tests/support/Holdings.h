// What the process holds, to the last block.
#pragma once

#include <windows.h>

#include <array>
#include <cstddef>
#include <ostream>

#include "support/ProcessResources.h"

namespace ZOTDam::Test {

// The blocks in use of all heaps of the process: those of the C runtimes, of COM's texts and of the DOM.
inline std::size_t HeapBlocks() {
    std::array<HANDLE, 64> heaps = {};
    const DWORD count = GetProcessHeaps(heaps.size(), heaps.data());
    std::size_t blocks = 0;
    for (DWORD i = 0; i < count; ++i) {
        HeapLock(heaps[i]);
        PROCESS_HEAP_ENTRY entry = {};
        while (HeapWalk(heaps[i], &entry) != FALSE)
            blocks += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0;
        HeapUnlock(heaps[i]);
    }
    return blocks;
}

struct Holdings {
    std::size_t heapBlocks = HeapBlocks();
    int openHandles = OpenHandles();

    bool operator==(const Holdings&) const = default;
};

inline void PrintTo(const Holdings& holdings, std::ostream* out) {
    *out << holdings.heapBlocks << " blocks, " << holdings.openHandles << " handles";
}

// Frees texts at once, where COM would keep some of them for later use.
inline void DoNotCacheTexts() {
    const auto setNoCache = reinterpret_cast<void(WINAPI*)()>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"oleaut32.dll"), "SetOaNoCache")));
    setNoCache();
}

}  // namespace ZOTDam::Test
