#include "DataFiles.h"

#include <windows.h>

#include <algorithm>
#include <fstream>

#include "Error.h"
#include "platform/LocalisedFile.h"
#include "Text.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Client {

namespace {

// Checks the attribute too: on some systems an administrator can open a read-only file for writing, but the
// library never writes to it.
bool IsWritable(const std::filesystem::path& file) {
    const DWORD attributes = GetFileAttributesW(file.c_str());
    return (attributes & FILE_ATTRIBUTE_READONLY) == 0 &&
           std::fstream{file, std::ios::in | std::ios::out | std::ios::binary}.is_open();
}

bool IsLanguageName(const std::string& text) {
    return !text.empty() && std::ranges::all_of(text, [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-';
    });
}

}  // namespace

FolderRedirection::FolderRedirection(const wchar_t* folderVariable, const std::filesystem::path& folder)
    : variable{folderVariable}, before{Expand((L'%' + std::wstring{folderVariable} + L'%').c_str())} {
    SetEnvironmentVariableW(variable, std::filesystem::absolute(folder).c_str());
}

FolderRedirection::~FolderRedirection() {
    SetEnvironmentVariableW(variable, before.c_str());
}

std::filesystem::path Expand(const wchar_t* text) {
    std::wstring expanded(ExpandEnvironmentStringsW(text, nullptr, 0), L'\0');
    ExpandEnvironmentStringsW(text, expanded.data(), static_cast<DWORD>(expanded.size()));
    return expanded.c_str();
}

std::filesystem::path PathOf(const DataFile& file) {
    return Expand(file.location.folder) / file.location.fileName;
}

std::string TitleOf(const DataFile& file) {
    return file.title + (" " + Utf8(PathOf(file)));
}

std::filesystem::path NeutralStringTable() {
    return PathOf(Defaults).replace_filename(StringTableLocation.fileName);
}

std::filesystem::path StringTableFor(const std::string& language) {
    if (!IsLanguageName(language))
        throw UsageError{"\"" + language + "\" is not a language name: specify a name such as de-DE."};
    const std::filesystem::path neutralFile = NeutralStringTable();
    const std::filesystem::path copy = FindLocalisedCopy(neutralFile, ToUtf16(language));
    return copy.empty() ? neutralFile.parent_path() / ToUtf16(language) / neutralFile.filename() : copy;
}

bool IsBusy(const DataFile& file) noexcept {
    const HANDLE marker = OpenMutexW(SYNCHRONIZE, FALSE, file.location.busyMarker);
    if (marker == nullptr)
        return GetLastError() == ERROR_ACCESS_DENIED;
    CloseHandle(marker);
    return true;
}

void ThrowInUse(const DataFile& file) {
    throw Error{ErrorKind::InUse, "The " + TitleOf(file) + " is in use by another program.", PathOf(file)};
}

void RequireIdle(const DataFile& file) {
    if (IsBusy(file))
        ThrowInUse(file);
}

void RequireSaved(const DataFile& file) {
    RequireIdle(file);
    if (!IsWritable(PathOf(file)))
        throw Error{ErrorKind::NotStored, "The " + TitleOf(file) + " cannot be written.", PathOf(file)};
}

}  // namespace ZOTDam::Client
