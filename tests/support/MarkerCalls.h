// How the DLL looks for busy markers, makes and closes them.
#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "support/ImportPatch.h"

namespace ZOTDam::Test {

using Names = std::vector<std::wstring>;

inline HANDLE AnyMutex(DWORD error) {
    const HANDLE mutex = CreateMutexW(nullptr, FALSE, nullptr);
    SetLastError(error);
    return mutex;
}

// Records how the DLL looks for markers, makes and closes them. A test can answer the first two calls in the
// system's place.
class MarkerCalls {
public:
    explicit MarkerCalls(HMODULE dll)
        : open{dll, "OpenMutexW", &Open},
          create{dll, "CreateMutexW", &Create},
          close{dll, "CloseHandle", &Close} {
        current = this;
    }

    Names looked;               // for these names it has looked,
    Names made;                 // these it has tried to make,
    std::set<HANDLE> unclosed;  // and these handles it still has.

    std::function<std::optional<HANDLE>()> onOpen = [] { return std::nullopt; };
    std::function<std::optional<HANDLE>()> onCreate = [] { return std::nullopt; };
    std::function<void()> beforeClose = [] {};

    // Lets the DLL find a marker when it looks for the n-th time, and only then.
    void BeBusyAtLook(std::size_t number) {
        onOpen = [this, number]() -> std::optional<HANDLE> {
            if (looked.size() == number)
                return AnyMutex(ERROR_SUCCESS);
            return std::nullopt;
        };
    }

private:
    static HANDLE WINAPI Open(DWORD access, BOOL inherit, const wchar_t* name) {
        EXPECT_EQ(access, 0x00100001u);
        EXPECT_FALSE(inherit);
        current->looked.emplace_back(name);
        const std::optional<HANDLE> answer = current->onOpen();
        return Keep(answer ? *answer : OpenMutexW(access, inherit, name));
    }

    static HANDLE WINAPI Create(SECURITY_ATTRIBUTES* attributes, BOOL owned, const wchar_t* name) {
        EXPECT_EQ(attributes, nullptr);
        EXPECT_TRUE(owned);
        current->made.emplace_back(name);
        const std::optional<HANDLE> answer = current->onCreate();
        return Keep(answer ? *answer : CreateMutexW(attributes, owned, name));
    }

    static BOOL WINAPI Close(HANDLE handle) {
        if (current->unclosed.erase(handle) != 0)
            current->beforeClose();
        return CloseHandle(handle);
    }

    // The error code goes on to the caller as it is.
    static HANDLE Keep(HANDLE handle) {
        const DWORD error = GetLastError();
        if (handle != nullptr)
            current->unclosed.insert(handle);
        SetLastError(error);
        return handle;
    }

    inline static MarkerCalls* current = nullptr;
    ImportPatch open;
    ImportPatch create;
    ImportPatch close;
};

}  // namespace ZOTDam::Test
