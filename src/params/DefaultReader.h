#pragma once

#include "params/ParamMap.h"

namespace ZOTDam {

// Adds the default parameters of a scheme to `out`. For each function, these are in the DefaultItem of the
// scheme or else in the Default element itself. Returns false when the "Functions" section is missing or one
// of its functions cannot be read. The parameters of the functions before that one stay in `out`.
// Compatibility: C34.
bool ReadDefaultSchemeParameters(const GUID& scheme, ParamMap& out) noexcept;

}  // namespace ZOTDam
