// The file with which user settings are copied to another machine. schemas/export.schema.json describes it.
#pragma once

#include <filesystem>
#include <string>

#include "Catalogue.h"
#include "Report.h"
#include "StoredSettings.h"

namespace ZOTDam::Client {

// Returns a hash of the ids and options of the functions. Positions of options have the same meaning on
// machines with the same hash.
std::string FingerprintOf(const FunctionCatalogue& catalogue);

Json ExportJson(const StoredSettings& settings, const FunctionCatalogue& catalogue);

struct SettingsExport {
    std::string fingerprint;
    StoredSettings settings;
};

// Throws an Error that names the file if the content is not an export.
SettingsExport ParseExport(const std::string& content, const std::filesystem::path& file);

// Returns a user settings file with the schemes.
std::string XmlOf(const StoredSettings& settings);

}  // namespace ZOTDam::Client
