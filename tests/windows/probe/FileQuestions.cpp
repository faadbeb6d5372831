// Questions about files: replacing, sharing, deleting and their times.
#include <winternl.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "platform/AccessRights.h"
#include "platform/File.h"
#include "platform/FileState.h"
#include "windows/probe/Questions.h"

namespace ZOTDam::Probe {

namespace {

constexpr DWORD ShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

HANDLE Open(const std::wstring& path, DWORD access, DWORD sharing, DWORD disposition = OPEN_EXISTING) {
    return CreateFileW(path.c_str(), access, sharing, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
}

void Create(const std::wstring& path, std::string_view content = "content") {
    CFile{Open(path, GENERIC_WRITE, 0, CREATE_ALWAYS)}.Write(content);
}

std::string Content(const std::wstring& path) {
    const CFile file{Open(path, GENERIC_READ, ShareAll)};
    std::string content;
    return file.IsOpen() && file.Read(content) ? content : "";
}

// ---- Renames ----

constexpr auto RenameInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);
constexpr DWORD Replace = 1;
constexpr DWORD PosixSemantics = 2;

bool Rename(const std::wstring& from, const std::wstring& to, FILE_INFO_BY_HANDLE_CLASS kind, DWORD flags) {
    const CFile file{Open(from, GENERIC_WRITE | DELETE, 0)};
    const std::size_t nameSize = to.size() * sizeof(wchar_t);
    std::vector<char> buffer(sizeof(FILE_RENAME_INFO) + nameSize);
    auto* const information = reinterpret_cast<FILE_RENAME_INFO*>(buffer.data());
    std::memcpy(information, &flags, sizeof flags);
    information->FileNameLength = static_cast<DWORD>(nameSize);
    std::memcpy(buffer.data() + offsetof(FILE_RENAME_INFO, FileName), to.data(), nameSize);
    return SetFileInformationByHandle(file.Handle(), kind, information, static_cast<DWORD>(buffer.size())) !=
           FALSE;
}

// Renames a new file over an existing one, which a reader that shares all accesses may have open.
std::string RenameOver(FILE_INFO_BY_HANDLE_CLASS kind, DWORD flags, bool isOpen) {
    const Folder folder;
    Create(folder / L"old.xml", "old");
    Create(folder / L"new.xml", "new");
    const CFile reader{isOpen ? Open(folder / L"old.xml", GENERIC_READ, ShareAll) : INVALID_HANDLE_VALUE};
    std::string outcome = Outcome(Rename(folder / L"new.xml", folder / L"old.xml", kind, flags));
    const std::string content = Content(folder / L"old.xml");
    if (content != (outcome == "success" ? "new" : "old"))
        outcome += ", content " + content;
    return outcome;
}

std::string PosixRenameOverOpenFile() {
    return RenameOver(RenameInfoEx, Replace | PosixSemantics, true);
}

std::string PosixRename() {
    return RenameOver(RenameInfoEx, Replace | PosixSemantics, false);
}

std::string RenameOverOpenFile() {
    return RenameOver(FileRenameInfo, Replace, true);
}

std::string RenameOverClosedFile() {
    return RenameOver(FileRenameInfo, Replace, false);
}

std::string RenameWithoutReplacing() {
    return RenameOver(FileRenameInfo, 0, false);
}

std::string MoveOverOpenFile() {
    const Folder folder;
    Create(folder / L"old.xml");
    Create(folder / L"new.xml");
    const CFile reader{Open(folder / L"old.xml", GENERIC_READ, ShareAll)};
    return Outcome(MoveFileExW((folder / L"new.xml").c_str(), (folder / L"old.xml").c_str(),
                               MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != FALSE);
}

// ---- Sharing ----

// Opens a file a second time.
std::string OpenTwice(DWORD firstAccess, DWORD firstSharing, DWORD access, DWORD sharing,
                      DWORD disposition = OPEN_EXISTING) {
    const Folder folder;
    Create(folder / L"file.xml");
    const CFile first{Open(folder / L"file.xml", firstAccess, firstSharing)};
    const CFile second{Open(folder / L"file.xml", access, sharing, disposition)};
    return Outcome(second.IsOpen());
}

std::string OpenUnsharedFile() {
    return OpenTwice(GENERIC_WRITE | DELETE, 0, DELETE | FILE_WRITE_ATTRIBUTES, 0);
}

std::string CreateOverUnsharedFile() {
    return OpenTwice(GENERIC_WRITE | DELETE, 0, GENERIC_WRITE | DELETE, 0, CREATE_NEW);
}

std::string ReadWhileWritten() {
    return OpenTwice(GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, GENERIC_READ,
                     FILE_SHARE_READ | FILE_SHARE_DELETE);
}

std::string WriteWhileRead() {
    return OpenTwice(GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, GENERIC_READ | GENERIC_WRITE,
                     FILE_SHARE_READ);
}

// ---- Deleting and copying ----

bool Exists(const std::wstring& path) {
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool MarkForDeletion(const CFile& file) {
    FILE_DISPOSITION_INFO disposition = {TRUE};
    return SetFileInformationByHandle(file.Handle(), FileDispositionInfo, &disposition, sizeof disposition) !=
           FALSE;
}

std::string DeleteByHandle() {
    const Folder folder;
    Create(folder / L"file.xml");
    CFile{Open(folder / L"file.xml", DELETE, 0)}.Delete();
    return YesOrNo(!Exists(folder / L"file.xml"));
}

std::string DeleteReadOnlyFile() {
    const Folder folder;
    const std::wstring path = folder / L"file.xml";
    Create(path);
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
    std::string outcome = "success";
    {
        const CFile file{Open(path, DELETE | FILE_WRITE_ATTRIBUTES, 0)};
        outcome = Outcome(MarkForDeletion(file));
    }
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    return outcome;
}

std::string DeleteAfterClearingReadOnly() {
    const Folder folder;
    const std::wstring path = folder / L"file.xml";
    Create(path);
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
    CFile file{Open(path, DELETE | FILE_WRITE_ATTRIBUTES, 0)};
    FILE_BASIC_INFO information = {};
    information.FileAttributes = FILE_ATTRIBUTE_NORMAL;
    SetFileInformationByHandle(file.Handle(), FileBasicInfo, &information, sizeof information);
    file.Delete();
    return YesOrNo(!Exists(path));
}

std::string CopyOverHiddenFile() {
    const Folder folder;
    Create(folder / L"source.xml");
    Create(folder / L"target.xml");
    SetFileAttributesW((folder / L"target.xml").c_str(), FILE_ATTRIBUTE_HIDDEN);
    return Outcome(CopyFileW((folder / L"source.xml").c_str(), (folder / L"target.xml").c_str(), FALSE) !=
                   FALSE);
}

std::string CreateWithRightsOfOtherFile() {
    const Folder folder;
    Create(folder / L"file.xml");
    CAccessRights rights{folder / L"file.xml"};
    SECURITY_ATTRIBUTES* const security = rights.ForNewFile();
    if (security == nullptr)
        return "rights not readable";
    return Outcome(CFile{CreateFileW((folder / L"new.xml").c_str(), GENERIC_WRITE, 0, security, CREATE_NEW,
                                     FILE_ATTRIBUTE_NORMAL, nullptr)}
                       .IsOpen());
}

std::string FindByPattern() {
    const Folder folder;
    Create(folder / L"file.xml");
    Create(folder / L"file.nw3");
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW((folder / L"file.n??").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return "nothing";
    const bool isOnly = FindNextFileW(search, &found) == FALSE;
    FindClose(search);
    return isOnly && std::wstring_view{found.cFileName} == L"file.nw3" ? "the temporary file" : "more files";
}

std::string CreateLongPath() {
    const Folder folder;
    std::wstring path = L"\\\\?\\" + (folder / L"long");
    std::vector<std::wstring> folders;
    while (path.size() < MAX_PATH) {
        folders.push_back(path);
        CreateDirectoryW(path.c_str(), nullptr);
        path += L'\\' + std::wstring(100, L'x');
    }
    std::string outcome = Outcome(CFile{Open(path, GENERIC_WRITE, 0, CREATE_NEW)}.IsOpen());
    // The destructor of the folder does not delete files with long paths.
    DeleteFileW(path.c_str());
    for (; !folders.empty(); folders.pop_back())
        RemoveDirectoryW(folders.back().c_str());
    return outcome;
}

// ---- Times ----

std::string ChangeTimeByPath() {
    const Folder folder;
    Create(folder / L"file.xml");
    const CFile file{Open(folder / L"file.xml", GENERIC_READ, ShareAll)};
    const FileState byPath = StateOf(folder / L"file.xml");
    if (byPath.changeTime == 0)
        return "missing";
    return byPath == StateOf(file.Handle()) ? "that of the open file" : "another one";
}

std::string ChangeTimeAfterHiddenWrite() {
    const Folder folder;
    const std::wstring path = folder / L"file.xml";
    Create(path, "old");
    const FileState before = StateOf(path);
    Sleep(50);
    {
        const CFile file{Open(path, GENERIC_WRITE | FILE_WRITE_ATTRIBUTES, 0)};
        file.Write("new");
        FILETIME time;
        time.dwLowDateTime = static_cast<DWORD>(before.writeTime);
        time.dwHighDateTime = static_cast<DWORD>(before.writeTime >> 32);
        SetFileTime(file.Handle(), nullptr, nullptr, &time);
    }
    const FileState after = StateOf(path);
    return after.writeTime == before.writeTime && after.changeTime != before.changeTime ? "new" : "old";
}

std::string ChangeTimeAfterReplacement() {
    const Folder folder;
    Create(folder / L"old.xml", "old");
    Sleep(50);
    Create(folder / L"new.xml", "new");
    const FileState before = StateOf(folder / L"old.xml");
    Rename(folder / L"new.xml", folder / L"old.xml", FileRenameInfo, Replace);
    return StateOf(folder / L"old.xml").changeTime != before.changeTime ? "new" : "old";
}

std::string StateWhileWritten() {
    const Folder folder;
    const std::wstring path = folder / L"file.xml";
    Create(path, "old");
    const CFile file{Open(path, GENERIC_WRITE, FILE_SHARE_READ)};
    file.Write("longer");
    return StateOf(path).size == 6 ? "current" : "old";
}

}  // namespace

std::vector<Question> FileQuestions() {
    return {
        {"posix-rename", PosixRename, "success", "success or error 1 or error 50 or error 87"},
        {"posix-rename-over-open-file", PosixRenameOverOpenFile, "success",
         "success or error 1 or error 5 or error 32 or error 50 or error 87"},
        {"rename", RenameOverClosedFile, "success", "success"},
        {"rename-over-open-file", RenameOverOpenFile, "error 5", "success or error 5 or error 32"},
        {"rename-without-replacing", RenameWithoutReplacing, "error 183", "error 5 or error 80 or error 183"},
        {"move-over-open-file", MoveOverOpenFile, "error 5", "success or error 5 or error 32"},
        {"open-unshared-file", OpenUnsharedFile, "error 32", "error 32"},
        {"create-over-unshared-file", CreateOverUnsharedFile, "error 80", "error 32 or error 80"},
        {"read-while-written", ReadWhileWritten, "error 32", "error 32"},
        {"write-while-read", WriteWhileRead, "error 32", "error 32"},
        {"delete-by-handle", DeleteByHandle, "yes", "yes"},
        {"delete-read-only-file", DeleteReadOnlyFile, "error 5", "any"},
        {"delete-after-clearing-read-only", DeleteAfterClearingReadOnly, "yes", "yes"},
        {"copy-over-hidden-file", CopyOverHiddenFile, "error 5", "any"},
        {"create-with-rights-of-other-file", CreateWithRightsOfOtherFile, "success",
         "success or rights not readable"},
        {"find-by-pattern", FindByPattern, "the temporary file", "the temporary file or more files"},
        {"create-long-path", CreateLongPath, "success", "success"},
        {"change-time-by-path", ChangeTimeByPath, "that of the open file",
         "that of the open file or missing"},
        {"change-time-after-hidden-write", ChangeTimeAfterHiddenWrite, "new", "new"},
        {"change-time-after-replacement", ChangeTimeAfterReplacement, "new", "new"},
        {"state-while-written", StateWhileWritten, "?", "current"},
    };
}

}  // namespace ZOTDam::Probe
