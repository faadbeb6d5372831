#pragma once

#include <string>
#include <string_view>

namespace ZOTDam::Test {

inline std::string Repeat(std::string_view text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

}  // namespace ZOTDam::Test
