#pragma once

#include <string>

namespace ZOTDam {

// The path of a file in a folder that is named with environment variables ("%ProgramData%\\..."). The
// expanded folder has to fit `capacity` units with its terminator; one that does not gives an empty path,
// at which nothing exists.
std::wstring FileInFolder(const wchar_t* folder, const wchar_t* fileName, unsigned long capacity);

}  // namespace ZOTDam
