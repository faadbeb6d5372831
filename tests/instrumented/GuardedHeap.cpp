// A heap that detects memory errors, linked into every module of the build "guarded". Each block ends at a
// guard page without access, so that an access past its end traps. The bytes before a block hold a pattern,
// which is checked when the block is freed. A freed block is filled and made inaccessible; its addresses are
// not reused until many more blocks have been freed. At most MaxGuardedBlocks blocks are guarded at a time.
#include "GuardedHeap.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

constexpr std::size_t PageSize = 4096;

constexpr BYTE Front = 0xfd;
constexpr BYTE NewMemory = 0xcd;
constexpr BYTE FreedMemory = 0xdd;

// The header of a guarded block. It is allocated with malloc, so that tests that count allocations or let
// malloc fail see one allocation for each block.
struct Block {
    BYTE* pages;
    BYTE* start;
    BYTE* end;

    // The bytes before the block, which hold a pointer to this header (null for an unguarded block).
    BYTE* Link() const noexcept { return start - sizeof(Block*); }
};

constexpr std::size_t RoomInFront = 16;  // of an unguarded block; keeps the block aligned

// The pages of the most recently freed blocks.
class Quarantine {
public:
    constexpr Quarantine() noexcept = default;
    Quarantine(const Quarantine&) = delete;
    Quarantine& operator=(const Quarantine&) = delete;
    ~Quarantine() {
        for (std::atomic<BYTE*>& place : places)
            Release(place.exchange(nullptr));
    }

    void Add(BYTE* pages) noexcept { Release(places[next++ % places.size()].exchange(pages)); }

private:
    static void Release(BYTE* pages) noexcept {
        if (pages != nullptr)
            VirtualFree(pages, 0, MEM_RELEASE);
    }

    std::array<std::atomic<BYTE*>, 1024> places{};
    std::atomic<std::size_t> next = 0;
};

// Each block takes up to three of the 65,530 mappings that a system may grant a process.
constexpr std::size_t MaxGuardedBlocks = 6000;
std::atomic<std::size_t> guardedBlocks = 0;

// Constructed first and therefore destroyed last, after the module has freed all its blocks.
__attribute__((init_priority(101))) Quarantine quarantine;

// Allocates pages followed by a guard page. Returns null if no memory is left.
BYTE* NewPages(std::size_t size) noexcept {
    void* const pages = VirtualAlloc(nullptr, size + PageSize, MEM_RESERVE, PAGE_NOACCESS);
    if (pages == nullptr || VirtualAlloc(pages, size, MEM_COMMIT, PAGE_READWRITE) != nullptr)
        return static_cast<BYTE*>(pages);
    VirtualFree(pages, 0, MEM_RELEASE);
    return nullptr;
}

void* AllocateUnguarded(std::size_t size) {
    void* const memory = size + RoomInFront > size ? std::calloc(1, size + RoomInFront) : nullptr;
    if (memory == nullptr)
        throw std::bad_alloc{};
    return static_cast<BYTE*>(memory) + RoomInFront;
}

// A block that ends at a page boundary is aligned, because a type's size is a multiple of its alignment.
void* AllocateGuarded(std::size_t size) {
    const std::size_t pagesSize = (size + sizeof(Block*) + PageSize - 1) / PageSize * PageSize;
    auto* const block = static_cast<Block*>(std::malloc(sizeof(Block)));
    BYTE* const pages = block != nullptr && pagesSize > size ? NewPages(pagesSize) : nullptr;
    if (pages == nullptr) {
        std::free(block);
        throw std::bad_alloc{};
    }
    BYTE* const end = pages + pagesSize;
    *block = {pages, end - size, end};
    std::fill(pages, block->Link(), Front);
    std::memcpy(block->Link(), &block, sizeof block);
    std::fill(block->start, end, NewMemory);
    ++guardedBlocks;
    return block->start;
}

void* Allocate(std::size_t size) {
    const bool guard = ZOTDam::Test::guardsNewBlocks && guardedBlocks < MaxGuardedBlocks;
    return guard ? AllocateGuarded(size) : AllocateUnguarded(size);
}

void FreeGuarded(Block* block) noexcept {
    if (!std::all_of(block->pages, block->Link(), [](BYTE byte) { return byte == Front; }))
        __builtin_trap();
    std::fill(block->start, block->end, FreedMemory);
    DWORD previous = 0;
    VirtualProtect(block->pages, static_cast<std::size_t>(block->end - block->pages), PAGE_NOACCESS,
                   &previous);
    quarantine.Add(block->pages);
    --guardedBlocks;
    std::free(block);
}

void Free(void* start) noexcept {
    if (start == nullptr)
        return;
    Block* block = nullptr;
    std::memcpy(&block, static_cast<BYTE*>(start) - sizeof block, sizeof block);
    if (block == nullptr)
        std::free(static_cast<BYTE*>(start) - RoomInFront);
    else if (block->start == start)
        FreeGuarded(block);
    else
        __builtin_trap();
}

}  // namespace

bool ZOTDam::Test::guardsNewBlocks = true;

// The forms of new and delete that are not defined here call one of these.

void* operator new(std::size_t size) {
    return Allocate(size);
}

void* operator new(std::size_t size, std::align_val_t) {
    return Allocate(size);
}

void operator delete(void* start) noexcept {
    Free(start);
}

void operator delete(void* start, std::size_t) noexcept {
    Free(start);
}

void operator delete(void* start, std::align_val_t) noexcept {
    Free(start);
}

void operator delete(void* start, std::size_t, std::align_val_t) noexcept {
    Free(start);
}
