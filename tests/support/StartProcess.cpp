#include "support/StartProcess.h"

#include <stdexcept>

namespace ZOTDam::Test {

namespace {

// Every wine process needs a page at a fixed address. Linux places the heap of a process at a random address,
// and in about one of 2,000 processes it covers this page. Such a process ends before it runs, and
// CreateProcessW fails with ERROR_INTERNAL_ERROR. The scripts disable the randomisation where they can.
// Elsewhere another attempt succeeds, because the next process has a different heap address.
constexpr int Attempts = 5;

bool HasOtherLayoutNextTime(DWORD error) {
    return error == ERROR_INTERNAL_ERROR;
}

}  // namespace

PROCESS_INFORMATION StartProcess(ProcessStart start) {
    start.startup.cb = sizeof start.startup;
    PROCESS_INFORMATION started = {};
    DWORD error = ERROR_INTERNAL_ERROR;
    for (int attempt = 0; attempt < Attempts && HasOtherLayoutNextTime(error); ++attempt) {
        if (CreateProcessW(start.program.c_str(), start.commandLine.data(), nullptr, nullptr,
                           start.inheritsHandles, start.flags | DETACHED_PROCESS, nullptr, start.folder,
                           &start.startup, &started) != FALSE)
            return started;
        error = GetLastError();
    }
    throw std::runtime_error{"The process does not start: error " + std::to_string(error)};
}

}  // namespace ZOTDam::Test
