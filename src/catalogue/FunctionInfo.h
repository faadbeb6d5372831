#pragma once

#include "catalogue/FunctionTable.h"

namespace ZOTDam {

// Adds a copy of every function of the table to `output`, localised with LocaliseFunctionRecord. Returns
// false when the table cannot be loaded.
bool CollectFunctionInfo(CFunctionTable& table, std::map<std::int32_t, FunctionRecord>& output) noexcept;

// Returns the record with its name, group and labels replaced by the texts of the string table in the user's
// language. A key without a text stays unchanged.
FunctionRecord LocaliseFunctionRecord(FunctionRecord record) noexcept;

}  // namespace ZOTDam
