// Fault injection for the system functions that a save calls: a call can end the process or fail.
#pragma once

#include <windows.h>

#include <array>
#include <cstdlib>
#include <type_traits>

#include "support/ImportPatch.h"

namespace ZOTDam::Test {

enum class InjectedFault { None, ExitBefore, ExitAfter, Fail };

inline constexpr UINT InjectedExitCode = 77;

// The error code of a failing function.
inline DWORD injectedError = ERROR_DISK_FULL;

[[noreturn]] inline void ExitAtOnce() {
    TerminateProcess(GetCurrentProcess(), InjectedExitCode);
    std::abort();
}

// A replacement for one system function, and the fault to inject into its calls.
template <auto& Function, class Signature>
struct HookedCall;

template <auto& Function, class Result, class... Arguments>
struct HookedCall<Function, Result WINAPI(Arguments...)> {
    static inline InjectedFault fault = InjectedFault::None;
    static inline Result failureResult{};

    static Result WINAPI Call(Arguments... arguments) {
        if (fault == InjectedFault::None)
            return Function(arguments...);
        if (fault == InjectedFault::ExitBefore)
            ExitAtOnce();
        if (fault == InjectedFault::Fail) {
            SetLastError(injectedError);
            return failureResult;
        }
        Function(arguments...);
        ExitAtOnce();
    }
};

template <auto& Function>
using Hook = HookedCall<Function, std::remove_reference_t<decltype(Function)>>;

using CreateFileHook = Hook<CreateFileW>;
using FlushFileHook = Hook<FlushFileBuffers>;
using MoveFileHook = Hook<MoveFileExW>;
using CopyFileHook = Hook<CopyFileW>;
using DeleteFileHook = Hook<DeleteFileW>;

// A save opens files for writing. Opening a file only for reading is not affected.
inline HANDLE WINAPI HookedCreateFile(LPCWSTR name, DWORD access, DWORD sharing,
                                      LPSECURITY_ATTRIBUTES security, DWORD disposition, DWORD attributes,
                                      HANDLE model) {
    const auto open = (access & GENERIC_WRITE) != 0 ? &CreateFileHook::Call : &CreateFileW;
    return open(name, access, sharing, security, disposition, attributes, model);
}

// Redirects the calls of the loaded DLL to the replacements.
struct FaultInjection {
    explicit FaultInjection(HMODULE dll)
        : patches{ImportPatch{dll, "CreateFileW", &HookedCreateFile},
                  ImportPatch{dll, "FlushFileBuffers", FlushFileHook::Call},
                  ImportPatch{dll, "MoveFileExW", MoveFileHook::Call},
                  ImportPatch{dll, "CopyFileW", CopyFileHook::Call},
                  ImportPatch{dll, "DeleteFileW", DeleteFileHook::Call}} {
        CreateFileHook::failureResult = INVALID_HANDLE_VALUE;
    }
    FaultInjection(const FaultInjection&) = delete;
    FaultInjection& operator=(const FaultInjection&) = delete;
    ~FaultInjection() {
        for (InjectedFault* const fault : Faults())
            *fault = InjectedFault::None;
        injectedError = ERROR_DISK_FULL;
    }

    // In the order of the faults in a SavePlan.
    static std::array<InjectedFault*, 5> Faults() {
        return {&CreateFileHook::fault, &FlushFileHook::fault, &MoveFileHook::fault, &CopyFileHook::fault,
                &DeleteFileHook::fault};
    }

    std::array<ImportPatch, 5> patches;
};

}  // namespace ZOTDam::Test
