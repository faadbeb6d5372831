#include "support/Watchdog.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace ZOTDam::Test {

namespace {

// Static buffers, because no other memory may be usable after a crash.
std::array<char, 200> currentStep = {};
std::array<char, 300> message = {};

[[noreturn]] void ReportAndTerminate(const char* how, unsigned long code) {
    const int length = std::snprintf(message.data(), message.size(), "[ %s (0x%lx) ] in %s\n", how, code,
                                     currentStep.data());
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), message.data(), static_cast<DWORD>(length), &written, nullptr);
    TerminateProcess(GetCurrentProcess(), 1);
    std::_Exit(1);
}

LONG WINAPI OnCrash(EXCEPTION_POINTERS* exception) {
    ReportAndTerminate("CRASHED", exception->ExceptionRecord->ExceptionCode);
}

void OnAbort(int signal) {
    ReportAndTerminate("ABORTED", static_cast<unsigned long>(signal));
}

}  // namespace

Watchdog::Watchdog(DWORD limit) : stepBegins{CreateEventW(nullptr, FALSE, FALSE, nullptr)} {
    SetUnhandledExceptionFilter(OnCrash);
    std::signal(SIGABRT, OnAbort);
    watcher = std::thread{[this, limit] { WaitForSteps(limit); }};
}

Watchdog::~Watchdog() {
    ends = true;
    SetEvent(stepBegins);
    watcher.join();
    CloseHandle(stepBegins);
    std::signal(SIGABRT, SIG_DFL);
    SetUnhandledExceptionFilter(nullptr);
}

void Watchdog::Begin(const std::string& step) {
    std::snprintf(currentStep.data(), currentStep.size(), "%s", step.c_str());
    SetEvent(stepBegins);
}

void Watchdog::WaitForSteps(DWORD limit) const {
    while (!ends)
        if (WaitForSingleObject(stepBegins, limit) == WAIT_TIMEOUT)
            ReportAndTerminate("HUNG", limit);
}

}  // namespace ZOTDam::Test
