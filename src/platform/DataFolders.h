// The folders of the data files.
#pragma once

namespace ZOTDam {

inline constexpr wchar_t InstallationFolder[] = L"%ProgramFiles%\\Orlo\\QUEN Power Management\\";
inline constexpr wchar_t BaseCatalogueFolder[] = L"%ProgramFiles%\\Orlo\\QUEN Power Management\\data\\";
inline constexpr wchar_t UserSettingsFolder[] = L"%ProgramData%\\Orlo Corporation\\QUEN Power Management\\";

// The maximum length of an expanded folder in UTF-16 code units, including its terminator.
inline constexpr unsigned long DataFolderCapacity = 256;
inline constexpr unsigned long StringTableFolderCapacity = 260;

}  // namespace ZOTDam
