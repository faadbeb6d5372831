#include "platform/AtomicFile.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

#include "platform/AccessRights.h"
#include "platform/File.h"

namespace ZOTDam {

namespace {

// ---- Names ----

// The extensions of temporary files. A process uses the first one that no other process uses. They have the
// length of ".xml", so that the path does not exceed a limit.
constexpr std::wstring_view TemporaryExtensions[] = {L".new", L".nw1", L".nw2", L".nw3", L".nw4",
                                                     L".nw5", L".nw6", L".nw7", L".nw8", L".nw9"};

std::wstring WithExtension(const std::wstring& path, std::wstring_view extension) {
    return path.substr(0, path.size() - extension.size()).append(extension);
}

std::wstring RedoFileFor(const std::wstring& path) {
    return path + L".redo";
}

// ---- The temporary file ----

bool IsDiskFull(DWORD error) noexcept {
    return error == ERROR_DISK_FULL || error == ERROR_HANDLE_DISK_FULL;
}

HANDLE OpenToDelete(const std::wstring& path) noexcept {
    return CreateFileW(path.c_str(), DELETE | FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING,
                       DoNotFollowLinks, nullptr);
}

// Deletes a file unless a process has it open.
void DeleteUnused(const std::wstring& path) noexcept {
    CFile file{OpenToDelete(path)};
    if (!file.IsOpen())
        return;
    // A read-only file cannot be deleted.
    FILE_BASIC_INFO information = {};
    information.FileAttributes = FILE_ATTRIBUTE_NORMAL;
    SetFileInformationByHandle(file.Handle(), FileBasicInfo, &information, sizeof information);
    file.Delete();
}

// Deletes the temporary files of processes that ended during a save. The temporary file of a living process
// stays, because that process has it open.
void DeleteLeftOverFiles(const std::wstring& path) {
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW(WithExtension(path, L".n??").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return;
    FindClose(search);
    for (const std::wstring_view extension : TemporaryExtensions)
        DeleteUnused(WithExtension(path, extension));
}

// Returns the attributes of a file that can be passed to CreateFileW for another file.
DWORD AttributesForCopy(DWORD attributes) noexcept {
    constexpr DWORD kept = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE |
                           FILE_ATTRIBUTE_NOT_CONTENT_INDEXED | FILE_ATTRIBUTE_ENCRYPTED;
    return attributes == INVALID_FILE_ATTRIBUTES ? FILE_ATTRIBUTE_NORMAL : attributes & kept;
}

constexpr DWORD TemporaryFileAccess = GENERIC_WRITE | DELETE;

// A new file next to the target, with the target's attributes and access rights. It is not shared, so no
// other process can change, rename or delete it until it is closed.
class CTemporaryFile : public CFile {
public:
    CTemporaryFile(const std::wstring& target, DWORD targetAttributes) : CFile{INVALID_HANDLE_VALUE} {
        CAccessRights rights{target};
        const DWORD flags = AttributesForCopy(targetAttributes) | FILE_FLAG_WRITE_THROUGH | DoNotFollowLinks;
        for (const std::wstring_view extension : TemporaryExtensions) {
            path = WithExtension(target, extension);
            Open(CreateFileW(path.c_str(), TemporaryFileAccess, 0, rights.ForNewFile(), CREATE_NEW, flags,
                             nullptr));
            error = IsOpen() ? ERROR_SUCCESS : GetLastError();
            if (IsOpen() || IsDiskFull(error))
                break;
        }
    }

    // Returns the error if the file could not be created.
    DWORD Error() const noexcept { return error; }

    // Renames the file with a function that needs the file to be closed.
    bool MoveTo(const std::wstring& target) noexcept {
        Close();
        if (MoveFileExW(path.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) !=
            FALSE)
            return true;
        const DWORD moveError = GetLastError();
        Open(CreateFileW(path.c_str(), TemporaryFileAccess, 0, nullptr, OPEN_EXISTING, DoNotFollowLinks,
                         nullptr));
        SetLastError(moveError);
        return false;
    }

private:
    std::wstring path;
    DWORD error = ERROR_SUCCESS;
};

// ---- Renames ----

// Missing from the headers for Windows 7.
constexpr auto FileRenameInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);
constexpr DWORD ReplaceIfExists = 1;
// Also replaces a file that is open, if all its users share the right to delete it.
constexpr DWORD PosixSemantics = 2;

bool Rename(const CFile& file, const std::wstring& newPath, FILE_INFO_BY_HANDLE_CLASS kind, DWORD flags) {
    constexpr std::size_t nameOffset = offsetof(FILE_RENAME_INFO, FileName);
    const std::size_t nameSize = newPath.size() * sizeof(wchar_t);
    std::vector<char> information(sizeof(FILE_RENAME_INFO) + nameSize);
    auto* const fields = reinterpret_cast<FILE_RENAME_INFO*>(information.data());
    // The first field contains the flags of the newer kind, and one of them as a BOOLEAN for the older one.
    std::memcpy(fields, &flags, sizeof flags);
    fields->FileNameLength = static_cast<DWORD>(nameSize);
    std::memcpy(information.data() + nameOffset, newPath.c_str(), nameSize);
    return SetFileInformationByHandle(file.Handle(), kind, fields, static_cast<DWORD>(information.size())) !=
           FALSE;
}

// Returns whether the last call failed because the system or the file system does not support it.
bool IsUnsupported() noexcept {
    const DWORD error = GetLastError();
    return error == ERROR_INVALID_PARAMETER || error == ERROR_INVALID_FUNCTION ||
           error == ERROR_NOT_SUPPORTED || error == ERROR_CALL_NOT_IMPLEMENTED ||
           error == ERROR_INVALID_LEVEL;
}

bool RenameOver(CTemporaryFile& file, const std::wstring& target) {
    if (Rename(file, target, FileRenameInfoEx, ReplaceIfExists | PosixSemantics))
        return true;
    if (!IsUnsupported())
        return false;
    if (Rename(file, target, FileRenameInfo, ReplaceIfExists))
        return true;
    return IsUnsupported() && file.MoveTo(target);
}

bool IsInUse(DWORD error) noexcept {
    return error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION;
}

// A program such as a virus scanner usually closes the file soon. Returns the error of the last attempt.
DWORD RenameOverWithRetries(CTemporaryFile& file, const std::wstring& target) {
    constexpr ULONGLONG timeout = 100;  // ms
    const ULONGLONG start = GetTickCount64();
    while (!RenameOver(file, target)) {
        const DWORD error = GetLastError();
        if (!IsInUse(error) || GetTickCount64() - start >= timeout)
            return error;
        Sleep(1);
    }
    return ERROR_SUCCESS;
}

// ---- Writing in place ----

// Each intermediate state on disk is a part of the new content (see IsPartOf).
bool Overwrite(const CFile& file, std::string_view content) noexcept {
    return file.Truncate() && file.Write(content);
}

// Writes the file in place. The complete temporary file becomes the redo file meanwhile, from which any
// process can complete the write if this process ends.
bool WriteWithRedoFile(CTemporaryFile& temporaryFile, const std::wstring& path, std::string_view content) {
    const CFile target{OpenForWriting(path)};
    std::string old;
    if (!target.IsOpen() || !target.Read(old) || !Rename(temporaryFile, RedoFileFor(path), FileRenameInfo, 0))
        return false;
    const bool isWritten = Overwrite(target, content);
    if (!isWritten && !Overwrite(target, old)) {
        // Neither content could be written, so the redo file is needed.
        temporaryFile.Close();
        return false;
    }
    // Before the target is closed: another process could replace it, and an older redo file must not remain
    // then.
    temporaryFile.Delete();
    return isWritten;
}

// Not atomic: if the process ends in this function, the file has mixed content. After a write error, the old
// content is restored.
bool WriteWithoutProtection(const std::wstring& path, std::string_view content) {
    const HANDLE opened = CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                      OPEN_ALWAYS, DoNotFollowLinks, nullptr);
    const bool isNew = GetLastError() == ERROR_SUCCESS;
    CFile file{RejectLink(opened)};
    std::string old;
    if (!file.IsOpen() || !file.Read(old))
        return false;
    if (file.Write(content))
        return true;
    if (isNew) {
        file.Close();
        DeleteFileW(path.c_str());
    } else {
        file.Write(old);
    }
    return false;
}

// Returns whether the file can be the result of an incomplete Overwrite with the content. After a power
// failure, some of its bytes can be zero, which no byte of an XML file in UTF-8 is.
bool IsPartOf(std::string_view found, std::string_view content) noexcept {
    return found.size() <= content.size() &&
           std::equal(found.begin(), found.end(), content.begin(),
                      [](char byte, char expected) { return byte == expected || byte == '\0'; });
}

// Completes a write in place with the content of the redo file, unless the target is complete. Returns
// whether the redo file is no longer needed.
bool Redo(const std::wstring& path, std::string_view content) {
    const CFile target{OpenForWriting(path)};
    std::string found;
    // Other content is the old one, of which nothing was overwritten, or a newer one.
    return target.IsOpen() && target.Read(found) && (!IsPartOf(found, content) || Overwrite(target, content));
}

}  // namespace

