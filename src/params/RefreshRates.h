#pragma once

#include "ZOTDam.h"

namespace ZOTDam {

// Returns true when the primary display does not support one of the two refresh rates that a refresh-rate
// function switches between. Returns false for every other function and for a function with fewer than two
// rates.
bool HasUnsupportedRefreshRate(std::int32_t functionId, const FunctionRecord& function) noexcept;

}  // namespace ZOTDam
