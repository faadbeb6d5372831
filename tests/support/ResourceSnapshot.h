// The number of resources of each kind that the library holds at one time. The numbers come from its own
// calls: the functions that it imports, the references to DOM objects, and COM's allocator. They are
// therefore exact and do not depend on how the system's heap manages its blocks.
#pragma once

#include <windows.h>

#include <rpc.h>

#include <array>
#include <ostream>
#include <type_traits>

#include "support/AtLoad.h"
#include "support/Blocks.h"
#include "support/ComBlocks.h"
#include "support/DomCalls.h"
#include "support/ErrorInfos.h"

namespace ZOTDam::Test {

// ---- Resources that the DLL acquires and releases through pairs of imported functions ----

enum Taken { GuidTexts, Handles, Locks, CriticalSections, ThreadSlots, Libraries, TakenCount };

using TakenCounts = std::array<int, TakenCount>;

inline TakenCounts takenThroughImports;

// Returns whether a call has acquired or released its resource.
inline bool IsSuccess(const void* handle) noexcept {
    return handle != nullptr && handle != INVALID_HANDLE_VALUE;
}

inline bool IsSuccess(BOOL result) noexcept {
    return result != FALSE;
}

inline bool IsSuccess(DWORD slot) noexcept {
    return slot != TLS_OUT_OF_INDEXES;
}

inline bool IsSuccess(RPC_STATUS status) noexcept {
    return status == RPC_S_OK;
}

// The replacement for an imported function. It counts each successful call.
template <auto Original, Taken What, int Step>
struct Counted;

template <class Result, class... Arguments, Result(WINAPI* Original)(Arguments...), Taken What, int Step>
struct Counted<Original, What, Step> {
    static Result WINAPI Call(Arguments... arguments) {
        if constexpr (std::is_void_v<Result>) {
            takenThroughImports[What] += Step;
            Original(arguments...);
        } else {
            const Result result = Original(arguments...);
            if (IsSuccess(result))
                takenThroughImports[What] += Step;
            return result;
        }
    }
};

template <auto Take, Taken What>
void CountTaking(HMODULE dll, const char* name) {
    PatchForGoodIfImported(dll, name, &Counted<Take, What, 1>::Call);
}

template <auto GiveBack, Taken What>
void CountGivingBack(HMODULE dll, const char* name) {
    PatchForGoodIfImported(dll, name, &Counted<GiveBack, What, -1>::Call);
}

// Starts counting the resources of a DLL. Must be called when the DLL is loaded, before it initialises
// itself.
inline void CountResources(HMODULE dll) {
    Blocks::Watch(dll);
    ErrorInfos::Forget();
    PatchForGood(dll, "GetErrorInfo", &ErrorInfos::Get);

    takenThroughImports = {};
    CountTaking<&UuidToStringW, GuidTexts>(dll, "UuidToStringW");
    CountGivingBack<&RpcStringFreeW, GuidTexts>(dll, "RpcStringFreeW");
    CountTaking<&CreateMutexW, Handles>(dll, "CreateMutexW");
    CountTaking<&OpenMutexW, Handles>(dll, "OpenMutexW");
    CountTaking<&CreateFileW, Handles>(dll, "CreateFileW");
    CountTaking<&CreateSemaphoreW, Handles>(dll, "CreateSemaphoreW");
    CountGivingBack<&CloseHandle, Handles>(dll, "CloseHandle");
    CountTaking<&EnterCriticalSection, Locks>(dll, "EnterCriticalSection");
    CountTaking<&TryEnterCriticalSection, Locks>(dll, "TryEnterCriticalSection");
    CountGivingBack<&LeaveCriticalSection, Locks>(dll, "LeaveCriticalSection");
    CountTaking<&InitializeCriticalSection, CriticalSections>(dll, "InitializeCriticalSection");
    CountGivingBack<&DeleteCriticalSection, CriticalSections>(dll, "DeleteCriticalSection");
    CountTaking<&TlsAlloc, ThreadSlots>(dll, "TlsAlloc");
    CountGivingBack<&TlsFree, ThreadSlots>(dll, "TlsFree");
    CountTaking<&LoadLibraryW, Libraries>(dll, "LoadLibraryW");
    CountGivingBack<&FreeLibrary, Libraries>(dll, "FreeLibrary");
}

// ---- All kinds ----

struct ResourceSnapshot {
    std::size_t blocks = Blocks::Live();
    long long comBlocks = ComBlocks::Live();  // of the whole process
    long long domReferences = DomCalls::HeldReferences();
    long long errorInfos = ErrorInfos::Held();
    TakenCounts taken = takenThroughImports;

    bool operator==(const ResourceSnapshot&) const = default;
};

inline void PrintTo(const ResourceSnapshot& snapshot, std::ostream* out) {
    *out << snapshot.blocks << " blocks, " << snapshot.comBlocks << " blocks of COM, "
         << snapshot.domReferences << " references to the DOM, " << snapshot.errorInfos
         << " error information objects, " << snapshot.taken[GuidTexts] << " GUID texts, "
         << snapshot.taken[Handles] << " handles, " << snapshot.taken[Locks] << " locks, "
         << snapshot.taken[CriticalSections] << " critical sections, " << snapshot.taken[ThreadSlots]
         << " thread slots, " << snapshot.taken[Libraries] << " libraries";
}

}  // namespace ZOTDam::Test
