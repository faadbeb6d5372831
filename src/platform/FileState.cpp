#include "platform/FileState.h"

#include <windows.h>

namespace ZOTDam {

namespace {

constexpr std::uint64_t Join(DWORD high, DWORD low) noexcept {
    return std::uint64_t{high} << 32 | low;
}

}  // namespace

FileState StateOf(const std::wstring& path) noexcept {
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) == FALSE)
        return {};
    return {Join(data.ftLastWriteTime.dwHighDateTime, data.ftLastWriteTime.dwLowDateTime),
            Join(data.nFileSizeHigh, data.nFileSizeLow)};
}

}  // namespace ZOTDam
