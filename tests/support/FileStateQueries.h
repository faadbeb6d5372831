// Counts how often the DLL asks for the state of a file by its path, and can change the answers. The object
// must be created before the DLL is loaded, because the DLL looks up the system's function when it is loaded.
#pragma once

#include <windows.h>

#include <winternl.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "support/ImportPatch.h"
#include "support/LoadHook.h"

namespace ZOTDam::Test {

// The answer of the system's function. The headers do not declare it.
struct FileStateAnswer {
    LARGE_INTEGER creationTime;
    LARGE_INTEGER lastAccessTime;
    LARGE_INTEGER lastWriteTime;
    LARGE_INTEGER changeTime;
    LARGE_INTEGER allocationSize;
    LARGE_INTEGER endOfFile;
    ULONG attributes;
};

class FileStateQueries {
public:
    FileStateQueries() { current = this; }
    FileStateQueries(const FileStateQueries&) = delete;
    FileStateQueries& operator=(const FileStateQueries&) = delete;

    // The path of each file whose state the DLL asked for.
    std::vector<std::wstring> paths;

    // Receives the answer of the system, and returns the result for the DLL.
    std::function<NTSTATUS(NTSTATUS, FileStateAnswer&)> onAnswer = [](NTSTATUS result, FileStateAnswer&) {
        return result;
    };

private:
    using Function = NTSTATUS NTAPI(OBJECT_ATTRIBUTES*, FileStateAnswer*);

    static FARPROC WINAPI Find(HMODULE module, LPCSTR name) {
        const FARPROC found = GetProcAddress(module, name);
        if (IS_INTRESOURCE(name) || std::strcmp(name, "NtQueryFullAttributesFile") != 0)
            return found;
        original = reinterpret_cast<Function*>(reinterpret_cast<void*>(found));
        return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&Query));
    }

    static NTSTATUS NTAPI Query(OBJECT_ATTRIBUTES* file, FileStateAnswer* answer) {
        current->paths.emplace_back(file->ObjectName->Buffer, file->ObjectName->Length / sizeof(wchar_t));
        return current->onAnswer(original(file, answer), *answer);
    }

    inline static FileStateQueries* current = nullptr;
    inline static Function* original = nullptr;
    LoadHook hook{[](HMODULE dll) { PatchPermanently(dll, "GetProcAddress", &Find); }};
};

}  // namespace ZOTDam::Test
