// Records how the DLL opens files while an object of this class exists.
#pragma once

#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <iterator>
#include <vector>

#include "support/ImportPatch.h"

namespace ZOTDam::Test {

// The arguments of a call that opens or creates a file.
struct FileOpen {
    std::filesystem::path path;
    DWORD access;
    DWORD shared;
};

class FileOpens {
public:
    explicit FileOpens(HMODULE dll) : patch{dll, "CreateFileW", &Open} { current = this; }
    FileOpens(const FileOpens&) = delete;
    FileOpens& operator=(const FileOpens&) = delete;

    std::vector<FileOpen> calls;

    // Called after a file was opened, before the DLL reads it.
    std::function<void(const std::filesystem::path&)> afterOpen = [](const std::filesystem::path&) {};

    std::vector<FileOpen> CallsFor(const std::filesystem::path& path) const {
        std::vector<FileOpen> found;
        std::ranges::copy_if(calls, std::back_inserter(found),
                             [&](const FileOpen& call) { return call.path == path; });
        return found;
    }

private:
    static HANDLE WINAPI Open(LPCWSTR path, DWORD access, DWORD shared, LPSECURITY_ATTRIBUTES security,
                              DWORD disposition, DWORD flags, HANDLE model) {
        current->calls.push_back({path, access, shared});
        const HANDLE file = CreateFileW(path, access, shared, security, disposition, flags, model);
        const DWORD error = GetLastError();
        current->afterOpen(path);
        SetLastError(error);
        return file;
    }

    inline static FileOpens* current = nullptr;
    ImportPatch patch;
};

}  // namespace ZOTDam::Test
