// Questions about named mutexes, languages, the display, the C runtime and COM outside the DOM.
#include <objbase.h>
#include <rpc.h>

#include <climits>
#include <cwchar>
#include <fstream>
#include <string_view>
#include <thread>

#include "windows/probe/Questions.h"
#include "xml/DomInterfaces.h"

namespace ZOTDam::Probe {

namespace {

// ---- Named mutexes ----

std::wstring MutexName() {
    return L"zotdam-probe-" + std::to_wstring(GetCurrentProcessId());
}

// A mutex as a busy marker creates it.
class Marker {
public:
    Marker() : mutex{CreateMutexW(nullptr, TRUE, MutexName().c_str())} {}
    Marker(const Marker&) = delete;
    Marker& operator=(const Marker&) = delete;
    ~Marker() { CloseHandle(mutex); }

private:
    HANDLE mutex;
};

std::string OpenMarker(const std::wstring& prefix) {
    const HANDLE mutex = OpenMutexW(SYNCHRONIZE | MUTEX_MODIFY_STATE, FALSE, (prefix + MutexName()).c_str());
    std::string outcome = Outcome(mutex != nullptr);
    if (mutex != nullptr)
        CloseHandle(mutex);
    return outcome;
}

std::string OpenHeldMarker() {
    const Marker marker;
    return OpenMarker(L"");
}

std::string OpenClosedMarker() {
    { const Marker marker; }
    return OpenMarker(L"");
}

std::string CreateMarkerTwice() {
    const Marker marker;
    SetLastError(ERROR_SUCCESS);
    const Marker second;
    return std::to_string(GetLastError());
}

std::string OpenMarkerOfSession() {
    const Marker marker;
    return OpenMarker(L"Local\\");
}

std::string OpenGlobalMarker() {
    const Marker marker;
    return OpenMarker(L"Global\\");
}

// ---- Languages ----

std::string NameOfLanguage(LANGID language) {
    wchar_t name[LOCALE_NAME_MAX_LENGTH] = {};
    if (LCIDToLocaleName(MAKELCID(language, SORT_DEFAULT), name, LOCALE_NAME_MAX_LENGTH, 0) == 0)
        return "none";
    return name[0] == L'\0' ? "empty" : std::filesystem::path{name}.string();
}

std::string NameOfGerman() {
    return NameOfLanguage(MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN));
}

std::string NameOfUnknownLanguage() {
    return NameOfLanguage(0x03ff);
}

std::string NameOfInvariantLanguage() {
    return NameOfLanguage(LANG_INVARIANT);
}

// Looks up the German copy of a file that is not a program. The only copy has the given name.
std::string LookUpCopy(const wchar_t* nameOfCopy) {
    const Folder folder;
    CreateDirectoryW((folder / L"de-DE").c_str(), nullptr);
    const std::wstring neutralFile = folder / L"File.xml";
    std::ofstream{std::filesystem::path{neutralFile}} << "<E/>";
    std::ofstream{std::filesystem::path{(folder / L"de-DE\\") + nameOfCopy}} << "<E/>";
    wchar_t language[LOCALE_NAME_MAX_LENGTH] = L"de-DE";
    wchar_t copy[MAX_PATH] = {};
    ULONG languageSize = LOCALE_NAME_MAX_LENGTH;
    ULONG copySize = MAX_PATH;
    ULONGLONG enumerator = 0;
    if (GetFileMUIPath(MUI_LANGUAGE_NAME, neutralFile.c_str(), language, &languageSize, copy, &copySize,
                       &enumerator) != FALSE)
        return "found";
    return GetLastError() == ERROR_CALL_NOT_IMPLEMENTED ? "not implemented" : "not found";
}

std::string LookUpPlainName() {
    return LookUpCopy(L"File.xml");
}

std::string LookUpMuiName() {
    return LookUpCopy(L"File.xml.mui");
}

// ---- The display ----

std::string DisplayModes() {
    DEVMODEW mode = {};
    DWORD number = 0;
    bool haveRates = true;
    while (EnumDisplaySettingsW(nullptr, number, &mode) != FALSE) {
        haveRates = haveRates && mode.dmDisplayFrequency > 1;
        ++number;
    }
    if (number == 0)
        return "no modes";
    return haveRates ? "modes with rates" : "modes without rates";
}

// ---- Strings ----

std::string ParseBracedGuid() {
    wchar_t text[] = L"{381b4222-f694-41f0-9685-ff5bb260df2e}";
    UUID guid;
    return Outcome(UuidFromStringW(reinterpret_cast<RPC_WSTR>(text), &guid) == RPC_S_OK) == "success"
               ? "accepted"
               : "refused";
}

std::string FormatGuid() {
    UUID guid = {0x381B4222, 0xF694, 0x41F0, {0x96, 0x85, 0xFF, 0x5B, 0xB2, 0x60, 0xDF, 0x2E}};
    RPC_WSTR text = nullptr;
    if (UuidToStringW(&guid, &text) != RPC_S_OK)
        return "none";
    std::string formatted = std::filesystem::path{reinterpret_cast<const wchar_t*>(text)}.string();
    RpcStringFreeW(&text);
    return formatted;
}

std::string NumberTooLarge() {
    return YesOrNo(std::wcstol(L"99999999999", nullptr, 10) == LONG_MAX &&
                   std::wcstol(L"-99999999999", nullptr, 10) == LONG_MIN);
}

std::string CaseOfOtherLetters() {
    return YesOrNo(_wcsicmp(L"\u00e4", L"\u00c4") == 0);
}

std::string ExpandUnknownVariable() {
    wchar_t expanded[64] = {};
    ExpandEnvironmentStringsW(L"%zotdam-probe-missing%", expanded, 64);
    return YesOrNo(std::wstring_view{expanded} == L"%zotdam-probe-missing%");
}

// ---- COM ----

std::string CreateWithoutCom() {
    HRESULT result = S_OK;
    std::thread{[&result] {
        void* created = nullptr;
        result = CoCreateInstance(DomDocument60, nullptr, CLSCTX_ALL, __uuidof(IXMLDOMDocument), &created);
    }}.join();
    return result == CO_E_NOTINITIALIZED ? "not initialised" : "result " + std::to_string(result);
}

}  // namespace

