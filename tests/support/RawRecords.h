// Access to records and lists for a client that only knows their memory layout.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace ZOTDam::Test {

template <class Value>
Value At(const void* record, std::size_t offset) {
    Value value;
    std::memcpy(&value, static_cast<const char*>(record) + offset, sizeof value);
    return value;
}

// Returns the text of a field.
inline const wchar_t* TextAt(const void* record, std::size_t offset) {
    return reinterpret_cast<const wchar_t*>(static_cast<const char*>(record) + offset);
}

// Returns the records of a list, following one of the two links of its nodes.
inline std::vector<const void*> RecordsAlong(const void* list, std::size_t link) {
    const void* const sentinel = At<const void*>(list, 0);
    std::vector<const void*> records;
    for (const void* node = At<const void*>(sentinel, link); node != sentinel;
         node = At<const void*>(node, link))
        records.push_back(static_cast<const char*>(node) + 16);
    return records;
}

// Returns the records of the list at an offset. Checks that both directions have the same records and that
// the count is correct.
inline std::vector<const void*> ListAt(const void* record, std::size_t offset) {
    const void* const list = static_cast<const char*>(record) + offset;
    std::vector<const void*> records = RecordsAlong(list, 8);
    std::ranges::reverse(records);
    EXPECT_EQ(records, RecordsAlong(list, 0));
    EXPECT_EQ(records.size(), At<std::uint64_t>(list, 8));
    return records;
}

}  // namespace ZOTDam::Test
