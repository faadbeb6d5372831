// Replaces an entry of a function table with a function of the test, for a scope.
#pragma once

#include <windows.h>

namespace ZOTDam::Test {

class SlotPatch {
public:
    template <class Function>
    SlotPatch(void** patchedSlot, Function* replacement) : slot{patchedSlot}, original{*slot} {
        Set(reinterpret_cast<void*>(replacement));
    }
    SlotPatch(const SlotPatch&) = delete;
    SlotPatch& operator=(const SlotPatch&) = delete;
    ~SlotPatch() { Set(original); }

    template <class Function>
    Function* Original() const noexcept {
        return reinterpret_cast<Function*>(original);
    }

private:
    void Set(void* function) noexcept {
        DWORD protection = 0;
        VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
        *slot = function;
        VirtualProtect(slot, sizeof *slot, protection, &protection);
    }

    void** slot;
    void* original;
};

}  // namespace ZOTDam::Test
