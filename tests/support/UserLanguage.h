// A fake user language and a fake system lookup of localised files for the DLL. The object must be destroyed
// before the DLL is freed.
#pragma once

#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "support/ImportPatch.h"

namespace ZOTDam::Test {

inline constexpr LANGID German = MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN);
inline constexpr LANGID AustrianGerman = MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN_AUSTRIAN);
inline constexpr LANGID French = MAKELANGID(LANG_FRENCH, SUBLANG_FRENCH);

class UserLanguage {
public:
    // The arguments of a call of the lookup.
    struct LookupCall {
        DWORD flags;
        std::wstring file;
        std::wstring language;
        ULONG languageCapacity;
        ULONG copyCapacity;
        ULONGLONG enumerator;
    };

    // By default, the lookup behaves as on a system that does not support it.
    UserLanguage(HMODULE dll, LANGID id)
        : language{id},
          languagePatch{dll, "GetUserDefaultUILanguage", &Language},
          lookupPatch{dll, "GetFileMUIPath", &Lookup} {
        current = this;
    }
    UserLanguage(const UserLanguage&) = delete;
    UserLanguage& operator=(const UserLanguage&) = delete;

    void FailLookup(DWORD failure) noexcept { error = failure; }
    void SetLookupResult(const std::filesystem::path& file) { found = file; }

    const std::vector<LookupCall>& LookupCalls() const noexcept { return lookupCalls; }

private:
    static LANGID WINAPI Language() { return current->language; }

    static BOOL WINAPI Lookup(DWORD flags, const wchar_t* file, wchar_t* name, ULONG* nameCapacity,
                              wchar_t* copy, ULONG* copyCapacity, ULONGLONG* enumerator) {
        current->lookupCalls.push_back({flags, file, name, *nameCapacity, *copyCapacity, *enumerator});
        if (current->found.empty()) {
            SetLastError(current->error);
            return FALSE;
        }
        *std::ranges::copy(current->found, copy).out = L'\0';
        return TRUE;
    }

    inline static UserLanguage* current = nullptr;
    LANGID language;
    DWORD error = ERROR_CALL_NOT_IMPLEMENTED;
    std::wstring found;
    std::vector<LookupCall> lookupCalls;
    ImportPatch languagePatch;
    ImportPatch lookupPatch;
};

}  // namespace ZOTDam::Test
