// How a second process finds the installation of the test that starts it.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "support/Installation.h"

namespace ZOTDam::Test {

// A starting process gets these folders from the system and not from its parent, so they go with its
// arguments, as the first two.
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
