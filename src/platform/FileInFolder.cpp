#include "platform/FileInFolder.h"

#include <windows.h>

namespace ZOTDam {

namespace {

// The prefix is only valid before an absolute, normalised path.
bool NeedsPrefix(std::wstring_view path) noexcept {
    constexpr std::size_t longestExtension = 12;  // ".unreadable" and the terminating zero
    const auto contains = [path](std::wstring_view part) {
        return path.find(part) != std::wstring_view::npos;
    };
    return path.size() + longestExtension >= MAX_PATH && path.substr(1, 2) == L":\\" && !contains(L"/") &&
           !contains(L"\\\\") && !contains(L"\\.\\") && !contains(L"\\..\\");
}

}  // namespace

std::wstring FileInFolder(const wchar_t* folder, const wchar_t* fileName, unsigned long capacity) {
    std::wstring path(capacity, L'\0');
    const DWORD needed = ExpandEnvironmentStringsW(folder, path.data(), capacity);
    if (needed == 0 || needed > capacity)
        return {};
    path.resize(needed - 1);
    path += fileName;
    return NeedsPrefix(path) ? std::wstring{LongPathPrefix} + path : path;
}

std::wstring PathOf(const DataFileLocation& location) {
    return FileInFolder(location.folder, location.fileName, location.folderCapacity);
}

}  // namespace ZOTDam
