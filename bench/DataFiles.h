// Data files of a given size, with the attributes and items that functions of real catalogues have.
#pragma once

#include <string>

namespace ZOTDam::Bench {

// How many entries the string table has, whatever the size of the other files.
inline constexpr int StringTableEntries = 2000;

std::string DefaultsFile(int functions);
std::string UserFile(int functions);

// As many functions, and as many settings in spec schemes.
std::string BaseFile(int functions);

std::string StringTable();

}  // namespace ZOTDam::Bench
