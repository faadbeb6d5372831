#include "platform/File.h"

#include <utility>

namespace ZOTDam {

void CFile::Open(HANDLE opened) noexcept {
    Close();
    handle = opened;
}

void CFile::Close() noexcept {
    if (IsOpen())
        CloseHandle(std::exchange(handle, INVALID_HANDLE_VALUE));
}

bool CFile::GetSize(DWORD& size) const noexcept {
    LARGE_INTEGER fileSize;
    if (GetFileType(handle) != FILE_TYPE_DISK || GetFileSizeEx(handle, &fileSize) == FALSE ||
        fileSize.QuadPart > MaxFileSize)
        return false;
    size = fileSize.LowPart;
    return true;
}

bool CFile::Read(void* content, DWORD size) const noexcept {
    DWORD count = 0;
    return SetFilePointer(handle, 0, nullptr, FILE_BEGIN) == 0 &&
           ReadFile(handle, content, size, &count, nullptr) != FALSE && count == size;
}

bool CFile::Read(std::string& content) const {
    DWORD size = 0;
    if (!GetSize(size))
        return false;
    content.resize(size);
    return Read(content.data(), size);
}

bool CFile::Write(std::string_view content) const noexcept {
    DWORD count = 0;
    return SetFilePointer(handle, 0, nullptr, FILE_BEGIN) == 0 &&
           WriteFile(handle, content.data(), static_cast<DWORD>(content.size()), &count, nullptr) != FALSE &&
           count == content.size() && SetEndOfFile(handle) != FALSE && Flush();
}

bool CFile::Truncate() const noexcept {
    return SetFilePointer(handle, 0, nullptr, FILE_BEGIN) == 0 && SetEndOfFile(handle) != FALSE && Flush();
}

void CFile::Delete() noexcept {
    if (!IsOpen())
        return;
    FILE_DISPOSITION_INFO disposition = {TRUE};
    SetFileInformationByHandle(handle, FileDispositionInfo, &disposition, sizeof disposition);
    Close();
}

bool IsFile(const std::wstring& path) noexcept {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool MayBeFile(const std::wstring& path) noexcept {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES)
        return (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
    const DWORD error = GetLastError();
    return error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND;
}

HANDLE OpenForReading(const std::wstring& path) noexcept {
    return CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                       OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
}

HANDLE OpenForWriting(const std::wstring& path) noexcept {
    return RejectLink(CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                  OPEN_EXISTING, DoNotFollowLinks, nullptr));
}

HANDLE RejectLink(HANDLE file) noexcept {
    FILE_BASIC_INFO information;
    if (file == INVALID_HANDLE_VALUE ||
        (GetFileInformationByHandleEx(file, FileBasicInfo, &information, sizeof information) != FALSE &&
         !IsLink(information.FileAttributes)))
        return file;
    CloseHandle(file);
    return INVALID_HANDLE_VALUE;
}

}  // namespace ZOTDam
