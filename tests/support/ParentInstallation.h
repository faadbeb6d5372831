// Lets a second process find the installation of the test that starts it.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "support/Installation.h"

namespace ZOTDam::Test {

// The system sets these folders when a process starts; they are not inherited from the parent. They are
// therefore passed as the first two arguments.
inline std::vector<std::wstring> WithFolders(const Installation& installation,
                                             std::vector<std::wstring> arguments = {}) {
    arguments.insert(arguments.begin(), {installation.ProgramFiles(), installation.ProgramData()});
    return arguments;
}

inline void EnterInstallation(const std::vector<std::wstring>& arguments) {
    SetEnvironmentVariableW(L"ProgramFiles", arguments.at(0).c_str());
    SetEnvironmentVariableW(L"ProgramData", arguments.at(1).c_str());
}

}  // namespace ZOTDam::Test
