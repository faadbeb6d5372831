// The blocks that the process has from COM's allocator: the texts of COM, and what COM's calls hand out.
#pragma once

#include <objbase.h>
#include <windows.h>

#include <stdexcept>

namespace ZOTDam::Test {

// COM tells an object of this class of each block from the first use on until the process ends: COM keeps the
// object as long as a block lives of which it has told.
class ComBlocks final : public IMallocSpy {
public:
    // Those that were taken since the first use and not freed.
    static long long Live() {
        static ComBlocks& blocks = *new ComBlocks;
        return blocks.live;
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

    // A block that is moved stays one; a null pointer becomes one, and one of no size none.
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
    // COM would keep some of the freed texts for later use, and they would not be told as freed.
    ComBlocks() {
        const auto setNoCache = reinterpret_cast<void(WINAPI*)()>(
            reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"oleaut32.dll"), "SetOaNoCache")));
        setNoCache();
        if (FAILED(CoRegisterMallocSpy(this)))
            throw std::runtime_error{"COM does not tell of its blocks"};
    }

    long long live = 0;
    bool wasLive = false;
    bool isFreed = false;
};

}  // namespace ZOTDam::Test
