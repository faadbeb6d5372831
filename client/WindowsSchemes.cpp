#include "WindowsSchemes.h"

#include <windows.h>

#include "Text.h"

namespace ZOTDam::Client {

namespace {

using GetActiveSchemeFunction = DWORD(WINAPI*)(HKEY, GUID**);
using EnumerateFunction = DWORD(WINAPI*)(HKEY, const GUID*, const GUID*, DWORD, ULONG, UCHAR*, DWORD*);
using ReadNameFunction = DWORD(WINAPI*)(HKEY, const GUID*, const GUID*, const GUID*, UCHAR*, DWORD*);

// The module stays loaded until the process ends. Returns null if Windows does not have the function.
template <class Function>
Function PowerFunction(const char* name) {
    const HMODULE module = LoadLibraryExW(L"powrprof.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (module == nullptr)
        return nullptr;
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

std::string ReadName(const GUID& scheme) {
    wchar_t name[260] = {};
    DWORD size = sizeof name - sizeof *name;  // in bytes; the last character stays zero
    const auto readName = PowerFunction<ReadNameFunction>("PowerReadFriendlyName");
    if (readName == nullptr ||
        readName(nullptr, &scheme, nullptr, nullptr, reinterpret_cast<UCHAR*>(name), &size) != ERROR_SUCCESS)
        return {};
    return ToUtf8(name);
}

}  // namespace

std::vector<WindowsScheme> EnumerateWindowsSchemes() {
    constexpr DWORD accessScheme = 16;
    std::vector<WindowsScheme> schemes;
    const auto enumerate = PowerFunction<EnumerateFunction>("PowerEnumerate");
    if (enumerate == nullptr)
        return schemes;
    GUID scheme = {};
    for (ULONG index = 0;; ++index) {
        DWORD size = sizeof scheme;
        if (enumerate(nullptr, nullptr, nullptr, accessScheme, index, reinterpret_cast<UCHAR*>(&scheme),
                      &size) != ERROR_SUCCESS)
            return schemes;
        schemes.push_back({scheme, ReadName(scheme)});
    }
}

std::optional<GUID> FindActiveScheme() {
    GUID* active = nullptr;
    const auto getActiveScheme = PowerFunction<GetActiveSchemeFunction>("PowerGetActiveScheme");
    if (getActiveScheme == nullptr || getActiveScheme(nullptr, &active) != ERROR_SUCCESS || active == nullptr)
        return {};
    const GUID scheme = *active;
    LocalFree(active);
    return scheme;
}

}  // namespace ZOTDam::Client
