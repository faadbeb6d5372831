// zotdamctl: the command-line client for the settings of QUEN Power Management.
#include <exception>
#include <iostream>

#include "CommandLine.h"
#include "Console.h"
#include "DataFiles.h"
#include "Error.h"

namespace ZOTDam::Client {

namespace {

enum ExitCode : int { Success = 0, Failure = 1, WrongUsage = 2 };

// Returns the exit code.
int Execute(const Invocation& invocation) {
    if (invocation.programFiles)
        RedirectProgramFiles(*invocation.programFiles);
    if (invocation.programData)
        RedirectProgramData(*invocation.programData);
    SetStyling(invocation.styling);
    const Report report = invocation.action();
    std::cout << (invocation.json ? report.json.dump(2) + '\n' : report.text);
    return report.exitCode;
}

int Run() {
    const auto parsed = ParseCommandLine(Arguments());
    int exitCode = Success;
    if (const auto* const information = std::get_if<Information>(&parsed))
        std::cout << *information;
    else
        exitCode = Execute(std::get<Invocation>(parsed));
    if (!std::cout.flush())
        throw Error{"The output cannot be written."};
    return exitCode;
}

ExitCode Fail(const std::exception& error, ExitCode exitCode) {
    std::cerr << "zotdamctl: " << error.what() << '\n';
    return exitCode;
}

int Main() {
    const Utf8Output output;
    try {
        return Run();
    } catch (const UsageError& error) {
        return Fail(error, WrongUsage);
    } catch (const std::exception& error) {
        return Fail(error, Failure);
    }
}

}  // namespace

}  // namespace ZOTDam::Client

int main() {
    return ZOTDam::Client::Main();
}
