#pragma once

#include "params/ParamMap.h"

namespace ZOTDam {

// Adds the default parameters of a scheme to `out`: of each function the item for the scheme, or else its
// generic default. False when the defaults lack the functions or one of them cannot be read; what was read
// before it stays in `out`.
bool ReadDefaultSchemeParameters(const GUID& scheme, ParamMap& out) noexcept;

}  // namespace ZOTDam
