// Folders with names of a given length.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>

namespace ZOTDam::Test {

// Sets a variable to a longer path of the same folder, so that the path followed by `rest` has the given
// number of UTF-16 code units.
inline void Stretch(const wchar_t* variable, const std::filesystem::path& folder, const std::wstring& rest,
                    std::size_t units) {
    std::wstring stretched = folder.wstring();
    if ((units - stretched.size() - rest.size()) % 2 != 0)
        stretched += L"\\";
    while (stretched.size() + rest.size() < units)
        stretched += L"\\.";
    SetEnvironmentVariableW(variable, stretched.c_str());
}

inline void StretchInstallationFolder(const std::filesystem::path& programFiles, std::size_t units) {
    Stretch(L"ProgramFiles", programFiles, L"\\Orlo\\QUEN Power Management\\", units);
}

inline void StretchUserFolder(const std::filesystem::path& programData, std::size_t units) {
    Stretch(L"ProgramData", programData, L"\\Orlo Corporation\\QUEN Power Management\\", units);
}

}  // namespace ZOTDam::Test
