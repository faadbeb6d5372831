#include "platform/LocalisedFile.h"

#include <windows.h>

#include <algorithm>

#include "platform/File.h"

namespace ZOTDam {

namespace {

using LanguageName = wchar_t[LOCALE_NAME_MAX_LENGTH];

// Returns false when the system has no name for the user's language.
bool GetUserLanguage(LanguageName& name) noexcept {
    name[0] = L'\0';
    const LCID locale = MAKELCID(GetUserDefaultUILanguage(), SORT_DEFAULT);
    return LCIDToLocaleName(locale, name, LOCALE_NAME_MAX_LENGTH, 0) != 0 && name[0] != L'\0';
}

std::wstring FindInLanguageFolder(const std::wstring& neutralFile, const wchar_t* language) {
    const std::size_t fileName = neutralFile.rfind(L'\\') + 1;
    std::wstring plainCopy =
        neutralFile.substr(0, fileName) + language + L'\\' + neutralFile.substr(fileName);
    std::wstring muiCopy = plainCopy + L".mui";
    if (IsFile(muiCopy))
        return muiCopy;
    return IsFile(plainCopy) ? plainCopy : std::wstring{};
}

}  // namespace

std::wstring FindLocalisedCopy(const std::wstring& neutralFile, std::wstring language) {
    // The lookup returns the language of the copy in the same buffer.
    language.resize(std::max<std::size_t>(LOCALE_NAME_MAX_LENGTH, language.size() + 1));
    auto languageSize = static_cast<ULONG>(language.size());
    wchar_t copy[MAX_PATH] = {};
    ULONG copySize = MAX_PATH;
    ULONGLONG enumerator = 0;
    if (GetFileMUIPath(MUI_LANGUAGE_NAME, neutralFile.c_str(), language.data(), &languageSize, copy,
                       &copySize, &enumerator) != FALSE)
        return copy;
    return GetLastError() == ERROR_CALL_NOT_IMPLEMENTED ? FindInLanguageFolder(neutralFile, language.c_str())
                                                        : std::wstring{};
}

std::wstring LocalisedFile(const std::wstring& neutralFile) {
    LanguageName language;
    if (neutralFile.empty() || !GetUserLanguage(language))
        return neutralFile;
    std::wstring copy = FindLocalisedCopy(neutralFile, language);
    return copy.empty() ? neutralFile : copy;
}

}  // namespace ZOTDam
