#include "client/ClientProcess.h"

#include <stdexcept>
#include <utility>

#include "support/StartProcess.h"

namespace ZOTDam::Test {

namespace {

constexpr DWORD Timeout = 60000;
constexpr DWORD PipeCapacity = 1 << 20;  // for all output of a program, which is read only at its end

// A pipe whose write end is passed to another process.
class Pipe {
public:
    Pipe() {
        SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
        if (!CreatePipe(&readEnd, &writeEnd, &inherited, PipeCapacity))
            throw std::runtime_error{"no pipe"};
        SetHandleInformation(readEnd, HANDLE_FLAG_INHERIT, 0);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe() {
        CloseHandle(writeEnd);
        CloseHandle(readEnd);
    }

    HANDLE WriteEnd() const noexcept { return writeEnd; }

    // Does not wait for the end of the pipe, which services that the program has started may keep open.
    std::string ReadAll() const {
        DWORD size = 0;
        PeekNamedPipe(readEnd, nullptr, 0, nullptr, &size, nullptr);
        std::string all(size, '\0');
        if (size > 0)
            ::ReadFile(readEnd, all.data(), size, &size, nullptr);
        return all;
    }

private:
    HANDLE readEnd = nullptr;
    HANDLE writeEnd = nullptr;
};

std::wstring CommandLine(const std::filesystem::path& program, const std::vector<std::wstring>& arguments) {
    std::wstring line = L"\"" + program.native() + L"\"";
    for (const std::wstring& argument : arguments)
        line += L" \"" + argument + L"\"";
    return line;
}

HANDLE Start(const std::filesystem::path& program, std::wstring commandLine,
             const std::filesystem::path& workingFolder, const Pipe& output, const Pipe& errors) {
    ProcessStart start = {program.native(), std::move(commandLine), 0, true, workingFolder.c_str()};
    start.startup.dwFlags = STARTF_USESTDHANDLES;
    start.startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    start.startup.hStdOutput = output.WriteEnd();
    start.startup.hStdError = errors.WriteEnd();
    const PROCESS_INFORMATION started = StartProcess(std::move(start));
    CloseHandle(started.hThread);
    return started.hProcess;
}

}  // namespace

Outcome RunProgram(const std::filesystem::path& program, const std::vector<std::wstring>& arguments,
                   const std::filesystem::path& workingFolder) {
    const Pipe output;
    const Pipe errors;
    const HANDLE process = Start(program, CommandLine(program, arguments), workingFolder, output, errors);
    if (WaitForSingleObject(process, Timeout) != WAIT_OBJECT_0)
        TerminateProcess(process, STILL_ACTIVE);
    Outcome outcome = {STILL_ACTIVE, output.ReadAll(), errors.ReadAll()};
    GetExitCodeProcess(process, &outcome.exitStatus);
    CloseHandle(process);
    return outcome;
}

}  // namespace ZOTDam::Test
