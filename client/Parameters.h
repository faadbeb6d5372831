// The parameters of a power scheme, as commands show them.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "Catalogue.h"
#include "Report.h"
#include "Table.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Client {

using Params = std::map<std::int32_t, ParamValue>;

Params CollectParams(decltype(&GetParameter) enumerate, const GUID& scheme);

// Returns a table with the columns of ParamCells.
Table ParamTable();

// Returns the id, the name, and for each power source the label with the position.
std::vector<std::string> ParamCells(std::int32_t id, const ParamValue& value,
                                    const FunctionCatalogue& catalogue);

// Returns an object with "id", "name" and for each power source the position, the option and the label.
Json ParamJson(std::int32_t id, const ParamValue& value, const FunctionCatalogue& catalogue);

// Returns the name, or null if the catalogue does not contain the function.
Json FunctionNameJson(const FunctionCatalogue& catalogue, std::int32_t id);

// Returns the name, or a remark that the catalogue does not contain the function.
std::string FunctionNameText(const FunctionCatalogue& catalogue, std::int32_t id);

}  // namespace ZOTDam::Client
