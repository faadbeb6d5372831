// What functions have alike in the defaults file and in the base catalogue, from which they are copied.
#pragma once

#include <cstddef>
#include <string>

#include "doctor/Checks.h"

namespace ZOTDam::Client {

// How many options a function has on each power source.
struct OptionCounts {
    std::size_t ac = 0;
    std::size_t dc = 0;
};

inline constexpr char CatalogueRefused[] = "the library refuses the whole catalogue";

// When a flaw tells: at once, or, in the base catalogue, once a function is adopted. It begins a sentence.
using When = std::string;

OptionCounts CheckDisplay(const Element& function, const When& when, Findings& findings);

void CheckDefault(const Element& function, const OptionCounts& options, const When& when, Findings& findings);

// Checks what an element says about both power sources. It is none to go by when it lacks one: then this has
// the given consequence. The options may be unknown.
void CheckParameters(const Element& element, const OptionCounts* options, const std::string& consequence,
                     Findings& findings);

// Checks the attributes of a command, with what becomes of a text that is too long.
void CheckCommand(const Element& command, WorkingRecord& working, const char* longTextKind,
                  const std::string& longTextConsequence, Findings& findings);

}  // namespace ZOTDam::Client
