#pragma once

#include "catalogue/FunctionTable.h"

namespace ZOTDam {

// Adds a copy of every function of the table, with texts in the user's language, to `output`. Returns false
// when the table cannot be loaded.
bool CollectFunctionInfo(CFunctionTable& table, std::map<std::int32_t, FunctionRecord>& output) noexcept;

// Returns the record with its keys replaced by the texts of the string table. A key without a text stays
// unchanged.
FunctionRecord LocaliseFunctionRecord(FunctionRecord record) noexcept;

}  // namespace ZOTDam
