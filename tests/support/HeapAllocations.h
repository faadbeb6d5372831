// Counts the allocations of the DLL from the C runtime's heap, until the DLL is freed.
#pragma once

#include <windows.h>

#include <cstdlib>
#include <set>

#include "support/ImportPatch.h"

namespace ZOTDam::Test {

class HeapAllocations {
public:
    static void Track(HMODULE dll) {
        Reset();
        PatchPermanently(dll, "malloc", &Malloc);
        PatchPermanentlyIfImported(dll, "calloc", &Calloc);
        PatchPermanentlyIfImported(dll, "realloc", &Realloc);
        PatchPermanently(dll, "free", &Free);
    }

    static void Reset() {
        live.clear();
        freedUntracked = 0;
    }

    // The number of allocations since Track that are not freed.
    static std::size_t Count() { return live.size(); }

    // The number of freed allocations that were made before Track, while the DLL was being loaded.
    static int FreedUntracked() { return freedUntracked; }

    // Replacements for the functions of the runtime. A test may install its own functions that call these.
    static void* Malloc(std::size_t size) { return Add(std::malloc(size)); }
    static void* Calloc(std::size_t count, std::size_t size) { return Add(std::calloc(count, size)); }
    static void* Realloc(void* block, std::size_t size) {
        void* const moved = std::realloc(block, size);
        if (moved != nullptr)
            live.erase(block);
        return Add(moved);
    }
    static void Free(void* block) {
        if (block != nullptr && live.erase(block) == 0)
            ++freedUntracked;
        std::free(block);
    }

private:
    static void* Add(void* block) {
        if (block != nullptr)
            live.insert(block);
        return block;
    }

    inline static std::set<void*> live;
    inline static int freedUntracked = 0;
};

}  // namespace ZOTDam::Test
