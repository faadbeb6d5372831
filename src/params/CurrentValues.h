#pragma once

#include "catalogue/FunctionTable.h"
#include "params/ParamMap.h"

namespace ZOTDam {

// Replaces the content of `cache` with a scheme's effective parameters, or else with its defaults. Returns
// false when neither could be read completely.
bool ReloadCurrentValues(CFunctionTable& table, const GUID& scheme, ParamMap& cache) noexcept;

// Reads the current options of the function at a position of the table. A field whose parameter selects no
// display item is left unchanged (Compatibility: C42). A function that is missing from the cache is added to
// it with its first options (Compatibility: C41). Returns false when the table has no such position.
bool ReadCurrentValue(const CFunctionTable& table, ParamMap& cache, std::uint32_t position,
                      FuncCurValue& value) noexcept;

}  // namespace ZOTDam
