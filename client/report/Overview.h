// All settings of a machine: the functions, the schemes with their values, and the common settings.
#pragma once

#include <guiddef.h>

#include <vector>

#include "EffectiveSettings.h"
#include "Parameters.h"

namespace ZOTDam::Client {

struct SchemeValues {
    GUID scheme;
    bool isStored;  // in the user settings; otherwise, the values are the defaults
    Params values;
    Params defaults;
};

struct Overview {
    FunctionCatalogue functions;
    std::vector<SchemeValues> schemes;  // those of Windows, then the other schemes in the user settings
    EffectiveSettings commonSettings;
};

// Reads the settings without changing the data files. Throws an Error if the catalogue cannot be loaded, or
// if another program is using the user settings.
Overview ReadOverview();

}  // namespace ZOTDam::Client
