// Runs a program to its end and captures its output.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

namespace ZOTDam::Test {

struct Outcome {
    DWORD exitStatus;
    std::string output;
    std::string errors;
};

Outcome RunProgram(const std::filesystem::path& program, const std::vector<std::wstring>& arguments,
                   const std::filesystem::path& workingFolder);

}  // namespace ZOTDam::Test
