// Document types whose entities are small in the file and large in memory.
#pragma once

#include <string>

#include "support/Repeat.h"

namespace ZOTDam::Test {

// Entities a0, a1, ... Each expands to ten references to the previous one.
inline std::string GrowingEntities(int levels, const std::string& first) {
    std::string type = "<!DOCTYPE R [<!ENTITY a0 \"" + first + "\">";
    for (int level = 1; level <= levels; ++level)
        type += "<!ENTITY a" + std::to_string(level) + " \"" +
                Repeat("&a" + std::to_string(level - 1) + ";", 10) + "\">";
    return type + "]>";
}

// The same with parameter entities. The document type references the last one immediately.
inline std::string GrowingParameterEntities(int levels) {
    std::string type = R"(<!DOCTYPE R [<!ENTITY % p0 "<!ENTITY a 'boom'>">)";
    for (int level = 1; level <= levels; ++level)
        type += "<!ENTITY % p" + std::to_string(level) + " \"" +
                Repeat("&#37;p" + std::to_string(level - 1) + ";", 10) + "\">";
    return type + "%p" + std::to_string(levels) + ";]>";
}

// An entity x with the given number of characters.
inline std::string EntityOf(std::size_t size) {
    return "<!DOCTYPE R [<!ENTITY x \"" + std::string(size, 'x') + "\">]>";
}

}  // namespace ZOTDam::Test
