// The building blocks of the records in ZOTDam.h. In C they are plain structs and pointers. In C++ (C++14 or
// later) they are classes with the same layout: a list that owns its records, an owning pointer to a COM
// object, and an iterator. Include ZOTDam.h, which includes this header.
#pragma once

#include <guiddef.h>

// C has only these names of the headers.
#include <stddef.h>  // NOLINT(modernize-deprecated-headers)
#include <stdint.h>  // NOLINT(modernize-deprecated-headers)
#ifdef __cplusplus
#include <cstddef>
#include <cstdint>
#include <utility>
#else
#include <stdbool.h>
#endif

// The size of a fixed string field and of a caller's string buffer, in UTF-16 code units, including the
// terminating zero.
#define ZOTDAM_TEXT_CAPACITY 260

// Verify the layout of a record at compile time.
#ifdef __cplusplus
#define ZOTDAM_ASSERT(condition) static_assert(condition, #condition)
#else
#define ZOTDAM_ASSERT(condition) _Static_assert(condition, #condition)
#endif
#define ZOTDAM_SIZE(Record, size) ZOTDAM_ASSERT(sizeof(Record) == (size))
#define ZOTDAM_OFFSET(Record, field, offset) ZOTDAM_ASSERT(offsetof(Record, field) == (offset))

ZOTDAM_ASSERT(sizeof(void*) == 8 && sizeof(wchar_t) == 2 && sizeof(bool) == 1 && sizeof(GUID) == 16);

#ifdef __cplusplus
namespace ZOTDam {
#endif

// The links at the start of every list node. The record follows them. The sentinel of a list consists of
// these two links only: `next` points to the first node and `prev` to the last one. In the sentinel of an
// empty list, both point to the sentinel.
typedef struct ListLinks {  // NOLINT(modernize-use-using): for C
    struct ListLinks* next;
    struct ListLinks* prev;
} ListLinks;

ZOTDAM_SIZE(ListLinks, 16);
ZOTDAM_OFFSET(ListLinks, next, 0);
ZOTDAM_OFFSET(ListLinks, prev, 8);

#ifdef __cplusplus
}  // namespace ZOTDam
#endif

#ifndef __cplusplus

// ---- C --------------------------------------------------------------------------------------------------

// A list of records of one type. `head` points to the sentinel and is never null. If `count` is 0, the list
// is empty regardless of the links.
typedef struct ZOTDamList {
    ListLinks* head;
    uint64_t count;
} ZOTDamList;

ZOTDAM_SIZE(ZOTDamList, 16);
ZOTDAM_OFFSET(ZOTDamList, head, 0);
ZOTDAM_OFFSET(ZOTDamList, count, 8);

// Returns a pointer to the record of a node.
#define ZOTDAM_RECORD(Record, links) ((Record*)((ListLinks*)(links) + 1))

#define ZOTDAM_LIST(Record) ZOTDamList
#define ZOTDAM_COUNTED(Interface) struct Interface*
#define ZOTDAM_ZEROED
#define ZOTDAM_MAY_THROW

// Declares the struct of a callback and the struct of its function table. A client may use a larger struct
// that begins with the callback, and convert `self` to it.
#define ZOTDAM_CALLBACK(Interface, ...)                \
    typedef struct Interface Interface;                \
    typedef struct Interface##Table {                  \
        void (*OnItem)(Interface * self, __VA_ARGS__); \
    } Interface##Table;                                \
    struct Interface {                                 \
        const Interface##Table* table;                 \
    }

#else

// ---- C++ ------------------------------------------------------------------------------------------------

#define ZOTDAM_LIST(Record) List<Record>
#define ZOTDAM_COUNTED(Interface) CountedPointer<Interface>
#define ZOTDAM_ZEROED \
    {}
#define ZOTDAM_MAY_THROW noexcept(false)

// Declares the base class of a callback. A client derives a class from it and overrides OnItem.
#define ZOTDAM_CALLBACK(Interface, ...)       \
    struct Interface {                        \
        virtual void OnItem(__VA_ARGS__) = 0; \
                                              \
    protected:                                \
        ~Interface() = default;               \
    }

namespace ZOTDam {

constexpr std::size_t TextCapacity = ZOTDAM_TEXT_CAPACITY;

using Text = wchar_t[TextCapacity];

template <class Unused>
struct EmptyList {
    static ListLinks links;
};

template <class Unused>
ListLinks EmptyList<Unused>::links = {&links, &links};

// The sentinel that all empty lists of a module share, so that an empty list needs no heap allocation. It is
// never modified.
static constexpr ListLinks& EmptyListLinks = EmptyList<void>::links;

// A doubly linked list that owns its records. Its layout is that of ZOTDamList, for all clients. Copying a
// list copies its records. The functions that add records throw std::bad_alloc.
template <class Record>
class List {
    struct Node {
        ListLinks links;
        Record record;
    };