std::vector<Question> SystemQuestions() {
    return {
        {"open-held-marker", OpenHeldMarker, "success", "success"},
        {"open-closed-marker", OpenClosedMarker, "error 2", "error 2"},
        {"create-marker-twice", CreateMarkerTwice, "183", "183"},
        {"open-marker-of-session", OpenMarkerOfSession, "success", "any"},
        {"open-global-marker", OpenGlobalMarker, "error 2", "any"},
        {"name-of-german", NameOfGerman, "de-DE", "de-DE"},
        {"name-of-unknown-language", NameOfUnknownLanguage, "none", "none or empty"},
        {"name-of-invariant-language", NameOfInvariantLanguage, "empty", "none or empty"},
        {"look-up-plain-name", LookUpPlainName, "found", "any"},
        {"look-up-mui-name", LookUpMuiName, "not found", "any"},
        {"display-modes", DisplayModes, "?", "any"},
        {"parse-braced-guid", ParseBracedGuid, "refused", "refused"},
        {"format-guid", FormatGuid, "381b4222-f694-41f0-9685-ff5bb260df2e",
         "381b4222-f694-41f0-9685-ff5bb260df2e"},
        {"number-too-large-saturates", NumberTooLarge, "yes", "yes"},
        {"case-of-other-letters-folded", CaseOfOtherLetters, "no", "no"},
        {"unknown-variable-stays", ExpandUnknownVariable, "yes", "yes"},
        {"create-without-com", CreateWithoutCom, "not initialised", "any"},
    };
}

}  // namespace ZOTDam::Probe
