// A client's own map in the layout that SetParameter reads. The test links its nodes and so controls its
// shape.
#pragma once

#include <windows.h>

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "ZOTDam.h"

namespace ZOTDam::Test {

using ClientEntry = std::pair<std::int32_t, ParamValue>;

// Links the nodes of a search tree: `nodes[0]` becomes the nil node, and the other nodes receive the entries.
// The tree is not balanced, so its shape depends on the order of the entries.
inline void LinkClientMap(std::span<ParamTreeNode> nodes, std::span<const ClientEntry> entries) {
    ParamTreeNode* const nil = nodes.data();
    *nil = {nil, nil, nil, 1, 1, 0, {}};
    for (ParamTreeNode* node = nil; const auto& [id, value] : entries) {
        ParamTreeNode* parent = nil;
        ParamTreeNode** link = &nil->parent;
        while (*link != nil) {
            parent = *link;
            link = id < parent->functionId ? &parent->left : &parent->right;
        }
        *link = ++node;
        *node = {nil, parent, nil, 0, 0, id, value};
        if (nil->left == nil || id < nil->left->functionId)
            nil->left = node;
        if (nil->right == nil || id > nil->right->functionId)
            nil->right = node;
    }
}

class ClientMap {
public:
    explicit ClientMap(const std::vector<ClientEntry>& entries) : nodes(entries.size() + 1) {
        LinkClientMap(nodes, entries);
        holder = {nullptr, {nodes.data(), entries.size()}};
    }
    ClientMap(const ClientMap&) = delete;
    ClientMap& operator=(const ClientMap&) = delete;

    // Returns the same entries with a count that differs from the size of the tree.
    const ParamMapHolder* WithCount(std::uint64_t count) {
        holder.params.count = count;
        return &holder;
    }

    ParamMapHolder* get() noexcept { return &holder; }
    std::vector<ParamTreeNode>& Nodes() noexcept { return nodes; }

private:
    std::vector<ParamTreeNode> nodes;
    ParamMapHolder holder{};
};

// A read-only map whose client word cannot even be read. The client word is the last word of an inaccessible
// page, and the map begins on the next page.
class ReadOnlyClientMap {
public:
    explicit ReadOnlyClientMap(const std::vector<ClientEntry>& entries)
        : memory{static_cast<BYTE*>(VirtualAlloc(nullptr, 2 * PageSize, MEM_COMMIT, PAGE_READWRITE))},
          holder{reinterpret_cast<ParamMapHolder*>(memory + PageSize - sizeof(void*))} {
        auto* const nodes = reinterpret_cast<ParamTreeNode*>(holder + 1);
        LinkClientMap({nodes, entries.size() + 1}, entries);
        holder->params.head = nodes;
        holder->params.count = entries.size();
        DWORD previous = 0;
        VirtualProtect(memory, PageSize, PAGE_NOACCESS, &previous);
        VirtualProtect(memory + PageSize, PageSize, PAGE_READONLY, &previous);
    }
    ReadOnlyClientMap(const ReadOnlyClientMap&) = delete;
    ReadOnlyClientMap& operator=(const ReadOnlyClientMap&) = delete;
    ~ReadOnlyClientMap() { VirtualFree(memory, 0, MEM_RELEASE); }

    const ParamMapHolder* get() const noexcept { return holder; }

private:
    static constexpr std::size_t PageSize = 4096;

    BYTE* memory;
    ParamMapHolder* holder;
};

}  // namespace ZOTDam::Test
