#pragma once

#include <string>
#include <string_view>

#include "platform/DataFiles.h"

namespace ZOTDam {

// Before a path, it lifts the limit of MAX_PATH code units.
inline constexpr std::wstring_view LongPathPrefix = L"\\\\?\\";

// Returns the path of a file in a folder that is specified with environment variables ("%ProgramData%\\...").
// The expanded folder and its terminator must fit into `capacity` UTF-16 code units; otherwise the function
// returns an empty path, which no file has. A path that is long, or to which a file name's extension is
// added, has the prefix for long paths.
std::wstring FileInFolder(const wchar_t* folder, const wchar_t* fileName, unsigned long capacity);

// The same for a data file.
std::wstring PathOf(const DataFileLocation& location);

}  // namespace ZOTDam
