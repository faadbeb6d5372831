// Replaces an entry of a function table with a function of the test, for a scope.
#pragma once

#include <windows.h>

namespace ZOTDam::Test {

class SlotPatch {
public:
    template <class Function>
    SlotPatch(void** patchedSlot, Function replacement) : slot{patchedSlot}, original{*slot} {
        Set(AddressOf(replacement));
    }
    SlotPatch(const SlotPatch&) = delete;
    SlotPatch& operator=(const SlotPatch&) = delete;
    ~SlotPatch() { Set(original); }

    template <class Function>
    Function* Original() const noexcept {
        return reinterpret_cast<Function*>(original);
    }

private:
    template <class Result, class... Arguments>
    static void* AddressOf(Result(WINAPI* function)(Arguments...)) {
        return reinterpret_cast<void*>(function);
    }

    // A lambda converts to a function with the calling convention of the system. With MSVC, it converts to
    // functions with other conventions too, so the type is explicit.
    template <class Lambda>
    static void* AddressOf(const Lambda& lambda) {
        return AddressOf(Converted(lambda, &Lambda::operator()));
    }

    template <class Lambda, class Result, class... Arguments>
    static auto Converted(const Lambda& lambda, Result (Lambda::*)(Arguments...) const) {
        return static_cast<Result(WINAPI*)(Arguments...)>(lambda);
    }

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
