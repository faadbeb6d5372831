// The power schemes that Windows reports. The functions of Windows are loaded on demand.
#pragma once

#include <guiddef.h>

#include <optional>
#include <string>
#include <vector>

namespace ZOTDam::Client {

struct WindowsScheme {
    GUID scheme;
    std::string name;  // in the user's language; empty if Windows reports none
};

std::vector<WindowsScheme> EnumerateWindowsSchemes();

// Returns nothing if Windows does not report the active scheme.
std::optional<GUID> FindActiveScheme();

}  // namespace ZOTDam::Client
