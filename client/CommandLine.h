// Parses the command line.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Error.h"
#include "Report.h"
#include "Style.h"

namespace ZOTDam::Client {

// A command with its arguments. Throws Error.
using Action = std::function<Report()>;

struct Invocation {
    Action action;
    std::string command;  // its name, with that of its subcommand; empty for the program itself
    bool json = false;
    Styling styling = Styling::Automatic;
    int secondsToWait = 0;  // for a file that is in use
    std::optional<std::filesystem::path> programFiles;
    std::optional<std::filesystem::path> programData;
};

// The text that --help or --version requests.
using Information = std::string;

// Returns whether the arguments contain the option --json, even if the command line is invalid.
bool RequestsJson(const std::vector<std::string>& arguments);

// Returns the error with a reference to the help of the command.
UsageError WithHelp(const UsageError& error, const std::string& command);

// Throws UsageError.
std::variant<Invocation, Information> ParseCommandLine(std::vector<std::string> arguments);

}  // namespace ZOTDam::Client
