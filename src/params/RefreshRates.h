#pragma once

#include "ZOTDam.h"

namespace ZOTDam {

// Returns whether the function switches between two refresh rates (function 7 or 8) and the primary display
// does not support both. The rates are the options of the first two AC display items. Returns false when
// there are fewer items.
bool HasUnsupportedRefreshRate(std::int32_t functionId, const FunctionRecord& function) noexcept;

}  // namespace ZOTDam
