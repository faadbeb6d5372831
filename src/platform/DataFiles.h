// The locations of the data files.
#pragma once

namespace ZOTDam {

struct DataFileLocation {
    const wchar_t* folder;  // with environment variables and a final backslash
    // In UTF-16 code units of the expanded folder, including its terminator. Compatibility: C17.
    unsigned long folderCapacity;
    const wchar_t* fileName;
    const wchar_t* busyMarker;  // the mutex held while the file is loaded or saved; null if it is never saved
};

inline constexpr wchar_t InstallationFolder[] = L"%ProgramFiles%\\Orlo\\QUEN Power Management\\";

inline constexpr DataFileLocation BaseCatalogueLocation = {
    L"%ProgramFiles%\\Orlo\\QUEN Power Management\\data\\", 256, L"ZOTBase.xml", nullptr};
inline constexpr DataFileLocation DefaultsLocation = {InstallationFolder, 256, L"ZOTDefault.xml",
                                                      L"XmlZOTDefaultMutex"};
inline constexpr DataFileLocation StringTableLocation = {InstallationFolder, 260, L"StringTable.xml",
                                                         nullptr};
inline constexpr DataFileLocation UserSettingsLocation = {
    L"%ProgramData%\\Orlo Corporation\\QUEN Power Management\\", 256, L"ZOTPowercfg.xml",
    L"XmlZOTPowercfgMutex"};

}  // namespace ZOTDam
