#pragma once

#include <string>
#include <string_view>

#include "platform/DataFiles.h"

namespace ZOTDam {

// The prefix that permits paths of MAX_PATH and more code units.
inline constexpr std::wstring_view LongPathPrefix = L"\\\\?\\";

// Returns the path of a file in a folder that is specified with environment variables ("%ProgramData%\...").
// Returns an empty path, which no file has, when the expanded folder and its terminator exceed `capacity`
// UTF-16 code units. A path on a drive begins with LongPathPrefix if it could reach MAX_PATH code units when
// an extension such as ".unreadable" is appended.
std::wstring FileInFolder(const wchar_t* folder, const wchar_t* fileName, unsigned long capacity);

// Returns the path of a data file, or an empty path when its folder is too long.
std::wstring PathOf(const DataFileLocation& location);

}  // namespace ZOTDam
