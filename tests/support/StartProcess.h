// Starts the processes of the tests.
#pragma once

#include <windows.h>

#include <string>

namespace ZOTDam::Test {

struct ProcessStart {
    std::wstring program;      // the path of the executable file
    std::wstring commandLine;  // begins with the program
    DWORD flags = 0;
    bool inheritsHandles = false;
    const wchar_t* folder = nullptr;  // the working folder, or null for that of this process
    STARTUPINFOW startup = {};
};

// Starts a process without a console and returns its handles, which the caller closes. Throws
// std::runtime_error, with the error code, if the process cannot be started.
PROCESS_INFORMATION StartProcess(ProcessStart start);

}  // namespace ZOTDam::Test
