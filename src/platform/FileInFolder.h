#pragma once

#include <string>

#include "platform/DataFiles.h"

namespace ZOTDam {

// Returns the path of a file in a folder that is specified with environment variables ("%ProgramData%\\...").
// The expanded folder and its terminator must fit into `capacity` UTF-16 code units; otherwise the function
// returns an empty path, which no file has.
std::wstring FileInFolder(const wchar_t* folder, const wchar_t* fileName, unsigned long capacity);

// The same for a data file.
std::wstring PathOf(const DataFileLocation& location);

}  // namespace ZOTDam
