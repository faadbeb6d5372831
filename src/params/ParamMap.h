#pragma once

#include <cstdint>
#include <map>

#include "ZOTDam.h"

namespace ZOTDam {

// The parameters of one power scheme, by ascending function id. Whoever fills one leaves a value that is
// there already in place: the first value read for an id counts. Most files have ascending ids, so it begins
// to look for the place of a new one at the end.
using ParamMap = std::map<std::int32_t, ParamValue>;

}  // namespace ZOTDam