bool ReplaceAtomically(const std::wstring& path, std::string_view content) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    // Some systems let a rename replace a read-only file. A link is not replaced either, because it may name
    // a file that this process can write and the user cannot.
    constexpr DWORD rejected = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_REPARSE_POINT;
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & rejected) != 0)
        return false;
    DeleteLeftOverFiles(path);
    CTemporaryFile temporaryFile{path, attributes};
    if (!temporaryFile.IsOpen())
        return !IsDiskFull(temporaryFile.Error()) && WriteWithoutProtection(path, content);
    if (temporaryFile.Write(content)) {
        const DWORD error = RenameOverWithRetries(temporaryFile, path);
        // On a full disk, writing in place would fail as well.
        if (error == ERROR_SUCCESS || (!IsDiskFull(error) && WriteWithRedoFile(temporaryFile, path, content)))
            return true;
    }
    temporaryFile.Delete();
    return false;
}

bool HasRedoFile(const std::wstring& path) {
    if (path.empty())
        return false;
    const DWORD attributes = GetFileAttributesW(RedoFileFor(path).c_str());
    constexpr DWORD rejected = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & rejected) == 0;
}

bool CompleteInterruptedWrite(const std::wstring& path) {
    if (!HasRedoFile(path))
        return false;
    CFile redoFile{RejectLink(CreateFileW(RedoFileFor(path).c_str(), GENERIC_READ | DELETE, 0, nullptr,
                                          OPEN_EXISTING, DoNotFollowLinks, nullptr))};
    std::string content;
    if (!redoFile.IsOpen() || !redoFile.Read(content))
        return false;
    if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES)
        return Rename(redoFile, path, FileRenameInfo, 0);
    if (!Redo(path, content))
        return false;
    redoFile.Delete();
    return true;
}

bool CopyAndFlush(const std::wstring& source, const std::wstring& target) noexcept {
    // CopyFileW would write to the file that a link names.
    if (IsLink(GetFileAttributesW(target.c_str())))
        return false;
    // A read-only or hidden file is not overwritten.
    SetFileAttributesW(target.c_str(), FILE_ATTRIBUTE_NORMAL);
    if (CopyFileW(source.c_str(), target.c_str(), FALSE) == FALSE)
        return false;
    const CFile copy{OpenForWriting(target)};
    return copy.IsOpen() && copy.Flush();
}

}  // namespace ZOTDam
