#pragma once

#include "catalogue/FunctionTable.h"
#include "params/ParamMap.h"

namespace ZOTDam {

// Fills `cache` with a scheme's effective parameters, or else with its defaults.
bool ReloadCurrentValues(CFunctionTable& table, const GUID& scheme, ParamMap& cache) noexcept;

// Gives the current options of the function at a position of the table; a field whose parameter selects no
// display item stays as it is. A function that the cache lacks enters it with its first options. False when
// the table has no such position.
bool ReadCurrentValue(const CFunctionTable& table, ParamMap& cache, std::uint32_t position,
                      FuncCurValue& value) noexcept;

}  // namespace ZOTDam
