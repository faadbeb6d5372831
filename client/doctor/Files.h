// The checks of each data file.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "doctor/Function.h"

namespace ZOTDam::Client {

// The number of options of each function in use, by id.
using CatalogueOptions = std::map<std::int32_t, OptionCounts>;

void CheckBase(const Element& root, Findings& findings);

// Returns nothing if the library rejects the catalogue.
std::optional<CatalogueOptions> CheckDefaults(const Element& root, Findings& findings);

// If `catalogue` is null, functions and options are not checked against it.
void CheckUserSettings(const Element& root, const CatalogueOptions* catalogue, Findings& findings);

// The keys of a string table's entries, in lower case.
using TextKeys = std::set<std::wstring>;

TextKeys CheckStringTable(const Element& root, Findings& findings);

// The keys of a string table, with the name of its file for sentences.
struct NamedKeys {
    std::string file;
    TextKeys keys;
};

// Reports the keys of the functions in the base catalogue or in the defaults file that are missing from a
// string table.
void CheckTranslations(const Element& root, const std::vector<NamedKeys>& tables, const When& when,
                       Findings& findings);

// Checks "CommonSettings", which has the same form in all three files. `consequence` applies to a value that
// is too long.
void CheckCommonSettings(const Element& root, const std::string& consequence, Findings& findings);

void CheckSpecSchemes(const Element& specSchemes, Findings& findings);

}  // namespace ZOTDam::Client
