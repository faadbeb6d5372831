// Starts the test program as a second process that runs a named role.
#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace ZOTDam::Test {

// Starts `role` with arguments and returns after the role has called SignalReady. The destructor kills the
// process.
class SecondProcess {
public:
    explicit SecondProcess(const std::wstring& role, const std::vector<std::wstring>& arguments = {});
    SecondProcess(const SecondProcess&) = delete;
    SecondProcess& operator=(const SecondProcess&) = delete;
    ~SecondProcess();

    void Kill() noexcept;
    DWORD WaitForExit() noexcept;

    // Suspends the thread that runs the role at its current instruction, and resumes it.
    void Suspend() noexcept;
    void Resume() noexcept;

private:
    HANDLE process = nullptr;
    HANDLE thread = nullptr;
};

// A role: a function that receives the arguments and returns the exit code.
using Role = std::function<int(const std::vector<std::wstring>&)>;

struct RegisterRole {
    RegisterRole(const std::wstring& name, Role role);
};

void SignalReady();

// Runs the role that the command line names. Returns false if it names no role: this process is then the test
// program itself.
bool RunRole(const std::vector<std::wstring>& commandLine, int& exitCode);

// A role that holds the named mutex until the process is killed: SecondProcess{HoldMutex, {L"name"}}.
inline constexpr wchar_t HoldMutex[] = L"hold-mutex";

}  // namespace ZOTDam::Test
