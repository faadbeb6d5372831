// A client's own map in the layout that SetParameter takes, linked by the test, which so decides its shape.
#pragma once

#include <windows.h>

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "ZOTDam.h"

namespace ZOTDam::Test {

using ClientEntry = std::pair<std::int32_t, ParamValue>;

// Links the nodes of a search tree: `nodes[0]` becomes the nil node, the others take the entries. A tree that
// is filled without balancing gets its shape from the order of the entries.
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

    // The same entries under another count than the tree has.
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

// A map that can only be read, with a client word that cannot even be read: it is the last word of a page
// without access, and the map begins with the next page.
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
