// Fakes of the functions of powrprof.dll. The variables:
//     FAKE_ACTIVE_SCHEME  the GUID of the active scheme, in braces; without it, Windows does not report it
//     FAKE_SCHEMES        the schemes of Windows: a GUID in braces and a name for each one
#include <windows.h>

#include <objbase.h>
#include <powrprof.h>

#include <cstring>

#include "client/fakes/Answers.h"

namespace {

using ZOTDam::Test::Pairs;
using ZOTDam::Test::Variable;

bool Parse(const std::wstring& text, GUID& scheme) {
    return SUCCEEDED(IIDFromString(text.c_str(), &scheme));
}

// Copies a value to a buffer of the caller. Without a buffer, returns only the size.
DWORD Copy(const void* value, std::size_t valueSize, UCHAR* buffer, DWORD* size) {
    const DWORD capacity = *size;
    *size = static_cast<DWORD>(valueSize);
    if (buffer == nullptr)
        return ERROR_SUCCESS;
    if (capacity < valueSize)
        return ERROR_MORE_DATA;
    std::memcpy(buffer, value, valueSize);
    return ERROR_SUCCESS;
}

}  // namespace

DWORD WINAPI PowerGetActiveScheme(HKEY, GUID** active) {
    GUID scheme = {};
    if (!Parse(Variable(L"FAKE_ACTIVE_SCHEME"), scheme))
        return ERROR_FILE_NOT_FOUND;
    *active = static_cast<GUID*>(LocalAlloc(LMEM_FIXED, sizeof scheme));
    if (*active == nullptr)
        return ERROR_NOT_ENOUGH_MEMORY;
    **active = scheme;
    return ERROR_SUCCESS;
}

DWORD WINAPI PowerEnumerate(HKEY, const GUID*, const GUID*, POWER_DATA_ACCESSOR accessFlags, ULONG index,
                            UCHAR* buffer, DWORD* size) {
    const auto schemes = Pairs(L"FAKE_SCHEMES");
    GUID scheme = {};
    if (accessFlags != ACCESS_SCHEME || index >= schemes.size() || !Parse(schemes[index].first, scheme))
        return ERROR_NO_MORE_ITEMS;
    return Copy(&scheme, sizeof scheme, buffer, size);
}

DWORD WINAPI PowerReadFriendlyName(HKEY, const GUID* scheme, const GUID*, const GUID*, UCHAR* buffer,
                                   DWORD* size) {
    for (const auto& [text, name] : Pairs(L"FAKE_SCHEMES"))
        if (GUID known = {}; Parse(text, known) && known == *scheme)
            return Copy(name.c_str(), (name.size() + 1) * sizeof(wchar_t), buffer, size);
    return ERROR_FILE_NOT_FOUND;
}
