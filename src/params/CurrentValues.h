#pragma once

#include "catalogue/FunctionTable.h"
#include "params/ParamMap.h"

namespace ZOTDam {

// Replaces the content of `cache` with the effective parameters of a scheme (see LoadSchemeParameters). If
// these cannot be loaded completely, completes them with the default parameters. Returns false when the
// defaults cannot be read completely either.
bool ReloadCurrentValues(CFunctionTable& table, const GUID& scheme, ParamMap& cache) noexcept;

// Reads the options that the parameters in `cache` select for the function at `position` of the table. Leaves
// a field unchanged when its parameter selects no display item (Compatibility: C42). Adds a function that is
// missing from the cache, with its first options (Compatibility: C41). Returns false when the table has no
// such position.
bool ReadCurrentValue(const CFunctionTable& table, ParamMap& cache, std::uint32_t position,
                      FuncCurValue& value) noexcept;

}  // namespace ZOTDam
