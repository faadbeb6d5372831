#include "platform/FileInFolder.h"

#include <windows.h>

namespace ZOTDam {

std::wstring FileInFolder(const wchar_t* folder, const wchar_t* fileName, unsigned long capacity) {
    std::wstring path(capacity, L'\0');
    const DWORD needed = ExpandEnvironmentStringsW(folder, path.data(), capacity);
    if (needed == 0 || needed > capacity)
        return {};
    path.resize(needed - 1);
    return path + fileName;
}

std::wstring PathOf(const DataFileLocation& location) {
    return FileInFolder(location.folder, location.fileName, location.folderCapacity);
}

}  // namespace ZOTDam
