#include "WindowsSchemes.h"

#include <windows.h>

#include <powrprof.h>

#include "SystemFunction.h"
#include "Text.h"

namespace ZOTDam::Client {

namespace {

template <class Function>
Function FindPowerFunction(const char* name) {
    return FindSystemFunction<Function>(L"powrprof.dll", name);
}

std::string ReadName(const GUID& scheme) {
    const auto readName = FindPowerFunction<decltype(&PowerReadFriendlyName)>("PowerReadFriendlyName");
    DWORD size = 0;  // in bytes
    if (readName == nullptr || readName(nullptr, &scheme, nullptr, nullptr, nullptr, &size) != ERROR_SUCCESS)
        return {};
    std::wstring name(size / sizeof(wchar_t), L'\0');
    if (readName(nullptr, &scheme, nullptr, nullptr, reinterpret_cast<UCHAR*>(name.data()), &size) !=
        ERROR_SUCCESS)
        return {};
    return ToUtf8(name.c_str());
}

}  // namespace

std::vector<WindowsScheme> EnumerateWindowsSchemes() {
    std::vector<WindowsScheme> schemes;
    const auto enumerate = FindPowerFunction<decltype(&PowerEnumerate)>("PowerEnumerate");
    if (enumerate == nullptr)
        return schemes;
    GUID scheme = {};
    for (ULONG index = 0;; ++index) {
        DWORD size = sizeof scheme;
        if (enumerate(nullptr, nullptr, nullptr, ACCESS_SCHEME, index, reinterpret_cast<UCHAR*>(&scheme),
                      &size) != ERROR_SUCCESS)
            return schemes;
        schemes.push_back({scheme, ReadName(scheme)});
    }
}

std::optional<GUID> FindActiveScheme() {
    GUID* active = nullptr;
    const auto getActiveScheme = FindPowerFunction<decltype(&PowerGetActiveScheme)>("PowerGetActiveScheme");
    if (getActiveScheme == nullptr || getActiveScheme(nullptr, &active) != ERROR_SUCCESS || active == nullptr)
        return {};
    const GUID scheme = *active;
    LocalFree(active);
    return scheme;
}

}  // namespace ZOTDam::Client
