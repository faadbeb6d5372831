// The English names of the power settings of Windows.
#pragma once

#include <guiddef.h>

#include <string_view>

namespace ZOTDam::Client {

// Returns the name of a power setting or subgroup, or an empty string for one that is not part of Windows.
std::string_view PowerSettingName(const GUID& setting);

}  // namespace ZOTDam::Client
