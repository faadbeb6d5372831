// Intercepts the system calls of a save. A test can record them, make them fail, end the process at one of
// them, and imitate the renames of another system.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <ostream>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "support/ImportPatch.h"

namespace ZOTDam::Test {

// ---- Calls ----

enum class SaveCall {
    OpenLeftOver,   // opens a temporary file that an earlier save left
    Create,         // creates the temporary file
    OpenTarget,     // opens the file to write it in place
    OpenUnguarded,  // opens or creates the file to write it without a redo file
    OpenRedo,       // opens a redo file that an earlier save left
    Write,
    SetEnd,
    Flush,
    PosixRename,  // replaces the file with the temporary file, even if other programs have it open
    Rename,       // replaces the file with the open temporary file
    Move,         // replaces the file with the closed temporary file
    RenameToRedo,
    Delete,      // of an open file
    DeletePath,  // of a closed file
    Copy,
    Sleep,
};

inline void PrintTo(SaveCall call, std::ostream* out) {
    constexpr const char* names[] = {
        "OpenLeftOver", "Create", "OpenTarget", "OpenUnguarded", "OpenRedo", "Write",      "SetEnd", "Flush",
        "PosixRename",  "Rename", "Move",       "RenameToRedo",  "Delete",   "DeletePath", "Copy",   "Sleep"};
    *out << names[static_cast<int>(call)];
}

inline std::string NameOf(SaveCall call) {
    std::ostringstream name;
    PrintTo(call, &name);
    return name.str();
}

// The calls that replace the file. A system supports one of them at least.
inline const std::set<SaveCall> Replacements = {SaveCall::PosixRename, SaveCall::Rename, SaveCall::Move};

inline constexpr UINT InjectedExitCode = 77;

[[noreturn]] inline void ExitAtOnce() {
    TerminateProcess(GetCurrentProcess(), InjectedExitCode);
    std::abort();
}

// The renames of an open file that the imitated system supports. wine supports only the plain one.
enum class Renames { OfThisSystem, Posix, Plain, None };

// ---- A rename that replaces open files ----

// FileRenameInfoEx, which the headers do not declare.
inline constexpr auto PosixRenameClass = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);

inline BOOL RenameFile(HANDLE file, std::wstring_view newPath) {
    std::vector<char> information(sizeof(FILE_RENAME_INFO) + newPath.size() * sizeof(wchar_t));
    auto* const fields = reinterpret_cast<FILE_RENAME_INFO*>(information.data());
    fields->ReplaceIfExists = TRUE;
    fields->FileNameLength = static_cast<DWORD>(newPath.size() * sizeof(wchar_t));
    std::ranges::copy(newPath, fields->FileName);
    return SetFileInformationByHandle(file, FileRenameInfo, fields, static_cast<DWORD>(information.size()));
}

