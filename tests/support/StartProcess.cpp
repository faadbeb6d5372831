#include "support/StartProcess.h"

#include <stdexcept>

namespace ZOTDam::Test {

namespace {

// Every process of wine needs a page at a fixed address. Linux places the heap of a process at random, and in
// about one of 2,000 processes it covers this page. The process then ends before it runs, and CreateProcessW
// fails with ERROR_INTERNAL_ERROR. The scripts turn the random placement off where they may; elsewhere the
// next process has another heap.
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
