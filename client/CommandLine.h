// Parses the command line.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Report.h"
#include "Style.h"

namespace ZOTDam::Client {

// A command with its arguments. Throws Error.
using Action = std::function<Report()>;

struct Invocation {
    Action action;
    bool json = false;
    Styling styling = Styling::Automatic;
    std::optional<std::filesystem::path> programFiles;
    std::optional<std::filesystem::path> programData;
};

// The text that --help or --version requests.
using Information = std::string;

// Throws UsageError.
std::variant<Invocation, Information> ParseCommandLine(std::vector<std::string> arguments);

}  // namespace ZOTDam::Client
