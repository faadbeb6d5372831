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

enum class MuiLookup {
    NotImplemented,
    Documented,  // as on Windows: finds the copy that has the name of a file that is not a PE image
};

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

    UserLanguage(HMODULE dll, LANGID id, MuiLookup lookup = MuiLookup::NotImplemented)
        : language{id},
          lookup{lookup},
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
        if (!current->found.empty())
            return Return(current->found, copy, copyCapacity);
        if (current->lookup == MuiLookup::NotImplemented)
            return Fail(current->error);
        if (flags != MUI_LANGUAGE_NAME)
            return Fail(ERROR_INVALID_PARAMETER);
        if (*enumerator != 0)
            return Fail(ERROR_NO_MORE_FILES);
        const std::wstring foundLanguage = name;
        const std::filesystem::path neutralFile = file;
        const std::filesystem::path found =
            neutralFile.parent_path() / foundLanguage / neutralFile.filename();
        if (!is_regular_file(found))
            return Fail(ERROR_FILE_NOT_FOUND);
        if (foundLanguage.size() >= *nameCapacity || found.native().size() >= *copyCapacity)
            return Fail(ERROR_INSUFFICIENT_BUFFER);
        *enumerator = 1;
        return Return(foundLanguage, name, nameCapacity) && Return(found, copy, copyCapacity);
    }

    static BOOL Fail(DWORD error) {
        SetLastError(error);
        return FALSE;
    }

    // Fills the whole buffer, so that a capacity that is too large causes a memory error.
    static BOOL Return(const std::wstring& text, wchar_t* buffer, ULONG* capacity) {
        std::fill_n(buffer, *capacity, L'\xcccc');
        *std::ranges::copy(text, buffer).out = L'\0';
        *capacity = static_cast<ULONG>(text.size() + 1);
        return TRUE;
    }

    inline static UserLanguage* current = nullptr;
    LANGID language;
    MuiLookup lookup;
    DWORD error = ERROR_CALL_NOT_IMPLEMENTED;
    std::wstring found;
    std::vector<LookupCall> lookupCalls;
    ImportPatch languagePatch;
    ImportPatch lookupPatch;
};

}  // namespace ZOTDam::Test
