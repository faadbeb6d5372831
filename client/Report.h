#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace ZOTDam::Client {

using Json = nlohmann::ordered_json;

// The output of a command: text for people, and JSON for programs.
struct Report {
    std::string text;
    Json json;
    int exitCode = 0;  // the exit code of the program
};

}  // namespace ZOTDam::Client
