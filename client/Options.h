// What the command line asks for.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Commands.h"

namespace ZOTDam::Client {

struct Options {
    Command command;
    bool json = false;
    std::optional<std::filesystem::path> programFiles;
    std::optional<std::filesystem::path> programData;
};

// A text that the user asked for with --help or --version.
using Information = std::string;

// Throws UsageError.
std::variant<Options, Information> ParseOptions(std::vector<std::string> arguments);

}  // namespace ZOTDam::Client
