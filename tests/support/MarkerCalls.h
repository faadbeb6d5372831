// Intercepts the calls that open, create and close busy markers.
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

inline HANDLE UnnamedMutex(DWORD error) {
    const HANDLE mutex = CreateMutexW(nullptr, FALSE, nullptr);
    SetLastError(error);
    return mutex;
}

// Records how the DLL opens, creates and closes markers. A test can supply the results of opening and
// creating them.
class MarkerCalls {
public:
    explicit MarkerCalls(HMODULE dll)
        : open{dll, "OpenMutexW", &Open},
          create{dll, "CreateMutexW", &Create},
          close{dll, "CloseHandle", &Close} {
        current = this;
    }

    Names opened;                  // the names that the DLL tried to open
    Names created;                 // the names that it tried to create
    std::set<HANDLE> openHandles;  // the handles that it has not closed

    std::function<std::optional<HANDLE>()> onOpen = [] { return std::nullopt; };
    std::function<std::optional<HANDLE>()> onCreate = [] { return std::nullopt; };
    std::function<void()> beforeClose = [] {};

    // Makes the n-th attempt to open a marker succeed, and only this one.
    void BeBusyAtOpen(std::size_t number) {
        onOpen = [this, number]() -> std::optional<HANDLE> {
            if (opened.size() == number)
                return UnnamedMutex(ERROR_SUCCESS);
            return std::nullopt;
        };
    }

private:
    static HANDLE WINAPI Open(DWORD access, BOOL inherit, const wchar_t* name) {
        EXPECT_EQ(access, 0x00100001u);
        EXPECT_FALSE(inherit);
        current->opened.emplace_back(name);
        const std::optional<HANDLE> answer = current->onOpen();
        return Keep(answer ? *answer : OpenMutexW(access, inherit, name));
    }

    static HANDLE WINAPI Create(SECURITY_ATTRIBUTES* attributes, BOOL owned, const wchar_t* name) {
        EXPECT_EQ(attributes, nullptr);
        EXPECT_TRUE(owned);
        current->created.emplace_back(name);
        const std::optional<HANDLE> answer = current->onCreate();
        return Keep(answer ? *answer : CreateMutexW(attributes, owned, name));
    }

    static BOOL WINAPI Close(HANDLE handle) {
        if (current->openHandles.erase(handle) != 0)
            current->beforeClose();
        return CloseHandle(handle);
    }

    // Preserves the last error code for the caller.
    static HANDLE Keep(HANDLE handle) {
        const DWORD error = GetLastError();
        if (handle != nullptr)
            current->openHandles.insert(handle);
        SetLastError(error);
        return handle;
    }

    inline static MarkerCalls* current = nullptr;
    ImportPatch open;
    ImportPatch create;
    ImportPatch close;
};

}  // namespace ZOTDam::Test