// Imitates a rename with POSIX semantics. The old file, which other programs can have open, gets another name
// and is deleted when it is closed.
inline BOOL RenameOverOpenFile(HANDLE file, const std::wstring& newPath) {
    const HANDLE old =
        CreateFileW(newPath.c_str(), DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (old == INVALID_HANDLE_VALUE)
        return GetLastError() == ERROR_FILE_NOT_FOUND && RenameFile(file, newPath);
    FILE_DISPOSITION_INFO disposition = {TRUE};
    const BOOL renamed =
        RenameFile(old, newPath + L".replaced") && RenameFile(file, newPath) &&
        SetFileInformationByHandle(old, FileDispositionInfo, &disposition, sizeof disposition);
    const DWORD error = GetLastError();
    CloseHandle(old);
    SetLastError(error);
    return renamed;
}

// ---- The interception ----

class SaveCalls {
public:
    explicit SaveCalls(HMODULE dll, Renames renames = Renames::OfThisSystem)
        : systemRenames{renames},
          patches{ImportPatch{dll, "CreateFileW", &CreateOrOpen},
                  ImportPatch{dll, "WriteFile", &Write},
                  ImportPatch{dll, "SetEndOfFile", &SetEnd},
                  ImportPatch{dll, "FlushFileBuffers", &Flush},
                  ImportPatch{dll, "SetFileInformationByHandle", &SetInformation},
                  ImportPatch{dll, "MoveFileExW", &Move},
                  ImportPatch{dll, "DeleteFileW", &DeletePath},
                  ImportPatch{dll, "CopyFileW", &Copy},
                  ImportPatch{dll, "GetTickCount64", &Time},
                  ImportPatch{dll, "Sleep", &Pause}} {
        current = this;
    }
    SaveCalls(const SaveCalls&) = delete;
    SaveCalls& operator=(const SaveCalls&) = delete;
    ~SaveCalls() { current = nullptr; }

    std::vector<SaveCall> made;
    std::vector<std::filesystem::path> created;   // the names that a temporary file was created with
    std::vector<std::filesystem::path> followed;  // opened in a way that follows links
    ULONGLONG time = 0;                           // in milliseconds; passes only while the DLL sleeps
    ULONGLONG minimumSleep = 0;

    // Runs before a call. The call fails with the error that the function returns, unless it is
    // ERROR_SUCCESS.
    std::function<DWORD(SaveCall)> before = [](SaveCall) { return ERROR_SUCCESS; };
    std::function<void(SaveCall)> after = [](SaveCall) {};

    void Fail(const std::set<SaveCall>& failing, DWORD error = ERROR_DISK_FULL) {
        before = [failing, error](SaveCall call) { return failing.contains(call) ? error : ERROR_SUCCESS; };
    }

    auto CountOf(SaveCall call) const { return std::ranges::count(made, call); }

    // Returns whether the file itself was not written to.
    bool AreAtomic() const {
        return CountOf(SaveCall::OpenTarget) == 0 && CountOf(SaveCall::OpenUnguarded) == 0;
    }

private:
    template <class Result, class Function>
    static Result Run(SaveCall call, Result failure, Function function) {
        current->made.push_back(call);
        if (const DWORD error = current->before(call); error != ERROR_SUCCESS) {
            SetLastError(error);
            return failure;
        }
        const Result result = function();
        const DWORD error = GetLastError();
        current->after(call);
        SetLastError(error);
        return result;
    }

    static HANDLE WINAPI CreateOrOpen(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                                      DWORD disposition, DWORD flags, HANDLE model) {
        const auto open = [&] {
            return CreateFileW(path, access, share, security, disposition, flags, model);
        };
        if ((access & (GENERIC_WRITE | DELETE)) == 0)
            return open();
        if (disposition == CREATE_NEW)
            current->created.emplace_back(path);
        if ((flags & FILE_FLAG_OPEN_REPARSE_POINT) == 0)
            current->followed.emplace_back(path);
        return Run(KindOfOpening(access, disposition), INVALID_HANDLE_VALUE, open);
    }

    static SaveCall KindOfOpening(DWORD access, DWORD disposition) {
        if (disposition == CREATE_NEW)
            return SaveCall::Create;
        if (disposition == OPEN_ALWAYS)
            return SaveCall::OpenUnguarded;
        if ((access & DELETE) == 0)
            return SaveCall::OpenTarget;
        return (access & GENERIC_READ) != 0 ? SaveCall::OpenRedo : SaveCall::OpenLeftOver;
    }

    static BOOL WINAPI Write(HANDLE file, LPCVOID data, DWORD size, LPDWORD written,
                             LPOVERLAPPED overlapped) {
        return Run(SaveCall::Write, FALSE, [&] { return WriteFile(file, data, size, written, overlapped); });
    }

    static BOOL WINAPI SetEnd(HANDLE file) {
        return Run(SaveCall::SetEnd, FALSE, [&] { return SetEndOfFile(file); });
    }

    static BOOL WINAPI Flush(HANDLE file) {
        return Run(SaveCall::Flush, FALSE, [&] { return FlushFileBuffers(file); });
    }

    static BOOL WINAPI SetInformation(HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, LPVOID data, DWORD size) {
        const auto set = [&] { return SetFileInformationByHandle(file, kind, data, size); };
        if (kind == FileDispositionInfo)
            return Run(SaveCall::Delete, FALSE, set);
        if (kind != FileRenameInfo && kind != PosixRenameClass)
            return set();
        const auto* const fields = static_cast<const FILE_RENAME_INFO*>(data);
        const std::wstring newPath(fields->FileName, fields->FileNameLength / sizeof(wchar_t));
        if (newPath.ends_with(L".redo"))
            return Run(SaveCall::RenameToRedo, FALSE, set);
        if (kind == FileRenameInfo)
            return Run(SaveCall::Rename, FALSE,
                       [&] { return current->systemRenames == Renames::None ? FailAsUnknown() : set(); });
        return Run(SaveCall::PosixRename, FALSE, [&] { return current->RenamePosix(file, newPath, set); });
    }

    template <class Function>
    BOOL RenamePosix(HANDLE file, const std::wstring& newPath, Function set) const {
        if (systemRenames == Renames::OfThisSystem)
            return set();
        return systemRenames == Renames::Posix ? RenameOverOpenFile(file, newPath) : FailAsUnknown();
    }

    static BOOL FailAsUnknown() {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }

    static BOOL WINAPI Move(LPCWSTR source, LPCWSTR target, DWORD flags) {
        return Run(SaveCall::Move, FALSE, [&] { return MoveFileExW(source, target, flags); });
    }

    static BOOL WINAPI DeletePath(LPCWSTR path) {
        return Run(SaveCall::DeletePath, FALSE, [&] { return DeleteFileW(path); });
    }

    static BOOL WINAPI Copy(LPCWSTR source, LPCWSTR target, BOOL keepsTarget) {
        return Run(SaveCall::Copy, FALSE, [&] { return CopyFileW(source, target, keepsTarget); });
    }

    static ULONGLONG WINAPI Time() { return current->time; }

    static void WINAPI Pause(DWORD duration) {
        Run(SaveCall::Sleep, false, [&] {
            current->time += std::max<ULONGLONG>(duration, current->minimumSleep);
            return true;
        });
    }

    static inline SaveCalls* current = nullptr;

    Renames systemRenames;
    ImportPatch patches[10];
};

}  // namespace ZOTDam::Test
