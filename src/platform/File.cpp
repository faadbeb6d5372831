#include "platform/File.h"

namespace ZOTDam {

bool CFile::Read(std::string& content) const {
    const DWORD size = GetFileSize(handle, nullptr);
    if (size == INVALID_FILE_SIZE)
        return false;
    content.resize(size);
    DWORD count = 0;
    return SetFilePointer(handle, 0, nullptr, FILE_BEGIN) == 0 &&
           ReadFile(handle, content.data(), size, &count, nullptr) != FALSE && count == size;
}

bool CFile::Write(std::string_view content) const noexcept {
    DWORD count = 0;
    return SetFilePointer(handle, 0, nullptr, FILE_BEGIN) == 0 &&
           WriteFile(handle, content.data(), static_cast<DWORD>(content.size()), &count, nullptr) != FALSE &&
           count == content.size() && SetEndOfFile(handle) != FALSE && Flush();
}

}  // namespace ZOTDam
