// The common settings that apply on this machine.
#pragma once

#include <map>
#include <string>

#include "SettingsSnapshot.h"

namespace ZOTDam::Client {

// A common setting with its value, and the file that it comes from.
struct EffectiveSetting {
    std::string value;
    const char* source;  // in JSON
    const char* file;    // the title of the data file
};

using EffectiveSettings = std::map<std::string, EffectiveSetting>;

// Throws an Error if another program is using the defaults file.
EffectiveSettings ReadEffectiveSettings(const SettingsSnapshot& snapshot);

}  // namespace ZOTDam::Client
