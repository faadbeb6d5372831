#include "support/Watch.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <cstring>

namespace ZOTDam::Test {

namespace {

// Static buffers, because no other memory may be usable after a crash.
std::array<char, 200> currentStep = {};
std::array<char, 300> lastWords = {};

[[noreturn]] void Die(const char* how, unsigned long code) {
    const int length = std::snprintf(lastWords.data(), lastWords.size(), "[ %s (0x%lx) ] in %s\n", how, code,
                                     currentStep.data());
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), lastWords.data(), static_cast<DWORD>(length), &written,
              nullptr);
    TerminateProcess(GetCurrentProcess(), 1);
    std::_Exit(1);
}

LONG WINAPI OnCrash(EXCEPTION_POINTERS* exception) {
    Die("CRASHED", exception->ExceptionRecord->ExceptionCode);
}

void OnAbort(int signal) {
    Die("ABORTED", static_cast<unsigned long>(signal));
}

}  // namespace

Watch::Watch(DWORD limit) : stepBegins{CreateEventW(nullptr, FALSE, FALSE, nullptr)} {
    SetUnhandledExceptionFilter(OnCrash);
    std::signal(SIGABRT, OnAbort);
    watcher = std::thread{[this, limit] { WaitForSteps(limit); }};
}

Watch::~Watch() {
    ends = true;
    SetEvent(stepBegins);
    watcher.join();
    CloseHandle(stepBegins);
    std::signal(SIGABRT, SIG_DFL);
    SetUnhandledExceptionFilter(nullptr);
}

void Watch::Begin(const std::string& step) {
    std::snprintf(currentStep.data(), currentStep.size(), "%s", step.c_str());
    SetEvent(stepBegins);
}

void Watch::WaitForSteps(DWORD limit) const {
    while (!ends)
        if (WaitForSingleObject(stepBegins, limit) == WAIT_TIMEOUT)
            Die("HUNG", limit);
}

}  // namespace ZOTDam::Test
