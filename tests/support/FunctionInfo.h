// Copies of the records that GetFunctionInfo enumerates, which remain valid after the call.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "ZOTDam.h"

namespace ZOTDam::Test {

// The options and labels of a list of display items.
using Items = std::vector<std::pair<std::int32_t, std::wstring>>;

struct FunctionInfo {
    std::uint32_t id = 0;
    std::int32_t type = 0;
    std::int32_t flag = 0;
    std::wstring name;
    std::wstring group;
    Items ac;
    Items dc;

    bool operator==(const FunctionInfo&) const = default;
};

inline void PrintTo(const FunctionInfo& info, std::ostream* out) {
    *out << "{" << info.id << ", type " << info.type << ", flag " << info.flag << ", "
         << testing::PrintToString(info.name) << " of " << testing::PrintToString(info.group) << ", AC "
         << testing::PrintToString(info.ac) << ", DC " << testing::PrintToString(info.dc) << "}";
}

inline Items CopyOfItems(const List<DisplayItem>& displayItems) {
    Items items;
    for (const DisplayItem& item : displayItems)
        items.emplace_back(item.option, item.label);
    return items;
}

inline FunctionInfo CopyOf(std::uint32_t id, const FunctionRecord& function) {
    return {id,
            function.type,
            function.flag,
            function.name,
            function.group,
            CopyOfItems(function.acDisplayItems),
            CopyOfItems(function.dcDisplayItems)};
}

}  // namespace ZOTDam::Test
