// The test program, started once more as another process that plays a named role.
#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace ZOTDam::Test {

// Starts `role` with arguments and returns once the role has called SignalReady; the destructor kills it.
class SecondProcess {
public:
    explicit SecondProcess(const std::wstring& role, const std::vector<std::wstring>& arguments = {});
    SecondProcess(const SecondProcess&) = delete;
    SecondProcess& operator=(const SecondProcess&) = delete;
    ~SecondProcess();

    void Kill() noexcept;
    DWORD WaitForExit() noexcept;

    // Stops the thread that plays the role wherever it is, and lets it go on.
    void Suspend() noexcept;
    void Resume() noexcept;

private:
    HANDLE process = nullptr;
    HANDLE thread = nullptr;
};

// The other side: a role is a function that gets the arguments and gives the exit code.
using Role = std::function<int(const std::vector<std::wstring>&)>;

struct RegisterRole {
    RegisterRole(const std::wstring& name, Role role);
};

void SignalReady();

// Runs the role that the command line names. False when it names none: then this is the test program itself.
bool RunRole(const std::vector<std::wstring>& commandLine, int& exitCode);

// A role that holds the named mutex until it is killed: SecondProcess{HoldMutex, {L"name"}}.
inline constexpr wchar_t HoldMutex[] = L"hold-mutex";

}  // namespace ZOTDam::Test
