#include "DataFiles.h"

#include <windows.h>

#include <algorithm>
#include <fstream>

#include "Error.h"
#include "Text.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Client {

namespace {

std::filesystem::path Expand(const wchar_t* text) {
    std::wstring expanded(ExpandEnvironmentStringsW(text, nullptr, 0), L'\0');
    ExpandEnvironmentStringsW(text, expanded.data(), static_cast<DWORD>(expanded.size()));
    return expanded.c_str();
}

void Redirect(const wchar_t* variable, const std::filesystem::path& folder) {
    SetEnvironmentVariableW(variable, std::filesystem::absolute(folder).c_str());
}

bool IsBusy(const DataFile& file) noexcept {
    const HANDLE marker = OpenMutexW(SYNCHRONIZE, FALSE, file.busyMarker);
    if (marker == nullptr)
        return GetLastError() == ERROR_ACCESS_DENIED;
    CloseHandle(marker);
    return true;
}

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

// Returns an empty string if the system has no name for the language.
std::wstring LanguageOfUser() {
    wchar_t name[LOCALE_NAME_MAX_LENGTH] = {};
    LCIDToLocaleName(MAKELCID(GetUserDefaultUILanguage(), SORT_DEFAULT), name, LOCALE_NAME_MAX_LENGTH, 0);
    return name;
}

}  // namespace

void RedirectProgramFiles(const std::filesystem::path& folder) {
    Redirect(L"ProgramFiles", folder);
}

void RedirectProgramData(const std::filesystem::path& folder) {
    Redirect(L"ProgramData", folder);
}

std::filesystem::path PathOf(const DataFile& file) {
    return Expand(file.location);
}

std::string TitleOf(const DataFile& file) {
    return file.title + (" " + Utf8(PathOf(file)));
}

std::filesystem::path StringTableFor(const std::string& language) {
    if (!IsLanguageName(language))
        throw UsageError{"\"" + language + "\" is no language: give its name, such as de-DE."};
    return PathOf(Defaults).parent_path() / ToUtf16(language) / L"StringTable.xml.mui";
}

std::filesystem::path StringTableOfUser() {
    std::filesystem::path neutral = PathOf(Defaults).replace_filename(L"StringTable.xml");
    std::wstring language = LanguageOfUser();
    if (language.empty())
        return neutral;
    const std::filesystem::path copy = StringTableFor(ToUtf8(language));
    wchar_t found[MAX_PATH] = {};
    ULONG languageSize = LOCALE_NAME_MAX_LENGTH;
    ULONG foundSize = MAX_PATH;
    ULONGLONG enumerator = 0;
    language.resize(languageSize);
    if (GetFileMUIPath(MUI_LANGUAGE_NAME, neutral.c_str(), language.data(), &languageSize, found, &foundSize,
                       &enumerator) != FALSE)
        return found;
    // Some systems do not implement the lookup. On these, the library searches for the copy itself.
    const bool isUnknown = GetLastError() == ERROR_CALL_NOT_IMPLEMENTED;
    std::error_code error;
    return isUnknown && exists(copy, error) ? copy : neutral;
}

void RequireIdle(const DataFile& file) {
    if (IsBusy(file))
        throw Error{"The " + TitleOf(file) + " is in use by another program."};
}

void RequireSaved(const DataFile& file) {
    RequireIdle(file);
    if (!IsWritable(PathOf(file)))
        throw Error{"The " + TitleOf(file) + " cannot be written."};
}

}  // namespace ZOTDam::Client
