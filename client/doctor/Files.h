// What is examined of each data file.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "doctor/Function.h"

namespace ZOTDam::Client {

// The options of the functions in use, by their ids.
using CatalogueOptions = std::map<std::int32_t, OptionCounts>;

void CheckBase(const Element& root, Findings& findings);

// Nothing when the library refuses the catalogue.
std::optional<CatalogueOptions> CheckDefaults(const Element& root, Findings& findings);

// Without a catalogue, nothing is known of the functions.
void CheckUserSettings(const Element& root, const CatalogueOptions* catalogue, Findings& findings);

// The keys for which a string table has an entry, in lower case.
using TextKeys = std::set<std::wstring>;

TextKeys CheckStringTable(const Element& root, Findings& findings);

// Reports the texts of the defaults file that a string table does not translate.
void CheckTranslations(const Element& defaultsRoot, const TextKeys& keys, const std::string& stringTable,
                       Findings& findings);

// "CommonSettings" is alike in the three files that can have it. The consequence is that of a value that is
// too long.
void CheckCommonSettings(const Element& root, const std::string& consequence, Findings& findings);

void CheckSpecSchemes(const Element& specSchemes, Findings& findings);

}  // namespace ZOTDam::Client
