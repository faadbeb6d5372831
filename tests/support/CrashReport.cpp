#include "support/CrashReport.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <csignal>
#include <cstdio>
#include <filesystem>

namespace ZOTDam::Test {

namespace {

void PrintRunningTest() {
    if (const testing::TestInfo* const test = testing::UnitTest::GetInstance()->current_test_info())
        std::fprintf(stderr, "[ CRASHED  ] %s.%s\n", test->test_suite_name(), test->name());
}

// Prints the address as a module and an offset, which a debugger can resolve.
void PrintPlace(void* address) {
    HMODULE module = nullptr;
    wchar_t file[MAX_PATH] = {};
    if (GetModuleHandleExW(
            GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
            static_cast<wchar_t*>(address), &module) != FALSE)
        GetModuleFileNameW(module, file, MAX_PATH);
    std::fprintf(stderr, "at %ls + 0x%llx\n", std::filesystem::path{file}.filename().c_str(),
                 static_cast<BYTE*>(address) - reinterpret_cast<BYTE*>(module));
}

LONG WINAPI Report(EXCEPTION_POINTERS* crash) {
    PrintRunningTest();
    std::fprintf(stderr, "exception %08lx ", crash->ExceptionRecord->ExceptionCode);
    PrintPlace(crash->ExceptionRecord->ExceptionAddress);
    return EXCEPTION_EXECUTE_HANDLER;
}

}  // namespace

void ReportCrashes() {
    SetUnhandledExceptionFilter(&Report);
    std::signal(SIGABRT, [](int) { PrintRunningTest(); });
}

}  // namespace ZOTDam::Test
