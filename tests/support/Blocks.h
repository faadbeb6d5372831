// Counts the memory blocks that the DLL allocates from the C runtime's heap, until the DLL is freed.
#pragma once

#include <windows.h>

#include <cstdlib>
#include <set>

#include "support/ImportPatch.h"

namespace ZOTDam::Test {

class Blocks {
public:
    static void Watch(HMODULE dll) {
        Forget();
        PatchForGood(dll, "malloc", &Malloc);
        PatchForGoodIfImported(dll, "calloc", &Calloc);
        PatchForGoodIfImported(dll, "realloc", &Realloc);
        PatchForGood(dll, "free", &Free);
    }

    static void Forget() {
        live.clear();
        freedFromBefore = 0;
    }

    // The number of blocks that were allocated since Watch and are not freed.
    static std::size_t Live() { return live.size(); }

    // The number of freed blocks that were allocated before Watch, while the DLL was being loaded.
    static int FreedFromBefore() { return freedFromBefore; }

    // Replacements for the functions of the runtime. A test may install its own functions that call these.
    static void* Malloc(std::size_t size) { return Know(std::malloc(size)); }
    static void* Calloc(std::size_t count, std::size_t size) { return Know(std::calloc(count, size)); }
    static void* Realloc(void* block, std::size_t size) {
        void* const moved = std::realloc(block, size);
        if (moved != nullptr)
            live.erase(block);
        return Know(moved);
    }
    static void Free(void* block) {
        if (block != nullptr && live.erase(block) == 0)
            ++freedFromBefore;
        std::free(block);
    }

private:
    static void* Know(void* block) {
        if (block != nullptr)
            live.insert(block);
        return block;
    }

    inline static std::set<void*> live;
    inline static int freedFromBefore = 0;
};

}  // namespace ZOTDam::Test
