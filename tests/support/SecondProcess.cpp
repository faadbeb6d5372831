#include "support/SecondProcess.h"

#include <utility>

#include "support/StartProcess.h"

namespace ZOTDam::Test {

namespace {

constexpr wchar_t RoleSwitch[] = L"--role";
constexpr DWORD Timeout = 30000;

std::map<std::wstring, Role>& Roles() {
    static std::map<std::wstring, Role> roles;
    return roles;
}

std::wstring ReadyEventName(DWORD processId) {
    return L"zotdam-test-ready-" + std::to_wstring(processId);
}

const RegisterRole HoldMutexRole{HoldMutex, [](const std::vector<std::wstring>& arguments) {
                                     CreateMutexW(nullptr, TRUE, arguments.at(0).c_str());
                                     SignalReady();
                                     Sleep(INFINITE);
                                     return 0;
                                 }};

}  // namespace

SecondProcess::SecondProcess(const std::wstring& role, const std::vector<std::wstring>& arguments) {
    std::wstring program(MAX_PATH, L'\0');
    program.resize(GetModuleFileNameW(nullptr, program.data(), MAX_PATH));
    std::wstring commandLine = L"\"" + program + L"\" " + RoleSwitch + L" " + role;
    for (const std::wstring& argument : arguments)
        commandLine += L" \"" + argument + L"\"";

    const PROCESS_INFORMATION started = StartProcess({program, commandLine, CREATE_SUSPENDED});
    process = started.hProcess;
    thread = started.hThread;
    const HANDLE ready = CreateEventW(nullptr, TRUE, FALSE, ReadyEventName(started.dwProcessId).c_str());
    ResumeThread(thread);
    const HANDLE either[] = {ready, process};
    WaitForMultipleObjects(2, either, FALSE, Timeout);
    CloseHandle(ready);
}

SecondProcess::~SecondProcess() {
    Kill();
    CloseHandle(thread);
    CloseHandle(process);
}

void SecondProcess::Kill() noexcept {
    TerminateProcess(process, 1);
    WaitForSingleObject(process, Timeout);
}

DWORD SecondProcess::WaitForExit() noexcept {
    DWORD exitCode = STILL_ACTIVE;
    WaitForSingleObject(process, Timeout);
    GetExitCodeProcess(process, &exitCode);
    return exitCode;
}

void SecondProcess::Suspend() noexcept {
    SuspendThread(thread);
    // SuspendThread only requests the suspension. GetThreadContext returns after the thread is suspended.
    CONTEXT context = {};
    context.ContextFlags = CONTEXT_CONTROL;
    GetThreadContext(thread, &context);
}

void SecondProcess::Resume() noexcept {
    ResumeThread(thread);
}

RegisterRole::RegisterRole(const std::wstring& name, Role role) {
    Roles().emplace(name, std::move(role));
}

void SignalReady() {
    const HANDLE ready = CreateEventW(nullptr, TRUE, FALSE, ReadyEventName(GetCurrentProcessId()).c_str());
    SetEvent(ready);
    CloseHandle(ready);
}

bool RunRole(const std::vector<std::wstring>& commandLine, int& exitCode) {
    if (commandLine.size() < 3 || commandLine[1] != RoleSwitch)
        return false;
    exitCode = Roles().at(commandLine[2])({commandLine.begin() + 3, commandLine.end()});
    return true;
}

}  // namespace ZOTDam::Test
