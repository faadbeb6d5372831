// Parts of the catalogue that no export returns: the keys of the groups, and the function of each command.
#pragma once

#include <cstdint>
#include <set>
#include <vector>

#include "catalogue/FunctionTable.h"
#include "Parameters.h"

namespace ZOTDam::Client {

// Loads the catalogue with the functions of the library. Requires COM. Throws an Error if the result is not
// the catalogue that the library has loaded, because another program is using or has changed the file.
CFunctionTable ReadFunctionTable(const FunctionCatalogue& catalogue);

// Returns the functions that a list of differences shows first.
std::set<std::int32_t> LeadingFunctions(const CFunctionTable& table);

struct OwnedCommand {
    std::int32_t functionId;
    CommandItem command;
};

// Returns the commands in the order in which the library enumerates them for a scheme with these parameters.
std::vector<OwnedCommand> CommandsOf(const CFunctionTable& table, Params params);

}  // namespace ZOTDam::Client
