// Fault injection for the system functions that a save calls: a call can end the process or fail.
#pragma once

#include <windows.h>

#include <array>
#include <cstdlib>
#include <type_traits>

#include "support/ImportPatch.h"

namespace ZOTDam::Test {

enum class Fate { Passes, DiesBefore, DiesAfter, Refuses };

inline constexpr UINT DiedAsPlanned = 77;

// The error code of a failing function.
inline DWORD refusalReason = ERROR_DISK_FULL;

[[noreturn]] inline void Die() {
    TerminateProcess(GetCurrentProcess(), DiedAsPlanned);
    std::abort();
}

// A replacement for one system function, and the fault to inject into its calls.
template <auto& Function, class Signature>
struct FatefulCall;

template <auto& Function, class Result, class... Arguments>
struct FatefulCall<Function, Result WINAPI(Arguments...)> {
    static inline Fate fate = Fate::Passes;
    static inline Result refusal{};

    static Result WINAPI Call(Arguments... arguments) {
        if (fate == Fate::Passes)
            return Function(arguments...);
        if (fate == Fate::DiesBefore)
            Die();
        if (fate == Fate::Refuses) {
            SetLastError(refusalReason);
            return refusal;
        }
        Function(arguments...);
        Die();
    }
};

template <auto& Function>
using Fateful = FatefulCall<Function, std::remove_reference_t<decltype(Function)>>;

using OpeningFile = Fateful<CreateFileW>;
using FlushingFile = Fateful<FlushFileBuffers>;
using MovingFile = Fateful<MoveFileExW>;
using CopyingFile = Fateful<CopyFileW>;
using DeletingFile = Fateful<DeleteFileW>;

// A save opens files for writing. Opening a file only for reading is not affected.
inline HANDLE WINAPI CreateFatefully(LPCWSTR name, DWORD access, DWORD sharing,
                                     LPSECURITY_ATTRIBUTES security, DWORD disposition, DWORD attributes,
                                     HANDLE model) {
    const auto open = (access & GENERIC_WRITE) != 0 ? &OpeningFile::Call : &CreateFileW;
    return open(name, access, sharing, security, disposition, attributes, model);
}

// Redirects the calls of the loaded DLL to the replacements.
struct FatefulPlatform {
    explicit FatefulPlatform(HMODULE dll)
        : patches{ImportPatch{dll, "CreateFileW", &CreateFatefully},
                  ImportPatch{dll, "FlushFileBuffers", FlushingFile::Call},
                  ImportPatch{dll, "MoveFileExW", MovingFile::Call},
                  ImportPatch{dll, "CopyFileW", CopyingFile::Call},
                  ImportPatch{dll, "DeleteFileW", DeletingFile::Call}} {
        OpeningFile::refusal = INVALID_HANDLE_VALUE;
    }
    FatefulPlatform(const FatefulPlatform&) = delete;
    FatefulPlatform& operator=(const FatefulPlatform&) = delete;
    ~FatefulPlatform() {
        for (Fate* const fate : Fates())
            *fate = Fate::Passes;
        refusalReason = ERROR_DISK_FULL;
    }

    // In the order of the fates in a SavePlan.
    static std::array<Fate*, 5> Fates() {
        return {&OpeningFile::fate, &FlushingFile::fate, &MovingFile::fate, &CopyingFile::fate,
                &DeletingFile::fate};
    }

    std::array<ImportPatch, 5> patches;
};

}  // namespace ZOTDam::Test