    template <class Value>
    class BasicIterator {
    public:
        explicit BasicIterator(ListLinks* start) noexcept : links{start} {}
        Value& operator*() const noexcept { return reinterpret_cast<Node*>(links)->record; }
        Value* operator->() const noexcept { return &**this; }
        BasicIterator& operator++() noexcept {
            links = links->next;
            return *this;
        }
        bool operator==(const BasicIterator& other) const noexcept { return links == other.links; }
        bool operator!=(const BasicIterator& other) const noexcept { return links != other.links; }

    private:
        ListLinks* links;
    };

public:
    using iterator = BasicIterator<Record>;
    using const_iterator = BasicIterator<const Record>;

    List() noexcept = default;
    List(const List& other) : List{} {
        for (const Record& record : other)
            push_back(record);
    }
    List(List&& other) noexcept { Swap(other); }
    List& operator=(List other) noexcept {
        Swap(other);
        return *this;
    }
    ~List() { clear(); }

    iterator begin() noexcept { return iterator{head->next}; }
    iterator end() noexcept { return iterator{head}; }
    // A client may empty its own list by setting only the count to 0. Compatibility: C53.
    const_iterator begin() const noexcept { return empty() ? end() : const_iterator{head->next}; }
    const_iterator end() const noexcept { return const_iterator{head}; }
    std::size_t size() const noexcept { return static_cast<std::size_t>(count); }
    bool empty() const noexcept { return count == 0; }

    void push_back(const Record& record) { Append(record); }
    void push_back(Record&& record) { Append(std::move(record)); }

    template <class Predicate>
    void remove_if(Predicate isUnwanted) {
        for (ListLinks* links = head->next; links != head;) {
            Node* const node = reinterpret_cast<Node*>(std::exchange(links, links->next));
            if (isUnwanted(static_cast<const Record&>(node->record)))
                Remove(node);
        }
    }

    void clear() noexcept {
        if (head == &EmptyListLinks)
            return;
        for (ListLinks* links = head->next; links != head;)
            delete reinterpret_cast<Node*>(std::exchange(links, links->next));
        delete std::exchange(head, &EmptyListLinks);
        count = 0;
    }

private:
    void EnsureSentinel() {
        if (head == &EmptyListLinks) {
            head = new ListLinks;
            *head = {head, head};
        }
    }

    template <class Source>
    void Append(Source&& record) {
        ZOTDAM_OFFSET(Node, record, 16);
        EnsureSentinel();
        Node* const node = new Node{{head, head->prev}, std::forward<Source>(record)};
        head->prev->next = &node->links;
        head->prev = &node->links;
        ++count;
    }

    void Remove(Node* node) noexcept {
        node->links.prev->next = node->links.next;
        node->links.next->prev = node->links.prev;
        delete node;
        --count;
    }

    void Swap(List& other) noexcept {
        std::swap(head, other.head);
        std::swap(count, other.count);
    }

    ListLinks* head = &EmptyListLinks;
    std::uint64_t count = 0;
};

// An owning pointer to a reference-counted COM interface. Copying and destroying it requires the complete
// interface type: include <msxml6.h>, or <msxml2.h> if the toolchain has no <msxml6.h>.
template <class Interface>
class CountedPointer {
public:
    CountedPointer() noexcept = default;
    explicit CountedPointer(Interface* counted) noexcept : pointer{counted} { AddReference(); }
    CountedPointer(const CountedPointer& other) noexcept : pointer{other.pointer} { AddReference(); }
    CountedPointer& operator=(CountedPointer other) noexcept {
        std::swap(pointer, other.pointer);
        return *this;
    }
    ~CountedPointer() {
        if (pointer != nullptr)
            pointer->Release();
    }

    Interface* get() const noexcept { return pointer; }

private:
    void AddReference() noexcept {
        if (pointer != nullptr)
            pointer->AddRef();
    }

    Interface* pointer = nullptr;
};

// Iterates over the nodes of a binary search tree in ascending order of their keys. The parent link of the
// root and the links to missing children point to the nil node.
template <class Node>
class TreeIterator {
public:
    explicit TreeIterator(const Node* start) noexcept : node{start} {}
    const Node& operator*() const noexcept { return *node; }
    TreeIterator& operator++() noexcept {
        node = IsNil(node->right) ? FirstAncestorToTheRight(node) : Leftmost(node->right);
        return *this;
    }
    bool operator==(const TreeIterator& other) const noexcept { return node == other.node; }
    bool operator!=(const TreeIterator& other) const noexcept { return node != other.node; }

private:
    static bool IsNil(const Node* link) noexcept { return link->isNil != 0; }
    static const Node* Leftmost(const Node* subtree) noexcept {
        while (!IsNil(subtree->left))
            subtree = subtree->left;
        return subtree;
    }
    static const Node* FirstAncestorToTheRight(const Node* descendant) noexcept {
        const Node* ancestor = descendant->parent;
        while (!IsNil(ancestor) && descendant == ancestor->right)
            descendant = std::exchange(ancestor, ancestor->parent);
        return ancestor;
    }

    const Node* node;
};

}  // namespace ZOTDam

#endif
