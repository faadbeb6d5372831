// Generates data files of a given size. Functions have the same attributes and items as in real catalogues.
#pragma once

#include <string>

namespace ZOTDam::Bench {

struct Sizes {
    int functions;
    int entries = 2000;  // of the string table
};

std::string DefaultsFile(const Sizes& sizes);
std::string UserFile(const Sizes& sizes);

// Contains this number of functions, and the same number of settings in spec schemes.
std::string BaseFile(const Sizes& sizes);

std::string StringTable(const Sizes& sizes);

}  // namespace ZOTDam::Bench
