// The locations of the data files.
#pragma once

namespace ZOTDam {

// The folder and name of a data file, and the name of its busy marker.
struct DataFileLocation {
    const wchar_t* folder;  // contains environment variables and ends with a backslash
    // The capacity for the expanded folder and its terminator, in UTF-16 code units. Compatibility: C17.
    unsigned long folderCapacity;
    const wchar_t* fileName;
    const wchar_t* busyMarker;  // the name of the mutex for CBusyMarker; null for a file that is never saved
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
