#include "platform/LocalisedFile.h"

#include <windows.h>

#include <shlwapi.h>

namespace ZOTDam {

namespace {

using LanguageName = wchar_t[LOCALE_NAME_MAX_LENGTH];

// Returns false when the system has no name for the user's language.
bool GetUserLanguage(LanguageName& name) noexcept {
    name[0] = L'\0';
    const LCID locale = MAKELCID(GetUserDefaultUILanguage(), SORT_DEFAULT);
    return LCIDToLocaleName(locale, name, LOCALE_NAME_MAX_LENGTH, 0) != 0 && name[0] != L'\0';
}

// The path of the copy on a system that does not implement the lookup: "Folder\en-US\File.xml.mui".
std::wstring PathInLanguageFolder(const std::wstring& neutralFile, const wchar_t* language) {
    const std::size_t fileName = neutralFile.rfind(L'\\') + 1;
    return neutralFile.substr(0, fileName) + language + L'\\' + neutralFile.substr(fileName) + L".mui";
}

}  // namespace

std::wstring LocalisedFile(const std::wstring& neutralFile) {
    LanguageName language;
    if (neutralFile.empty() || !GetUserLanguage(language))
        return neutralFile;
    wchar_t copy[MAX_PATH] = {};
    ULONG languageSize = LOCALE_NAME_MAX_LENGTH;
    ULONG copySize = MAX_PATH;
    ULONGLONG enumerator = 0;
    if (GetFileMUIPath(MUI_LANGUAGE_NAME, neutralFile.c_str(), language, &languageSize, copy, &copySize,
                       &enumerator) != FALSE)
        return copy;
    if (GetLastError() == ERROR_CALL_NOT_IMPLEMENTED) {
        std::wstring copyInLanguageFolder = PathInLanguageFolder(neutralFile, language);
        if (PathFileExistsW(copyInLanguageFolder.c_str()) != FALSE)
            return copyInLanguageFolder;
    }
    return neutralFile;
}

}  // namespace ZOTDam
