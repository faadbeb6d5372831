#pragma once

#include "params/ParamMap.h"

namespace ZOTDam {

// Adds the default parameters of a scheme to `out`: for each function the item for the scheme, or else the
// function's generic default. Returns false when the "Functions" section is missing or one of its functions
// cannot be read; the parameters before that function stay in `out`. Compatibility: C34.
bool ReadDefaultSchemeParameters(const GUID& scheme, ParamMap& out) noexcept;

}  // namespace ZOTDam
