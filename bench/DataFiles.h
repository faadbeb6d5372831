// Generates data files of a given size. Functions have the same attributes and items as in real catalogues.
#pragma once

#include <string>

namespace ZOTDam::Bench {

// The number of entries of the string table, which does not depend on the size of the other files.
inline constexpr int StringTableEntries = 2000;

std::string DefaultsFile(int functions);
std::string UserFile(int functions);

// Contains this number of functions, and the same number of settings in spec schemes.
std::string BaseFile(int functions);

std::string StringTable();

}  // namespace ZOTDam::Bench
