// The string tables of an installation.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "doctor/Files.h"

namespace ZOTDam::Client {

// The findings of the examined tables, and the keys of those that could be read.
struct StringTables {
    std::vector<Findings> findings;
    std::vector<NamedKeys> keys;
};

// Examines the table for a language, or the neutral table and all language copies.
StringTables ExamineStringTables(const std::optional<std::string>& language);

}  // namespace ZOTDam::Client
