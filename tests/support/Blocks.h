// The blocks that the DLL has from the C runtime's heap, counted until the DLL is freed.
#pragma once

#include <windows.h>

#include <cstdlib>
#include <set>

#include "support/ImportPatch.h"

namespace ZOTDam::Test {

class Blocks {
public:
    static void Watch(HMODULE dll) {
        live.clear();
        freedFromBefore = 0;
        PatchForGood(
            dll, "malloc", +[](std::size_t size) { return Know(std::malloc(size)); });
        PatchForGood(
            dll, "calloc", +[](std::size_t n, std::size_t size) { return Know(std::calloc(n, size)); });
        PatchForGood(
            dll, "realloc", +[](void* block, std::size_t size) {
                live.erase(block);
                return Know(std::realloc(block, size));
            });
        PatchForGood(
            dll, "free", +[](void* block) {
                if (block != nullptr && live.erase(block) == 0)
                    ++freedFromBefore;
                std::free(block);
            });
    }

    // Of those that it took while it was watched.
    static std::size_t Live() { return live.size(); }

    // The freed ones that it took before, when it was loaded.
    static int FreedFromBefore() { return freedFromBefore; }

private:
    static void* Know(void* block) {
        live.insert(block);
        return block;
    }

    inline static std::set<void*> live;
    inline static int freedFromBefore = 0;
};

}  // namespace ZOTDam::Test
