#include "platform/AtomicFile.h"

#include "platform/AccessRights.h"
#include "platform/File.h"

namespace ZOTDam {

namespace {

// The result of one step of a save.
enum class WriteResult : unsigned char {
    Succeeded,
    FileInUse,  // failed, but writing the file in place may still succeed
    Failed,
};

// Classifies the last error; must be called directly after the system call that failed. On a full disk,
// writing the file in place would fail as well and could lose the old content.
WriteResult ClassifyLastError() noexcept {
    const DWORD error = GetLastError();
    return error == ERROR_DISK_FULL || error == ERROR_HANDLE_DISK_FULL ? WriteResult::Failed
                                                                       : WriteResult::FileInUse;
}

// Returns the path of the temporary file. It has the same length as `path`, so it does not exceed a path
// limit.
std::wstring TemporaryFileFor(const std::wstring& path) {
    constexpr std::wstring_view extension = L".new";
    return path.substr(0, path.size() - extension.size()).append(extension);
}

bool IsReadOnly(const std::wstring& path) noexcept {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
}

// Returns the attributes of a file that can be passed to CreateFileW for another file.
DWORD AttributesOf(const std::wstring& path) noexcept {
    constexpr DWORD kept = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE |
                           FILE_ATTRIBUTE_NOT_CONTENT_INDEXED | FILE_ATTRIBUTE_ENCRYPTED;
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes == INVALID_FILE_ATTRIBUTES ? FILE_ATTRIBUTE_NORMAL : attributes & kept;
}

// Clears the attributes, because deleting a read-only file or overwriting a hidden or read-only one fails.
void RemoveProtection(const std::wstring& path) noexcept {
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
}

void Remove(const std::wstring& path) noexcept {
    RemoveProtection(path);
    DeleteFileW(path.c_str());
}

HANDLE CreateTemporaryFile(const std::wstring& temporaryFile, const std::wstring& path) {
    CAccessRights rights{path};
    const auto create = [&] {
        return CreateFileW(temporaryFile.c_str(), GENERIC_WRITE, 0, rights.ForNewFile(), CREATE_NEW,
                           AttributesOf(path), nullptr);
    };
    const HANDLE created = create();
    if (created != INVALID_HANDLE_VALUE || GetLastError() != ERROR_FILE_EXISTS)
        return created;
    // The file was left by a process that terminated during a save.
    Remove(temporaryFile);
    return create();
}

WriteResult WriteTemporaryFile(const std::wstring& temporaryFile, const std::wstring& path,
                               std::string_view content) {
    const CFile file{CreateTemporaryFile(temporaryFile, path)};
    if (!file.IsOpen())
        return ClassifyLastError();
    return file.Write(content) ? WriteResult::Succeeded : WriteResult::Failed;
}

// Atomically replaces the target. ReplaceFileW would preserve more of the old file, but needs two steps.
WriteResult RenameOver(const std::wstring& source, const std::wstring& target) noexcept {
    constexpr DWORD flags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    // A program that only reads the file usually closes it soon, so the rename is retried. The attempts only
    // yield the processor; they do not sleep.
    constexpr int attempts = 20;
    WriteResult result = WriteResult::FileInUse;
    for (int attempt = 0; attempt < attempts && result == WriteResult::FileInUse; ++attempt) {
        if (attempt > 0)
            SwitchToThread();
        result = MoveFileExW(source.c_str(), target.c_str(), flags) != FALSE ? WriteResult::Succeeded
                                                                             : ClassifyLastError();
    }
    return result;
}

// Not atomic: if the process terminates in this function, the file has mixed content. After a write error,
// the old content is restored.
bool WriteInPlace(const std::wstring& path, std::string_view content) {
    bool isNew = false;
    {
        const CFile file{CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                     OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr)};
        isNew = GetLastError() == ERROR_SUCCESS;
        std::string old;
        if (!file.IsOpen() || !file.Read(old))
            return false;
        if (file.Write(content))
            return true;
        file.Write(old);
    }
    if (isNew)
        Remove(path);
    return false;
}

}  // namespace

// Writes a temporary file first, flushes it to disk and then renames it over the target. If creating or
// renaming the temporary file fails for another reason than a full disk, writes the target in place.
bool ReplaceAtomically(const std::wstring& path, std::string_view content) {
    // Some systems let a rename replace a read-only file.
    if (IsReadOnly(path))
        return false;
    const std::wstring temporaryFile = TemporaryFileFor(path);
    WriteResult result = WriteTemporaryFile(temporaryFile, path, content);
    if (result == WriteResult::Succeeded)
        result = RenameOver(temporaryFile, path);
    if (result != WriteResult::Succeeded)
        Remove(temporaryFile);
    return result == WriteResult::Succeeded ||
           (result == WriteResult::FileInUse && WriteInPlace(path, content));
}

bool CopyAndFlush(const std::wstring& source, const std::wstring& target) noexcept {
    RemoveProtection(target);
    if (CopyFileW(source.c_str(), target.c_str(), FALSE) == FALSE)
        return false;
    const CFile copy{CreateFileW(target.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                 FILE_ATTRIBUTE_NORMAL, nullptr)};
    return copy.IsOpen() && copy.Flush();
}

}  // namespace ZOTDam
