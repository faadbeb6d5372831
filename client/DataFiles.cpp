#include "DataFiles.h"

#include <windows.h>

#include <fstream>
#include <string>

#include "Error.h"
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

// A program that loads or saves the user settings file holds this mutex meanwhile.
bool AreUserSettingsBusy() noexcept {
    const HANDLE marker = OpenMutexW(SYNCHRONIZE, FALSE, L"XmlZOTPowercfgMutex");
    if (marker == nullptr)
        return GetLastError() == ERROR_ACCESS_DENIED;
    CloseHandle(marker);
    return true;
}

bool IsWritable(const std::filesystem::path& file) {
    return std::fstream{file, std::ios::in | std::ios::out | std::ios::binary}.is_open();
}

}  // namespace

void RedirectProgramFiles(const std::filesystem::path& folder) {
    Redirect(L"ProgramFiles", folder);
}

void RedirectProgramData(const std::filesystem::path& folder) {
    Redirect(L"ProgramData", folder);
}

std::filesystem::path CatalogueFile() {
    return Expand(LR"(%ProgramFiles%\Orlo\QUEN Power Management\ZOTDefault.xml)");
}

std::filesystem::path UserSettingsFile() {
    return Expand(LR"(%ProgramData%\Orlo Corporation\QUEN Power Management\ZOTPowercfg.xml)");
}

void RequireUserSettingsIdle() {
    if (AreUserSettingsBusy())
        throw Error{"The user settings file " + Utf8(UserSettingsFile()) + " is in use by another program."};
}

void RequireUserSettingsSaved() {
    RequireUserSettingsIdle();
    if (!IsWritable(UserSettingsFile()))
        throw Error{"The user settings file " + Utf8(UserSettingsFile()) + " cannot be written."};
}

}  // namespace ZOTDam::Client
