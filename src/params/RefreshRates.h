#pragma once

#include "ZOTDam.h"

namespace ZOTDam {

// Whether the primary display lacks one of the two refresh rates that a refresh-rate function switches
// between. False for every other function, and for one with fewer than two rates.
bool LacksRefreshRate(std::int32_t functionId, const FunctionRecord& function) noexcept;

}  // namespace ZOTDam
