// A client's own lists in the layout that AddFunctionDefault takes, linked by the test.
#pragma once

#include <windows.h>

#include <cstring>
#include <list>
#include <vector>

#include "ZOTDam.h"

namespace ZOTDam::Test {

// A list as its bytes are.
struct RawList {
    ListLinks* head;
    std::uint64_t count;
};

static_assert(sizeof(RawList) == sizeof(List<FunctionBaseRecord>));

template <class Record>
RawList& Raw(List<Record>& list) noexcept {
    return reinterpret_cast<RawList&>(list);
}

// Lets a list say that it has so many records, whatever it has, while this lives.
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

// Memory that ends where a page without access begins.
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

// A copy of a list, with all that its records hold, that can only be read: every node and every sentinel is
// the end of a page before one without access. The references of the records stay with the original.
class ReadOnlyRecords {
public:
    // The client's word in the holder cannot even be read: it is the last of a page without access.
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
    // As a list has it: its size keeps what ends with a page aligned.
    template <class Record>
    struct Node {
        ListLinks links;
        Record record;
    };

    template <class Record>
    RawList Copied(const List<Record>& list) {
        ListLinks* const sentinel = New<ListLinks>();
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
