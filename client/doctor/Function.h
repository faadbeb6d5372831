// Checks that functions in the defaults file and in the base catalogue have in common.
#pragma once

#include <cstddef>
#include <string>

#include "doctor/Checks.h"

namespace ZOTDam::Client {

// The number of options of a function for each power source.
struct OptionCounts {
    std::size_t ac = 0;
    std::size_t dc = 0;
};

inline constexpr char CatalogueNotLoaded[] = "the library cannot load the catalogue";

// A prefix of a consequence that states when it applies: empty for immediately, or, in the base catalogue,
// if the function is adopted.
using When = std::string;

inline constexpr char IfAdopted[] = "if the function is adopted, ";

OptionCounts CheckDisplay(const Element& function, const When& when, Findings& findings);

void CheckDefault(const Element& function, const OptionCounts& options, const When& when, Findings& findings);

// Checks the parameters of an element for both power sources. If one is missing, it reports the given
// consequence. If `options` is null, the values are not checked.
void CheckParameters(const Element& element, const OptionCounts* options, const std::string& consequence,
                     Findings& findings);

// Checks the attributes of a command. The kind and the consequence apply to a string that is too long.
void CheckCommand(const Element& command, WorkingRecord& working, const char* longTextKind,
                  const std::string& longTextConsequence, Findings& findings);

}  // namespace ZOTDam::Client
