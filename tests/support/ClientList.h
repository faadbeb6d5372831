// A client's own lists in the layout that AddFunctionDefault reads. The test links their nodes.
#pragma once

#include <windows.h>

#include <cstring>
#include <list>
#include <vector>

#include "ZOTDam.h"

namespace ZOTDam::Test {

// The memory layout of a list.
struct RawList {
    ListLinks* head;
    std::uint64_t count;
};

static_assert(sizeof(RawList) == sizeof(List<FunctionBaseRecord>));

template <class Record>
RawList& Raw(List<Record>& list) noexcept {
    return reinterpret_cast<RawList&>(list);
}

// Sets the stored count of a list, regardless of its actual number of records, for a scope.
class ClaimedCount {
public:
    template <class Record>
    ClaimedCount(List<Record>& list, std::uint64_t count) : raw{Raw(list)}, real{raw.count} {
        raw.count = count;
    }
    ClaimedCount(const ClaimedCount&) = delete;
    ClaimedCount& operator=(const ClaimedCount&) = delete;
    ~ClaimedCount() { raw.count = real; }

private:
    RawList& raw;
    std::uint64_t real;
};

// Memory that ends at the start of an inaccessible page.
class GuardedBlock {
public:
    explicit GuardedBlock(std::size_t size)
        : pages{(size + PageSize - 1) / PageSize},
          memory{
              static_cast<BYTE*>(VirtualAlloc(nullptr, (pages + 1) * PageSize, MEM_COMMIT, PAGE_READWRITE))},
          block{memory + pages * PageSize - size} {
        Protect(memory + pages * PageSize, 1, PAGE_NOACCESS);
    }
    GuardedBlock(const GuardedBlock&) = delete;
    GuardedBlock& operator=(const GuardedBlock&) = delete;
    ~GuardedBlock() { VirtualFree(memory, 0, MEM_RELEASE); }

    void* get() const noexcept { return block; }
    void MakeReadOnly() noexcept { Protect(memory, pages, PAGE_READONLY); }

    static void Protect(BYTE* first, std::size_t count, DWORD access) noexcept {
        DWORD previous = 0;
        VirtualProtect(first, count * PageSize, access, &previous);
    }

    static constexpr std::size_t PageSize = 4096;

private:
    std::size_t pages;
    BYTE* memory;
    BYTE* block;
};

// A read-only copy of a list, including everything that its records contain. Every node and every sentinel
// ends at a page boundary, and the next page is inaccessible. The original keeps the references that the
// records hold.
class ReadOnlyRecords {
public:
    // The client's word in the holder cannot even be read: it is the last word of an inaccessible page.
    explicit ReadOnlyRecords(const List<FunctionBaseRecord>& records)
        : memory{static_cast<BYTE*>(
              VirtualAlloc(nullptr, 2 * GuardedBlock::PageSize, MEM_COMMIT, PAGE_READWRITE))},
          holder{reinterpret_cast<FunctionBaseHolder*>(memory + GuardedBlock::PageSize - sizeof(void*))} {
        Raw(holder->records) = Copied(records);
        GuardedBlock::Protect(memory, 1, PAGE_NOACCESS);
        GuardedBlock::Protect(memory + GuardedBlock::PageSize, 1, PAGE_READONLY);
        for (GuardedBlock& block : blocks)
            block.MakeReadOnly();
    }
    ReadOnlyRecords(const ReadOnlyRecords&) = delete;
    ReadOnlyRecords& operator=(const ReadOnlyRecords&) = delete;
    ~ReadOnlyRecords() { VirtualFree(memory, 0, MEM_RELEASE); }

    const FunctionBaseHolder* get() const noexcept { return holder; }

private:
    // A node as the list lays it out. Its size keeps an object that ends at a page boundary aligned.
    template <class Record>
    struct Node {
        ListLinks links;
        Record record;
    };

    template <class Record>
    RawList Copied(const List<Record>& list) {
        auto* const sentinel = New<ListLinks>();
        *sentinel = {sentinel, sentinel};
        for (const Record& record : list) {
            auto* const links = static_cast<ListLinks*>(New(sizeof(Node<Record>)));
            *links = {sentinel, sentinel->prev};
            sentinel->prev->next = links;
            sentinel->prev = links;
            std::memcpy(static_cast<void*>(links + 1), static_cast<const void*>(&record), sizeof(Record));
            CopyLists(record, *reinterpret_cast<Record*>(links + 1));
        }
        return {sentinel, list.size()};
    }

    void CopyLists(const FunctionBaseRecord& source, FunctionBaseRecord& target) {
        Raw(target.commandFamilies) = Copied(source.commandFamilies);
    }
    void CopyLists(const CommandFamily& source, CommandFamily& target) {
        Raw(target.commandItems) = Copied(source.commandItems);
        Raw(target.checkExistItems) = Copied(source.checkExistItems);
    }
    void CopyLists(const BaseCommandItem&, BaseCommandItem&) noexcept {}
    void CopyLists(const CheckExistItem&, CheckExistItem&) noexcept {}

    void* New(std::size_t size) { return blocks.emplace_back(size).get(); }
    template <class Value>
    Value* New() {
        return static_cast<Value*>(New(sizeof(Value)));
    }

    std::list<GuardedBlock> blocks;
    BYTE* memory;
    FunctionBaseHolder* holder;
};

}  // namespace ZOTDam::Test
