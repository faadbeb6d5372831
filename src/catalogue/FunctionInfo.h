#pragma once

#include "catalogue/FunctionTable.h"

namespace ZOTDam {

// Adds a copy of every function of the table, with its texts in the user's language, to `output`. False when
// the table cannot be loaded.
bool CollectFunctionInfo(CFunctionTable& table, std::map<std::int32_t, FunctionRecord>& output) noexcept;

// Gives the record with the texts for which the string table has a translation; the others stay as they are.
FunctionRecord LocaliseFunctionRecord(FunctionRecord record) noexcept;

}  // namespace ZOTDam
