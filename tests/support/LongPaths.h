// Paths of a given length.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>

namespace ZOTDam::Test {

// Sets a variable to a longer path of the same folder, so that the path followed by `suffix` has the given
// number of UTF-16 code units.
inline void SetLongPath(const wchar_t* variable, const std::filesystem::path& folder,
                        const std::wstring& suffix, std::size_t codeUnits) {
    std::wstring longPath = folder.wstring();
    if ((codeUnits - longPath.size() - suffix.size()) % 2 != 0)
        longPath += L"\\";
    while (longPath.size() + suffix.size() < codeUnits)
        longPath += L"\\.";
    SetEnvironmentVariableW(variable, longPath.c_str());
}

inline void SetLongInstallationPath(const std::filesystem::path& programFiles, std::size_t codeUnits) {
    SetLongPath(L"ProgramFiles", programFiles, L"\\Orlo\\QUEN Power Management\\", codeUnits);
}

inline void SetLongUserPath(const std::filesystem::path& programData, std::size_t codeUnits) {
    SetLongPath(L"ProgramData", programData, L"\\Orlo Corporation\\QUEN Power Management\\", codeUnits);
}

}  // namespace ZOTDam::Test
