// Fault injection: the n-th of the library's calls that return memory or an object fails, either alone or
// together with all later ones.
#pragma once

#include <objbase.h>
#include <windows.h>

#include <oleauto.h>
#include <rpc.h>

#include <list>
#include <ostream>
#include <string>
#include <vector>

#include "support/DomCalls.h"
#include "support/HeapAllocations.h"
#include "support/ImportPatch.h"

namespace ZOTDam::Test {

// Makes the n-th call fail while this object exists.
class FailingCall {
public:
    FailingCall(int call, bool failureLasts) noexcept {
        callsUntilFailure = call;
        lasts = failureLasts;
        hasFailed = false;
    }
    FailingCall(const FailingCall&) = delete;
    FailingCall& operator=(const FailingCall&) = delete;
    ~FailingCall() {
        callsUntilFailure = 0;
        lasts = false;
    }

    // Returns whether the current call must fail.
    static bool IsDue() noexcept {
        if (hasFailed && lasts)
            return true;
        if (callsUntilFailure == 0 || --callsUntilFailure != 0)
            return false;
        hasFailed = true;
        return true;
    }

    // Returns whether the n-th call was reached. Remains valid after the object is destroyed.
    static bool HasFailed() noexcept { return hasFailed; }

private:
    inline static int callsUntilFailure = 0;
    inline static bool lasts = false;
    inline static bool hasFailed = false;
};

// The imports of a loaded DLL, patched for a scope.
class PatchedImports {
public:
    explicit PatchedImports(HMODULE dll) : module{dll} {}
    PatchedImports(const PatchedImports&) = delete;
    PatchedImports& operator=(const PatchedImports&) = delete;
    ~PatchedImports() {
        // Patches must be removed in reverse order.
        while (!patches.empty())
            patches.pop_back();
    }

    // Patches the function if the DLL imports it.
    template <class Function>
    void Patch(const char* name, Function replacement) {
        if (IsImported(module, name))
            patches.emplace_back(module, name, replacement);
    }

private:
    HMODULE module;
    std::list<ImportPatch> patches;
};

struct AllocationFailure {
    std::string name;
    void (*install)(PatchedImports& imports);
    int stepInShortRun = 1;  // the distance from one failing call to the next
};

namespace AllocationFailures {

inline void* Malloc(std::size_t size) {
    return FailingCall::IsDue() ? nullptr : HeapAllocations::Malloc(size);
}

inline void* Calloc(std::size_t count, std::size_t size) {
    return FailingCall::IsDue() ? nullptr : HeapAllocations::Calloc(count, size);
}

inline void* Realloc(void* block, std::size_t size) {
    return FailingCall::IsDue() ? nullptr : HeapAllocations::Realloc(block, size);
}

inline void FailMemory(PatchedImports& imports) {
    imports.Patch("malloc", &Malloc);
    imports.Patch("calloc", &Calloc);
    imports.Patch("realloc", &Realloc);
}

inline BSTR WINAPI AllocString(const OLECHAR* text) {
    return FailingCall::IsDue() ? nullptr : SysAllocString(text);
}

inline BSTR WINAPI AllocStringLen(const OLECHAR* text, UINT length) {
    return FailingCall::IsDue() ? nullptr : SysAllocStringLen(text, length);
}

inline BSTR WINAPI AllocStringByteLen(LPCSTR text, UINT length) {
    return FailingCall::IsDue() ? nullptr : SysAllocStringByteLen(text, length);
}

inline void FailStrings(PatchedImports& imports) {
    imports.Patch("SysAllocString", &AllocString);
    imports.Patch("SysAllocStringLen", &AllocStringLen);
    imports.Patch("SysAllocStringByteLen", &AllocStringByteLen);
}

inline HRESULT WINAPI ChangeType(VARIANTARG* target, const VARIANTARG* source, USHORT flags, VARTYPE type) {
    return FailingCall::IsDue() ? E_OUTOFMEMORY
                                : VariantChangeType(target, const_cast<VARIANTARG*>(source), flags, type);
}

inline HRESULT WINAPI Copy(VARIANTARG* target, const VARIANTARG* source) {
    return FailingCall::IsDue() ? E_OUTOFMEMORY : VariantCopy(target, const_cast<VARIANTARG*>(source));
}

inline void FailVariants(PatchedImports& imports) {
    imports.Patch("VariantChangeType", &ChangeType);
    imports.Patch("VariantCopy", &Copy);
}

inline RPC_STATUS RPC_ENTRY UuidToText(const UUID* uuid, RPC_WSTR* text) {
    return FailingCall::IsDue() ? RPC_S_OUT_OF_MEMORY : UuidToStringW(const_cast<UUID*>(uuid), text);
}

inline void FailGuidStrings(PatchedImports& imports) {
    imports.Patch("UuidToStringW", &UuidToText);
}

inline HRESULT WINAPI CreateInstance(REFCLSID type, LPUNKNOWN outer, DWORD context, REFIID iid,
                                     LPVOID* object) {
    return FailingCall::IsDue() ? E_OUTOFMEMORY : DomCalls::Create(type, outer, context, iid, object);
}

inline HRESULT WINAPI Run(LPUNKNOWN object) {
    return FailingCall::IsDue() ? E_OUTOFMEMORY : OleRun(object);
}

inline void FailDocuments(PatchedImports& imports) {
    imports.Patch("CoCreateInstance", &CreateInstance);
    imports.Patch("OleRun", &Run);
}

inline void FailDom(PatchedImports&) {
    DomCalls::mustFail = &FailingCall::IsDue;
}

inline DWORD WINAPI ExpandStrings(LPCWSTR source, LPWSTR target, DWORD size) {
    return FailingCall::IsDue() ? 0 : ExpandEnvironmentStringsW(source, target, size);
}

inline void FailPaths(PatchedImports& imports) {
    imports.Patch("ExpandEnvironmentStringsW", &ExpandStrings);
}

inline HANDLE WINAPI CreateMarker(LPSECURITY_ATTRIBUTES attributes, BOOL owner, LPCWSTR name) {
    if (!FailingCall::IsDue())
        return CreateMutexW(attributes, owner, name);
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
}

inline void FailMarkers(PatchedImports& imports) {
    imports.Patch("CreateMutexW", &CreateMarker);
}

}  // namespace AllocationFailures

inline const std::vector<AllocationFailure> KindsOfAllocationFailures = {
    {"Memory", &AllocationFailures::FailMemory, 3},    {"Texts", &AllocationFailures::FailStrings},
    {"Variants", &AllocationFailures::FailVariants},   {"GuidTexts", &AllocationFailures::FailGuidStrings},
    {"Documents", &AllocationFailures::FailDocuments}, {"DomCalls", &AllocationFailures::FailDom, 7},
    {"Paths", &AllocationFailures::FailPaths},         {"Markers", &AllocationFailures::FailMarkers},
};

}  // namespace ZOTDam::Test
