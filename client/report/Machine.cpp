#include "report/Machine.h"

#include <windows.h>

#include <winternl.h>

#include <iterator>

#include "doctor/Installation.h"
#include "Library.h"
#include "Text.h"

namespace ZOTDam::Client {

namespace {

std::string MachineName() {
    wchar_t name[256] = {};
    auto size = static_cast<DWORD>(std::size(name));
    GetComputerNameExW(ComputerNameDnsHostname, name, &size);
    return ToUtf8(name);
}

// Calls the function that returns the version of the system itself, not the one that the program is made for.
std::string SystemVersion() {
    const HMODULE system = GetModuleHandleW(L"ntdll.dll");
    const auto getVersion = reinterpret_cast<NTSTATUS(WINAPI*)(OSVERSIONINFOW*)>(
        reinterpret_cast<void*>(GetProcAddress(system, "RtlGetVersion")));
    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    if (getVersion == nullptr || getVersion(&version) != 0)
        return "Windows";
    return "Windows " + std::to_string(version.dwMajorVersion) + "." +
           std::to_string(version.dwMinorVersion) + " (build " + std::to_string(version.dwBuildNumber) + ")";
}

std::string UserLocale() {
    wchar_t name[LOCALE_NAME_MAX_LENGTH] = {};
    GetUserDefaultLocaleName(name, LOCALE_NAME_MAX_LENGTH);
    return ToUtf8(name);
}

std::string LocalTime() {
    SYSTEMTIME time = {};
    GetLocalTime(&time);
    const auto twoDigits = [](WORD number) { return (number < 10 ? "0" : "") + std::to_string(number); };
    return std::to_string(time.wYear) + "-" + twoDigits(time.wMonth) + "-" + twoDigits(time.wDay) + " " +
           twoDigits(time.wHour) + ":" + twoDigits(time.wMinute);
}

}  // namespace

std::vector<std::pair<std::string, std::string>> DescribeMachine() {
    const std::string version = VersionOf(Library::Path());
    return {
        {"Machine", MachineName()},           {"System", SystemVersion()},
        {"Locale of the user", UserLocale()}, {"ZOTDam.dll", version.empty() ? "unknown version" : version},
        {"zotdamctl", ZOTDAM_VERSION},        {"Time of the report", LocalTime()}};
}

}  // namespace ZOTDam::Client
