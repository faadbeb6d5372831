// The number of resources of each kind that the library holds at one time. The numbers come from its own
// calls: the functions that it imports, the references to DOM objects, and COM's allocator. They are
// therefore exact and do not depend on how the system's heap manages its memory.
#pragma once

#include <windows.h>

#include <rpc.h>

#include <array>
#include <ostream>
#include <type_traits>

#include "support/ComAllocations.h"
#include "support/DomCalls.h"
#include "support/ErrorInfos.h"
#include "support/HeapAllocations.h"
#include "support/LoadHook.h"

namespace ZOTDam::Test {

// ---- Resources that the DLL acquires and releases through pairs of imported functions ----

enum Resource { GuidTexts, Handles, Locks, CriticalSections, ThreadSlots, Libraries, ResourceCount };

using ResourceCounts = std::array<int, ResourceCount>;

inline ResourceCounts resourceCounts;

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
template <auto Original, Resource Kind, int Step>
struct Counted;

template <class Result, class... Arguments, Result(WINAPI* Original)(Arguments...), Resource Kind, int Step>
struct Counted<Original, Kind, Step> {
    static Result WINAPI Call(Arguments... arguments) {
        if constexpr (std::is_void_v<Result>) {
            resourceCounts[Kind] += Step;
            Original(arguments...);
        } else {
            const Result result = Original(arguments...);
            if (IsSuccess(result))
                resourceCounts[Kind] += Step;
            return result;
        }
    }
};

template <auto Acquire, Resource Kind>
void CountAcquired(HMODULE dll, const char* name) {
    PatchPermanentlyIfImported(dll, name, &Counted<Acquire, Kind, 1>::Call);
}

template <auto Release, Resource Kind>
void CountReleased(HMODULE dll, const char* name) {
    PatchPermanentlyIfImported(dll, name, &Counted<Release, Kind, -1>::Call);
}

// Starts counting the resources of a DLL. Must be called when the DLL is loaded, before it initialises
// itself.
inline void CountResources(HMODULE dll) {
    HeapAllocations::Track(dll);
    ErrorInfos::Reset();
    PatchPermanently(dll, "GetErrorInfo", &ErrorInfos::Get);

    resourceCounts = {};
    CountAcquired<&UuidToStringW, GuidTexts>(dll, "UuidToStringW");
    CountReleased<&RpcStringFreeW, GuidTexts>(dll, "RpcStringFreeW");
    CountAcquired<&CreateMutexW, Handles>(dll, "CreateMutexW");
    CountAcquired<&OpenMutexW, Handles>(dll, "OpenMutexW");
    CountAcquired<&CreateFileW, Handles>(dll, "CreateFileW");
    CountAcquired<&CreateSemaphoreW, Handles>(dll, "CreateSemaphoreW");
    CountReleased<&CloseHandle, Handles>(dll, "CloseHandle");
    CountAcquired<&EnterCriticalSection, Locks>(dll, "EnterCriticalSection");
    CountAcquired<&TryEnterCriticalSection, Locks>(dll, "TryEnterCriticalSection");
    CountReleased<&LeaveCriticalSection, Locks>(dll, "LeaveCriticalSection");
    CountAcquired<&InitializeCriticalSection, CriticalSections>(dll, "InitializeCriticalSection");
    CountReleased<&DeleteCriticalSection, CriticalSections>(dll, "DeleteCriticalSection");
    CountAcquired<&TlsAlloc, ThreadSlots>(dll, "TlsAlloc");
    CountReleased<&TlsFree, ThreadSlots>(dll, "TlsFree");
    CountAcquired<&LoadLibraryW, Libraries>(dll, "LoadLibraryW");
    CountReleased<&FreeLibrary, Libraries>(dll, "FreeLibrary");
}

// ---- All kinds ----

struct ResourceSnapshot {
    std::size_t heapAllocations = HeapAllocations::Count();
    long long comAllocations = ComAllocations::Count();  // of the whole process
    long long domReferences = DomCalls::HeldReferences();
    long long errorInfos = ErrorInfos::Count();
    ResourceCounts resources = resourceCounts;

    bool operator==(const ResourceSnapshot&) const = default;
};

inline void PrintTo(const ResourceSnapshot& snapshot, std::ostream* out) {
    *out << snapshot.heapAllocations << " heap allocations, " << snapshot.comAllocations
         << " COM allocations, " << snapshot.domReferences << " references to the DOM, "
         << snapshot.errorInfos << " error information objects, " << snapshot.resources[GuidTexts]
         << " GUID texts, " << snapshot.resources[Handles] << " handles, " << snapshot.resources[Locks]
         << " locks, " << snapshot.resources[CriticalSections] << " critical sections, "
         << snapshot.resources[ThreadSlots] << " thread slots, " << snapshot.resources[Libraries]
         << " libraries";
}

}  // namespace ZOTDam::Test
