// The content of the user settings file: what is stored, without the defaults that the library adds.
#pragma once

#include <guiddef.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "Parameters.h"

namespace ZOTDam::Client {

// Names and values, in the order of the file.
using CommonSettings = std::vector<std::pair<std::string, std::string>>;

struct StoredScheme {
    GUID scheme = {};
    Params params;
};

struct StoredSettings {
    std::vector<StoredScheme> schemes;  // in the order of the file
    CommonSettings commonSettings;

    // Returns the parameters of the scheme, or null if it is not stored.
    const Params* Find(const GUID& scheme) const;
};

// Reads a file with the functions of the library, so it finds the same schemes. Does not use the busy marker.
// Requires COM. Returns false if the file cannot be read or is not well-formed.
bool TryReadStoredSettings(const std::filesystem::path& file, StoredSettings& settings);

// Returns the common settings in one of the data files; none if the file does not exist or is not
// well-formed.
CommonSettings ReadCommonSettings(const std::filesystem::path& file);

// Returns the name of the root element, or an empty string if the file is not well-formed. Requires COM.
std::string ReadRootName(const std::filesystem::path& file);

// Removes the scheme from the user settings and saves them, as the library saves them. The caller must verify
// the result.
void RemoveStoredScheme(const GUID& scheme);

}  // namespace ZOTDam::Client
