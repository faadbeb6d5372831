// Counts the allocations of the process from COM's allocator: strings and the results of
// COM calls.
#pragma once

#include <objbase.h>
#include <windows.h>

#include <stdexcept>

namespace ZOTDam::Test {

// COM reports every allocation to an object of this class, from the first use until the process ends. COM
// keeps the object as long as an allocation exists that it has reported.
class ComAllocations final : public IMallocSpy {
public:
    // The number of allocations since the first use that are not freed.
    static long long Count() {
        static ComAllocations& allocations = *new ComAllocations;
        return allocations.live;
    }

    HRESULT WINAPI QueryInterface(REFIID iid, void** object) override {
        const bool isSpy = iid == IID_IUnknown || iid == IID_IMallocSpy;
        *object = isSpy ? this : nullptr;
        return isSpy ? S_OK : E_NOINTERFACE;
    }
    ULONG WINAPI AddRef() override { return 1; }
    ULONG WINAPI Release() override { return 1; }

    SIZE_T WINAPI PreAlloc(SIZE_T size) override { return size; }
    void* WINAPI PostAlloc(void* block) override {
        live += block != nullptr;
        return block;
    }
    void* WINAPI PreFree(void* block, BOOL isKnown) override {
        live -= block != nullptr && isKnown != FALSE;
        return block;
    }
    void WINAPI PostFree(BOOL) override {}

    // A reallocated block counts as one block. A null pointer becomes a block, and a block of size 0 is
    // freed.
    SIZE_T WINAPI PreRealloc(void* block, SIZE_T size, void** moved, BOOL isKnown) override {
        *moved = block;
        wasLive = block != nullptr && isKnown != FALSE;
        isFreed = block != nullptr && size == 0;
        return size;
    }
    void* WINAPI PostRealloc(void* block, BOOL) override {
        if (isFreed)
            live -= wasLive;
        else
            live += block != nullptr && !wasLive;
        return block;
    }

    void* WINAPI PreGetSize(void* block, BOOL) override { return block; }
    SIZE_T WINAPI PostGetSize(SIZE_T size, BOOL) override { return size; }
    void* WINAPI PreDidAlloc(void* block, BOOL) override { return block; }
    int WINAPI PostDidAlloc(void*, BOOL, int isOfCom) override { return isOfCom; }
    void WINAPI PreHeapMinimize() override {}
    void WINAPI PostHeapMinimize() override {}

private:
    // COM would otherwise cache some freed strings and not report them as freed.
    ComAllocations() {
        const auto setNoCache = reinterpret_cast<void(WINAPI*)()>(
            reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"oleaut32.dll"), "SetOaNoCache")));
        setNoCache();
        if (FAILED(CoRegisterMallocSpy(this)))
            throw std::runtime_error{"COM does not report its allocations"};
    }

    long long live = 0;
    bool wasLive = false;
    bool isFreed = false;
};

}  // namespace ZOTDam::Test
