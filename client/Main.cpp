// zotdamctl: the command-line client for the settings of QUEN Power Management.
#include <windows.h>

#include <exception>
#include <iostream>
#include <optional>

#include "CommandLine.h"
#include "Console.h"
#include "DataFiles.h"
#include "Error.h"
#include "ErrorReport.h"

namespace ZOTDam::Client {

namespace {

enum ExitCode : int { Success = 0, Failure = 1, WrongUsage = 2, InUse = 3 };

// Only ASCII characters, so that programs can decode the output with any code page.
std::string JsonText(const Json& json) {
    constexpr bool asciiOnly = true;
    return json.dump(2, ' ', asciiOnly) + '\n';
}

// Runs the command. If a file is in use, runs it again until the time is over.
Report RunAction(const Invocation& invocation) {
    constexpr DWORD interval = 50;  // ms
    const ULONGLONG end = GetTickCount64() + static_cast<ULONGLONG>(invocation.secondsToWait) * 1000;
    for (;;) {
        try {
            return invocation.action();
        } catch (const UsageError& error) {
            throw WithHelp(error, invocation.command);
        } catch (const Error& error) {
            if (error.Kind() != ErrorKind::InUse || GetTickCount64() >= end)
                throw;
        }
        Sleep(interval);
    }
}

// Returns the exit code.
int Execute(const Invocation& invocation) {
    std::optional<FolderRedirection> programFiles;
    std::optional<FolderRedirection> programData;
    if (invocation.programFiles)
        programFiles.emplace(L"ProgramFiles", *invocation.programFiles);
    if (invocation.programData)
        programData.emplace(L"ProgramData", *invocation.programData);
    SetStyling(invocation.styling);
    const Report report = RunAction(invocation);
    std::cout << (invocation.json ? JsonText(report.json) : report.text);
    return report.exitCode;
}

int Run(const std::vector<std::string>& arguments) {
    const auto parsed = ParseCommandLine(arguments);
    int exitCode = Success;
    if (const auto* const information = std::get_if<Information>(&parsed))
        std::cout << *information;
    else
        exitCode = Execute(std::get<Invocation>(parsed));
    if (!std::cout.flush())
        throw Error{"The output cannot be written."};
    return exitCode;
}

// With --json, the standard output contains a JSON document in any case.
ExitCode Fail(const std::exception& error, bool json, ExitCode exitCode) {
    if (json)
        std::cout << JsonText(ErrorJson(error)) << std::flush;
    std::cerr << "zotdamctl: " << error.what() << '\n';
    return exitCode;
}

int Main() {
    const Utf8Output output;
    const std::vector<std::string> arguments = Arguments();
    const bool json = RequestsJson(arguments);
    try {
        return Run(arguments);
    } catch (const UsageError& error) {
        return Fail(error, json, WrongUsage);
    } catch (const Error& error) {
        return Fail(error, json, error.Kind() == ErrorKind::InUse ? InUse : Failure);
    } catch (const std::exception& error) {
        return Fail(error, json, Failure);
    }
}

}  // namespace

}  // namespace ZOTDam::Client

int main() {
    return ZOTDam::Client::Main();
}
