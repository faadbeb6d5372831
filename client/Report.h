#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace ZOTDam::Client {

using Json = nlohmann::ordered_json;

// What a command tells: as text for people, and as JSON for programs.
struct Report {
    std::string text;
    Json json;
    int exitStatus = 0;  // of the program
};

}  // namespace ZOTDam::Client
