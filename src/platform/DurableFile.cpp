#include "platform/DurableFile.h"

#include "platform/AccessRights.h"
#include "platform/File.h"

namespace ZOTDam {

namespace {

// What became of one step of a save.
enum class Step : unsigned char {
    Done,
    Refused,  // which need not keep anybody from writing into the file itself
    Failed,
};

// To be called at once when the system has refused something. A full disk would not hold the file itself
// either, and what was in it would be lost.
Step Refusal() noexcept {
    const DWORD error = GetLastError();
    return error == ERROR_DISK_FULL || error == ERROR_HANDLE_DISK_FULL ? Step::Failed : Step::Refused;
}

// Of the same length, so that no path becomes too long by it.
std::wstring SiblingOf(const std::wstring& path) {
    constexpr std::wstring_view extension = L".new";
    return path.substr(0, path.size() - extension.size()).append(extension);
}

bool IsReadOnly(const std::wstring& path) noexcept {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
}

// Those attributes of a file with which another one can be made.
DWORD AttributesOf(const std::wstring& path) noexcept {
    constexpr DWORD kept = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE |
                           FILE_ATTRIBUTE_NOT_CONTENT_INDEXED | FILE_ATTRIBUTE_ENCRYPTED;
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes == INVALID_FILE_ATTRIBUTES ? FILE_ATTRIBUTE_NORMAL : attributes & kept;
}

// A hidden or read-only file would resist both what follows here and being written anew.
void RemoveProtection(const std::wstring& path) noexcept {
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
}

void Remove(const std::wstring& path) noexcept {
    RemoveProtection(path);
    DeleteFileW(path.c_str());
}

HANDLE CreateSibling(const std::wstring& sibling, const std::wstring& path) {
    CAccessRights rights{path};
    const auto create = [&] {
        return CreateFileW(sibling.c_str(), GENERIC_WRITE, 0, rights.ForNewFile(), CREATE_NEW,
                           AttributesOf(path), nullptr);
    };
    const HANDLE created = create();
    if (created != INVALID_HANDLE_VALUE || GetLastError() != ERROR_FILE_EXISTS)
        return created;
    // What a process has left that died in a save.
    Remove(sibling);
    return create();
}

Step WriteSibling(const std::wstring& sibling, const std::wstring& path, std::string_view content) {
    const CFile file{CreateSibling(sibling, path)};
    if (!file.IsOpen())
        return Refusal();
    return file.Write(content) ? Step::Done : Step::Failed;
}

// ReplaceFileW would keep even more of the old file, but in two steps.
Step MoveOver(const std::wstring& source, const std::wstring& target) noexcept {
    constexpr DWORD flags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    // Who only has a look at the file is gone soon, so a refusal is not the end at once. Nobody waits,
    // though.
    constexpr int attempts = 20;
    Step step = Step::Refused;
    for (int attempt = 0; attempt < attempts && step == Step::Refused; ++attempt) {
        if (attempt > 0)
            SwitchToThread();
        step = MoveFileExW(source.c_str(), target.c_str(), flags) != FALSE ? Step::Done : Refusal();
    }
    return step;
}

// A process that dies in here leaves a mixture; a disk that refuses does not.
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

// The content goes into a sibling file first, which takes the file's place in one step, and only when all of
// it is on the disk. In a folder that admits no sibling the file itself is written.
bool WriteDurably(const std::wstring& path, std::string_view content) {
    // Some systems would move another file over a read-only one.
    if (IsReadOnly(path))
        return false;
    const std::wstring sibling = SiblingOf(path);
    Step step = WriteSibling(sibling, path, content);
    if (step == Step::Done)
        step = MoveOver(sibling, path);
    if (step != Step::Done)
        Remove(sibling);
    return step == Step::Done || (step == Step::Refused && WriteInPlace(path, content));
}

bool CopyDurably(const std::wstring& source, const std::wstring& target) noexcept {
    RemoveProtection(target);
    if (CopyFileW(source.c_str(), target.c_str(), FALSE) == FALSE)
        return false;
    const CFile copy{CreateFileW(target.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                 FILE_ATTRIBUTE_NORMAL, nullptr)};
    return copy.IsOpen() && copy.Flush();
}

}  // namespace ZOTDam
