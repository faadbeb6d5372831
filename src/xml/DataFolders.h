// Where the data files lie.
#pragma once

namespace ZOTDam {

inline constexpr wchar_t InstallationFolder[] = L"%ProgramFiles%\\Orlo\\QUEN Power Management\\";
inline constexpr wchar_t BaseCatalogueFolder[] = L"%ProgramFiles%\\Orlo\\QUEN Power Management\\data\\";
inline constexpr wchar_t UserSettingsFolder[] = L"%ProgramData%\\Orlo Corporation\\QUEN Power Management\\";

// Units that an expanded folder may have, its terminator included.
inline constexpr unsigned long DataFolderCapacity = 256;
inline constexpr unsigned long StringTableFolderCapacity = 260;

}  // namespace ZOTDam
