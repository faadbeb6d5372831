#pragma once

#include "catalogue/FunctionTable.h"
#include "params/ParamMap.h"

namespace ZOTDam {

// Fills `cache` with a scheme's effective parameters, or else with its defaults.
bool ReloadCurrentValues(CFunctionTable& table, const GUID& scheme, ParamMap& cache) noexcept;

// Gives the current options of the function at a position of the table. Nothing looks them up yet.
inline bool ReadCurrentValue(CFunctionTable&, ParamMap&, std::uint32_t, FuncCurValue*) noexcept {
    return false;
}

}  // namespace ZOTDam
